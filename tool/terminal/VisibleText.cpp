#include "terminal/VisibleText.h"

#include <algorithm>
#include <iterator>

#include "file/JsonText.h"

namespace tool {
namespace {

using standalone::AppendRaw;

struct Range {
  char32_t first;
  char32_t last;
};

// Ascending, above the controls, which are told by themselves.
constexpr Range kUnseen[] = {
    {0x00ad, 0x00ad},    // a hyphen that is not shown
    {0x061c, 0x061c},    // a mark of direction
    {0x180e, 0x180e},    // a separator without width
    {0x200b, 0x200b},    // a blank without width
    {0x200e, 0x200f},    // marks of direction
    {0x2028, 0x202e},    // line and paragraph ends; what embeds and overrides directions
    {0x2060, 0x206f},    // no width, or isolates directions
    {0xfeff, 0xfeff},    // a byte order mark
    {0xfff9, 0xfffb},    // annotations
    {0xe0000, 0xe0fff},  // tags, and selectors of variants that nothing shows
};

bool IsJoiner(char32_t character) {
  return character == 0x200c || character == 0x200d;
}

bool IsUnseen(char32_t character) {
  if (character < 0x20 || (character >= 0x7f && character < 0xa0)) return true;
  const auto* const found = std::ranges::lower_bound(kUnseen, character, {}, &Range::last);
  return found != std::end(kUnseen) && found->first <= character;
}

// Of a script with letters that join, or a symbol: joiners change how those look, and nothing else.
bool CanBeJoined(char32_t character) {
  return character >= 0x0300 && !IsJoiner(character) && !IsUnseen(character);
}

struct Character {
  char32_t code = 0;
  std::size_t bytes = 0;  // 0: what stands there is not UTF-8, or nothing
};

// The character at the front of `text`.
Character FirstOf(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : char32_t{0};
  };
  const char32_t lead = byte(0);
  if (text.empty()) return {};
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xc2 || lead > 0xf4) return {};
  const std::size_t bytes = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  char32_t code = lead & (0x7fU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return {};
    code = code << 6U | (byte(i) & 0x3fU);
  }
  const bool isOverlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code < 0x10000);
  const bool isNone = (code >= 0xd800 && code < 0xe000) || code > 0x10ffff;
  return isOverlong || isNone ? Character{} : Character{code, bytes};
}

// How much of `text` is plain from the front: seen, and of one byte each.
std::size_t PlainLength(std::string_view text) {
  const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7f; };
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
}

void AppendEscape(fmt::memory_buffer& out, char32_t character) {
  auto to = std::back_inserter(out);
  const auto code = static_cast<std::uint32_t>(character);
  if (code < 0x10000) {
    fmt::format_to(to, "\\u{:04x}", code);
  } else {
    fmt::format_to(to, "\\U{:08x}", code);
  }
}

void AppendJsonEscape(fmt::memory_buffer& out, char32_t character) {
  auto to = std::back_inserter(out);
  const auto code = static_cast<std::uint32_t>(character);
  if (code < 0x10000) {
    fmt::format_to(to, "\\u{:04x}", code);
  } else {
    fmt::format_to(to, "\\u{:04x}\\u{:04x}", 0xd7c0 + (code >> 10U), 0xdc00 + (code & 0x3ffU));
  }
}

// Appends `text`, and what `escape` appends in the place of each character that is not seen or, given one
// byte, each byte that is not UTF-8.
template <class Escape>
void AppendEscaping(fmt::memory_buffer& out, std::string_view text, const Escape& escape) {
  char32_t before = 0;  // the last character
  while (!text.empty()) {
    if (const std::size_t plain = PlainLength(text); plain != 0) {
      AppendRaw(out, text.substr(0, plain));
      before = static_cast<unsigned char>(text[plain - 1]);
      text.remove_prefix(plain);
      continue;
    }
    const Character character = FirstOf(text);
    const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
    const bool joins =
        IsJoiner(character.code) && CanBeJoined(before) && CanBeJoined(FirstOf(text.substr(bytes)).code);
    const bool isSeen = character.bytes != 0 && !IsUnseen(character.code) && !IsJoiner(character.code);
    if (isSeen || joins) {
      AppendRaw(out, text.substr(0, bytes));
    } else {
      escape(character, text.front());
    }
    before = character.code;
    text.remove_prefix(bytes);
  }
}

// What stands for bytes in names: of plane 16, whose characters are for private use.
constexpr char32_t kStandIns = 0x10dc00;

bool StandsForByte(char32_t character) {
  return character >= kStandIns + 0x80 && character <= kStandIns + 0xff;
}

void AppendStandIn(fmt::memory_buffer& out, unsigned char byte) {
  const char32_t code = kStandIns + byte;
  for (const char32_t part : {0xf0U | code >> 18U, 0x80U | (code >> 12U & 0x3fU),
                              0x80U | (code >> 6U & 0x3fU), 0x80U | (code & 0x3fU)})
    out.push_back(static_cast<char>(part));
}

}  // namespace

std::string WithEscapes(std::string_view text, Escapes escapes) {
  fmt::memory_buffer out;
  AppendEscaping(out, text, [&out, escapes](const Character& character, char byte) {
    if (character.bytes == 0) {
      fmt::format_to(std::back_inserter(out), "\\x{:02x}", static_cast<unsigned char>(byte));
    } else if (byte == '\n' && escapes == Escapes::kAllButLineFeeds) {
      out.push_back(byte);
    } else {
      AppendEscape(out, character.code);
    }
  });
  return fmt::to_string(out);
}

bool IsPlain(std::string_view text) {
  return PlainLength(text) == text.size();
}

void AppendVisibleJson(fmt::memory_buffer& out, std::string_view json) {
  AppendEscaping(out, json, [&out](const Character& character, char byte) {
    if (character.bytes == 0) {
      out.push_back(byte);
    } else {
      AppendJsonEscape(out, character.code);
    }
  });
}

std::string AsUtf8(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const std::size_t bytes = FirstOf(text).bytes;
    valid += bytes == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, bytes);
    text.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  return valid;
}

std::string NameAsUtf8(std::string_view name) {
  fmt::memory_buffer valid;
  while (!name.empty()) {
    const Character character = FirstOf(name);
    const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
    if (character.bytes != 0 && !StandsForByte(character.code)) {
      AppendRaw(valid, name.substr(0, bytes));
    } else {
      for (const char byte : name.substr(0, bytes)) AppendStandIn(valid, static_cast<unsigned char>(byte));
    }
    name.remove_prefix(bytes);
  }
  return fmt::to_string(valid);
}

std::string NameFromUtf8(std::string_view text) {
  std::string name;
  while (!text.empty()) {
    const Character character = FirstOf(text);
    const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
    if (StandsForByte(character.code)) {
      name.push_back(static_cast<char>(character.code - kStandIns));
    } else {
      name += text.substr(0, bytes);
    }
    text.remove_prefix(bytes);
  }
  return name;
}

}  // namespace tool
