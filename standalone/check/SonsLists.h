#pragma once

#include <string>

#include "check/Rule.h"

namespace standalone::check {

/// What trimming a condition's "SonsList" would do, as its upgrade does it.
struct Trim {
  bool removesSome = false;
  bool isEndless = false;              ///< It would never come to an end.
  const DamageKind* damage = nullptr;  ///< Why the list is not what it must be in the end; null when it is.
  std::string key = {};                ///< Names the son that is in the way.
};

Trim TrimDisplacement(Feature& feature);
Trim TrimConcentratedForce(Feature& feature);

}  // namespace standalone::check
