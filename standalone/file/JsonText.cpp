#include "file/JsonText.h"

#include <fmt/compile.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace standalone {
namespace {

constexpr std::array<bool, 256> kMustEscape = [] {
  std::array<bool, 256> must{};
  std::fill_n(must.begin(), 0x20, true);
  must['"'] = must['\\'] = true;
  return must;
}();

bool MustEscape(char c) {
  return kMustEscape[static_cast<unsigned char>(c)];
}

void AppendEscaped(fmt::memory_buffer& out, char c) {
  switch (c) {
    case '"':
      AppendRaw(out, "\\\"");
      break;
    case '\\':
      AppendRaw(out, "\\\\");
      break;
    case '\n':
      AppendRaw(out, "\\n");
      break;
    case '\t':
      AppendRaw(out, "\\t");
      break;
    case '\r':
      AppendRaw(out, "\\r");
      break;
    default:
      fmt::format_to(std::back_inserter(out), FMT_COMPILE("\\u{:04x}"), static_cast<unsigned>(c));
  }
}

}  // namespace

void AppendJsonText(fmt::memory_buffer& out, std::string_view text) {
  out.push_back('"');
  const char* from = text.data();
  const char* const end = text.data() + text.size();
  for (const char* at = from; at != end; ++at) {
    if (!MustEscape(*at)) continue;
    AppendRaw(out, {from, at});
    AppendEscaped(out, *at);
    from = at + 1;
  }
  AppendRaw(out, {from, end});
  out.push_back('"');
}

void AppendJsonInteger(fmt::memory_buffer& out, std::int64_t number) {
  const fmt::format_int text(number);
  AppendRaw(out, {text.data(), text.size()});
}

void AppendJsonReal(fmt::memory_buffer& out, double number) {
  const std::size_t start = out.size();
  fmt::format_to(std::back_inserter(out), FMT_COMPILE("{}"), number);
  const bool looksReal =
      std::any_of(out.data() + start, out.data() + out.size(), [](char c) { return c == '.' || c == 'e'; });
  if (!looksReal) AppendRaw(out, ".0");
}

}  // namespace standalone
