#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "model/LateTypes.h"

namespace standalone {

/// What follows from a late type alone: made when it is asked for first, and kept. For late types of
/// documents that stay open meanwhile.
template <class T>
class PerLateType {
 public:
  /// What `make` makes of the late type. It stays where it is.
  template <class Make>
  const T& Of(const LateType& type, Make make) {
    if (type.Id() >= known_.size()) known_.resize(type.Id() + std::size_t{1});
    std::unique_ptr<const T>& entry = known_[type.Id()];
    if (entry == nullptr) entry = std::make_unique<const T>(make(type));
    return *entry;
  }

 private:
  std::vector<std::unique_ptr<const T>> known_;  // by the number of the late type's name
};

}  // namespace standalone
