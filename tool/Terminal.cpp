#include "Terminal.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "VisibleText.h"
#include "file/JsonText.h"

namespace tool {
namespace {

bool ColoursOn(std::FILE* stream) {
  const char* const refused = std::getenv("NO_COLOR");
  return (refused == nullptr || *refused == '\0') && isatty(fileno(stream)) != 0;
}

}  // namespace

std::string Paint(std::FILE* stream, Colour colour, std::string_view text) {
  if (!ColoursOn(stream)) return std::string(text);
  const int code = colour == Colour::kGreen ? 32 : colour == Colour::kYellow ? 33 : 31;
  return fmt::format("\033[{}m{}\033[0m", code, text);
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

void Put(std::FILE* stream, std::string_view text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
}

void Complain(std::string_view message) {
  Put(stderr, fmt::format("{} {}\n", Paint(stderr, Colour::kRed, "hvxupgrade:"), Printable(message)));
}

}  // namespace tool
