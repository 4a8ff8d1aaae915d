#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "model/Feature.h"
#include "model/KeyedHash.h"

namespace standalone {

/// A set of ids of features. Those of most documents are dense enough for one bit each.
class IdSet {
 public:
  /// For a document of `count` features whose ids are below `end`; others may be entered too.
  IdSet(FeatureId end, std::size_t count) {
    constexpr FeatureId kBitsPerFeature = 64;
    constexpr FeatureId kAlways = 4096;
    if (end < kBitsPerFeature * static_cast<FeatureId>(count) + kAlways)
      bits_.resize(static_cast<std::size_t>(end) / kBits + 1);
  }

  /// False when the id is in the set already.
  bool Insert(FeatureId id) {
    if (!HasBit(id)) return others_.insert(id).second;
    std::uint64_t& word = bits_[static_cast<std::size_t>(id) / kBits];
    const std::uint64_t bit = std::uint64_t{1} << (static_cast<std::size_t>(id) % kBits);
    const bool isNew = (word & bit) == 0;
    word |= bit;
    return isNew;
  }

  [[nodiscard]] bool Contains(FeatureId id) const {
    if (!HasBit(id)) return others_.contains(id);
    const auto place = static_cast<std::size_t>(id);
    return (bits_[place / kBits] >> (place % kBits) & 1U) != 0;
  }

 private:
  static constexpr std::size_t kBits = 64;

  [[nodiscard]] bool HasBit(FeatureId id) const {
    return id >= 0 && static_cast<std::size_t>(id) / kBits < bits_.size();
  }

  std::vector<std::uint64_t> bits_;
  std::unordered_set<FeatureId, KeyedHash> others_;
};

}  // namespace standalone
