#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace tool {

enum class Colour { kGreen, kYellow, kRed };

/// Whether `stream` is a terminal that follows commands, such as for colours and for writing a line anew; one
/// that calls itself dumb shows them as text.
[[nodiscard]] bool TakesCommands(std::FILE* stream);
/// How many columns the terminal has; 80 where `stream` is none, or does not tell.
[[nodiscard]] std::size_t ColumnsOf(std::FILE* stream);
/// `text` in that colour where `stream` takes commands and the user did not set NO_COLOR, else as it is.
[[nodiscard]] std::string Paint(std::FILE* stream, Colour colour, std::string_view text);
/// `text` without what `Paint` puts around words.
[[nodiscard]] std::string Unpainted(std::string_view text);

/// `text` in one line in which everything is seen: what comes from a document, a file name or the command
/// line must not send commands to the terminal, begin lines of its own, or change how the text around it is
/// shown. All that is printed goes through here, or through `Quoted` and `Word`, which do.
[[nodiscard]] std::string Printable(std::string_view text);
/// The same for lines of which each was put together by this program: line feeds stay.
[[nodiscard]] std::string PrintableLines(std::string_view text);
/// A name in quotes, printable.
[[nodiscard]] std::string Quoted(std::string_view text);
/// A late type or the like: as it is when it is one plain word, else quoted.
[[nodiscard]] std::string Word(std::string_view text);

/// "1 feature", "2 features".
[[nodiscard]] std::string Count(std::size_t count, std::string_view noun);

/// Writes `text` to the stream. Where that fails nothing happens: messages that nobody can read end no work,
/// and of standard output it is found, and told, when the program ends. While signals are held back, they are
/// noticed also when nobody takes the text; once a stop was requested, what finds no reader is left out.
/// Gives whether all of it was taken.
bool Put(std::FILE* stream, std::string_view text);
/// To standard output, unless that is kept.
void Say(std::string_view text);
/// Standard output is for a result alone: from now on `Say` goes to standard error.
void KeepOutput();

/// Brings what was put to standard output there.
void FlushOutput();
/// What made the first of these fail for standard output, as an error number; 0 when none did.
[[nodiscard]] int OutputError();

/// Writes "hvxupgrade: " and `message`, made printable, as a line to standard error.
void Complain(std::string_view message);
/// Says that there is not enough memory, without needing any.
void ComplainOfMemory() noexcept;

}  // namespace tool
