#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace tool {

enum class Escapes {
  kAll,
  kAllButLineFeeds,
};

/// `text` with an escape in the place of each character that is not seen, or changes how others are: control
/// characters (also those above U+007F), line and paragraph separators, marks that turn the direction of the
/// text, characters without width, and bytes that are not UTF-8. Characters are written as in JSON, \u202e,
/// or \U000e0041 where four digits are too few, bytes as \x9b. Joiners stay between letters that they join.
[[nodiscard]] std::string WithEscapes(std::string_view text, Escapes escapes);

/// Whether all characters of `text` are ASCII and seen: nothing of it is to be escaped or replaced here.
[[nodiscard]] bool IsPlain(std::string_view text);

/// Appends JSON, whose texts hold valid UTF-8, with the same characters as JSON escapes: it means the same.
void AppendVisibleJson(fmt::memory_buffer& out, std::string_view json);

/// `text` as valid UTF-8, with a replacement character for every byte that is not: file names may hold any.
[[nodiscard]] std::string AsUtf8(std::string_view text);

/// `name`, a file name or an argument, which may hold any bytes, as valid UTF-8 that tells all of them: in
/// the place of each byte that is not UTF-8 stands U+10DC00 and the byte, such as U+10DCE4, a character for
/// private use. (So do the bytes of these very characters, should a name hold them.)
[[nodiscard]] std::string NameAsUtf8(std::string_view name);
/// The name for which `NameAsUtf8` gives `text`.
[[nodiscard]] std::string NameFromUtf8(std::string_view text);

}  // namespace tool
