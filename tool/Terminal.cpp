#include "Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "file/JsonText.h"

namespace tool {
namespace {

bool ColoursOn(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  return (refused == nullptr || *refused == '\0') && isatty(fileno(stream)) != 0;
}

// How many bytes the UTF-8 sequence at the front of `text` takes; 0 when there is no valid one.
std::size_t SequenceLength(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return 0;
  }
  const bool overlong = (lead == 0xe0 && byte(1) < 0xa0) || (lead == 0xf0 && byte(1) < 0x90);
  const bool outside = (lead == 0xed && byte(1) >= 0xa0) || (lead == 0xf4 && byte(1) >= 0x90);
  return overlong || outside ? 0 : length;
}

}  // namespace

std::string Paint(std::FILE* stream, Colour colour, std::string_view text) {
  if (!ColoursOn(stream)) return std::string(text);
  const int code = colour == Colour::kGreen ? 32 : colour == Colour::kYellow ? 33 : 31;
  return fmt::format("\033[{}m{}\033[0m", code, text);
}

std::string Printable(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool second = byte(i) == 0xc2 && i + 1 < text.size() && byte(i + 1) < 0xa0;  // U+0080 to U+009F
    if (second) ++i;
    if (second || (byte(i) < 0x20 && text[i] != '\n') || byte(i) == 0x7f) {
      printable += fmt::format("\\u{:04x}", byte(i));
    } else {
      printable += text[i];
    }
  }
  return printable;
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

std::string AsUtf8(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    valid += length == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return valid;
}

std::string Count(std::size_t count, std::string_view noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

void Put(std::FILE* stream, std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
}

void Complain(std::string_view message) {
  Put(stderr, fmt::format("{} {}\n", Paint(stderr, Colour::kRed, "hvxupgrade:"), Printable(message)));
}

}  // namespace tool
