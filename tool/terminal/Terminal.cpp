#include "terminal/Terminal.h"

#include <fmt/format.h>
#include <limits.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "file/JsonText.h"
#include "terminal/Interruption.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

int outputError = 0;
bool isOutputKept = false;

bool ColoursOn(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  return (refused == nullptr || *refused == '\0') && TakesCommands(stream);
}

bool PutPiece(std::FILE* stream, std::string_view piece) {
  if (piece.empty()) return true;
  errno = 0;
  const bool isWhole = std::fwrite(piece.data(), 1, piece.size(), stream) == piece.size();
  if (!isWhole && stream == stdout && outputError == 0) outputError = errno;
  return isWhole;
}

// Waits until the stream takes PIPE_BUF bytes at once. False when a stop was requested and nobody reads:
// the user may still do so, but the system has no time.
bool HasRoom(std::FILE* stream) {
  constexpr timespec kPatience{.tv_sec = 1, .tv_nsec = 0};
  constexpr timespec kNone{};
  static bool isLost = false;  // one second in all, or a long list would take as many as it has pieces
  pollfd output{fileno(stream), POLLOUT, 0};
  for (;;) {
    const bool isLast = Interruption::Requested();
    const timespec* const patience = !isLast                                   ? nullptr
                                     : Interruption::IsTermination() || isLost ? &kNone
                                                                               : &kPatience;
    const int ready = ppoll(&output, 1, patience, &Interruption::WhileWaiting());
    if (ready > 0 || (ready < 0 && errno != EINTR)) return true;
    if (ready < 0) continue;
    isLost = true;
    return false;
  }
}

}  // namespace

bool TakesCommands(std::FILE* stream) {
  const char* const terminal = std::getenv("TERM");
  return isatty(fileno(stream)) != 0 && (terminal == nullptr || std::string_view(terminal) != "dumb");
}

std::size_t ColumnsOf(std::FILE* stream) {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  return ioctl(fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0 ? kUsual : size.ws_col;
}

std::string Paint(std::FILE* stream, Colour colour, std::string_view text) {
  if (!ColoursOn(stream)) return std::string(text);
  const int code = colour == Colour::kGreen ? 32 : colour == Colour::kYellow ? 33 : 31;
  return fmt::format("\033[{}m{}\033[0m", code, text);
}

std::string Unpainted(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t colour = std::min(text.find("\033["), text.size());
    plain += text.substr(0, colour);
    text.remove_prefix(std::min(text.find('m', colour), text.size()));
    text.remove_prefix(std::min<std::size_t>(1, text.size()));
  }
  return plain;
}

std::string Printable(std::string_view text) {
  return WithEscapes(text, Escapes::kAll);
}

std::string PrintableLines(std::string_view text) {
  return WithEscapes(text, Escapes::kAllButLineFeeds);
}

std::string Quoted(std::string_view text) {
  fmt::memory_buffer out;
  standalone::AppendJsonText(out, text);
  return Printable({out.data(), out.size()});
}

std::string Word(std::string_view text) {
  const bool plain = std::ranges::all_of(text, [](char c) { return c > ' ' && c < 0x7f && c != '"'; });
  return plain ? std::string(text) : Quoted(text);
}

std::string Count(std::size_t count, std::string_view noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

bool Put(std::FILE* stream, std::string_view text) {
  if (!Interruption::IsHeldBack()) return PutPiece(stream, text);
  bool isWhole = true;
  while (!text.empty() && HasRoom(stream)) {
    isWhole = PutPiece(stream, text.substr(0, PIPE_BUF)) && isWhole;
    text.remove_prefix(std::min<std::size_t>(text.size(), PIPE_BUF));
    if (stream == stdout) FlushOutput();
  }
  return isWhole && text.empty();
}

void Say(std::string_view text) {
  Put(isOutputKept ? stderr : stdout, text);
}

void KeepOutput() {
  isOutputKept = true;
}

void FlushOutput() {
  errno = 0;
  if (std::fflush(stdout) != 0 && outputError == 0) outputError = errno;
}

int OutputError() {
  return outputError;
}

void Complain(std::string_view message) {
  Put(stderr, fmt::format("{} {}\n", Paint(stderr, Colour::kRed, "hvxupgrade:"), Printable(message)));
}

void ComplainOfMemory() noexcept {
  Put(stderr, "hvxupgrade: there is not enough memory; free some, or use a machine with more\n");
}

}  // namespace tool
