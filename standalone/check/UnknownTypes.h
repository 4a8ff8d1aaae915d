#pragma once

#include <vector>

#include "check/Conformity.h"

namespace standalone {

/// Collects the late types that nobody knows: neither the host nor, by a tie of its own, a library.
class UnknownTypes {
 public:
  void Note(Feature& feature) {
    const NameId type = feature.type->Id();
    if (type >= places_.size()) places_.resize(type + std::size_t{1}, kNotLookedAt);
    if (places_[type] == kNotLookedAt) places_[type] = PlaceOf(feature);
    if (places_[type] != kKnown) ++findings_[places_[type]].count;
  }
  /// Appends a finding for each, in the order in which they were met.
  void AppendTo(std::vector<Finding>& findings);

 private:
  static constexpr std::size_t kNotLookedAt = static_cast<std::size_t>(-1);
  static constexpr std::size_t kKnown = kNotLookedAt - 1;

  std::size_t PlaceOf(Feature& feature);

  std::vector<std::size_t> places_;  // by the number of the late type's name
  std::vector<Finding> findings_;
};

}  // namespace standalone
