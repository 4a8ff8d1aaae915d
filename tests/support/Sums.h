#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace testing_support {

/// A sum over a text, and over what was summed before it. The same on every machine, other than std::hash;
/// takes eight bytes at once, because megabytes are summed.
inline std::uint64_t SumOf(std::string_view text, std::uint64_t before = 0) {
  std::uint64_t sum = before ^ text.size();
  for (std::size_t i = 0; i < text.size(); i += sizeof sum) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, std::min(sizeof word, text.size() - i));
    sum = (sum ^ word) * 0x9E3779B97F4A7C15U;
    sum ^= sum >> 32U;
  }
  return sum;
}

/// The part of a sum that tables hold.
inline std::uint32_t Shortened(std::uint64_t sum) {
  return static_cast<std::uint32_t>(sum);
}

}  // namespace testing_support
