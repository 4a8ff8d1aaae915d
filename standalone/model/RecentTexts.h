#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace standalone {

/// What is known of texts, as far as they were met lately: most of them (types, keys, units, the names of
/// components) are met again and again.
template <class Known>
class RecentTexts {
 public:
  /// Where what is known of `text` stands if it was met lately. What stands there may be about another text,
  /// and is then to be replaced. `text` is not empty.
  Known& PlaceOf(std::string_view text) { return places_[HashOf(text) % places_.size()]; }

 private:
  // Both ends of a text and its size tell enough.
  static std::size_t HashOf(std::string_view text) {
    const auto [front, back] = EndsOf(text);
    const std::uint64_t mixed = (front ^ (back * 31) ^ text.size()) * 0x9e3779b97f4a7c15U;
    return static_cast<std::size_t>(mixed >> 40U);
  }

  struct Ends {
    std::uint64_t front;
    std::uint64_t back;
  };
  static Ends EndsOf(std::string_view text) {
    const char* const data = text.data();
    if (text.size() >= 8) return {Load<std::uint64_t>(data), Load<std::uint64_t>(data + text.size() - 8)};
    if (text.size() >= 4) return {Load<std::uint32_t>(data), Load<std::uint32_t>(data + text.size() - 4)};
    if (text.size() >= 2) return {Load<std::uint16_t>(data), Load<std::uint16_t>(data + text.size() - 2)};
    return {Load<std::uint8_t>(data), 0};
  }
  template <class Word>
  static Word Load(const char* from) {
    Word word = 0;
    std::memcpy(&word, from, sizeof word);
    return word;
  }

  std::array<Known, 1024> places_{};
};

}  // namespace standalone
