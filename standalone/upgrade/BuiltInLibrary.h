#pragma once

#include <string_view>

namespace standalone {

/// The name of the upgrade library that belongs to this program. Documents tell of all other libraries by
/// name which upgrades came from them; the rest is this one's.
inline constexpr std::string_view kBuiltInLibrary = "HVXUpgradeComponents";

[[nodiscard]] inline bool IsBuiltIn(std::string_view library) {
  return library == kBuiltInLibrary;
}

}  // namespace standalone
