#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace standalone {

/// Texts that a document keeps, as far as they were met lately. Most of them (types, units, the names of
/// components) are met again and again, and are kept once.
class RecentTexts {
 public:
  /// Where `text` stands if it was met lately. Holds another text otherwise, and is to be set to the copy of
  /// this one, which must stay as long as this object. `text` is not empty.
  std::string_view& PlaceOf(std::string_view text) { return places_[HashOf(text) % places_.size()]; }

 private:
  // Both ends of a text and its size tell enough.
  static std::size_t HashOf(std::string_view text) {
    std::uint64_t front = 0;
    std::uint64_t back = 0;
    const std::size_t size = std::min(text.size(), sizeof front);
    std::memcpy(&front, text.data(), size);
    std::memcpy(&back, text.data() + text.size() - size, size);
    const std::uint64_t mixed = (front ^ (back * 31) ^ text.size()) * 0x9e3779b97f4a7c15U;
    return static_cast<std::size_t>(mixed >> 40U);
  }

  std::array<std::string_view, 1024> places_;
};

}  // namespace standalone
