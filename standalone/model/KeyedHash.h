#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace standalone {

// Hashes for tables whose keys come out of documents. They depend on a key that every process draws for
// itself: nobody can write a document whose entries all fall in one bucket. So nothing that is told or
// written may depend on the order of such a table.

[[nodiscard]] std::uint64_t KeyedHashOf(std::uint64_t number) noexcept;
[[nodiscard]] std::uint64_t KeyedHashOf(std::string_view text) noexcept;

/// For the standard containers, of numbers or of texts.
struct KeyedHash {
  using is_transparent = void;

  std::size_t operator()(std::string_view text) const noexcept { return KeyedHashOf(text); }
  std::size_t operator()(std::uint64_t number) const noexcept { return KeyedHashOf(number); }
  std::size_t operator()(std::int64_t number) const noexcept {
    return KeyedHashOf(static_cast<std::uint64_t>(number));
  }
  std::size_t operator()(std::uint32_t number) const noexcept { return KeyedHashOf(std::uint64_t{number}); }
};

}  // namespace standalone
