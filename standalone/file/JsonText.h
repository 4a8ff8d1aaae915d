#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace standalone {

// JSON values, appended to `out` as this system writes them everywhere: no blanks, texts as UTF-8 with only
// what must be escaped, reals in the shortest form that reads back to the same bits and never looks like an
// integer.

void AppendJsonText(fmt::memory_buffer& out, std::string_view text);
void AppendJsonInteger(fmt::memory_buffer& out, std::int64_t number);
/// `number` must be finite.
void AppendJsonReal(fmt::memory_buffer& out, double number);

// As the buffer's own way of appending, but without its loop over pieces.
inline void AppendRaw(fmt::memory_buffer& out, std::string_view text) {
  const std::size_t end = out.size();
  out.resize(end + text.size());
  std::copy_n(text.data(), text.size(), out.data() + end);
}

}  // namespace standalone
