#pragma once

#include <cstdint>
#include <string_view>

namespace standalone {

/// The number of an interned name; comparing two names is comparing two integers. 0 stands for no name.
using NameId = std::uint32_t;
inline constexpr NameId kNoName = 0;

/// The process's names: attribute keys, late types, physical types. Names are never given back, so texts stay
/// valid.
class NameTable {
 public:
  NameTable() = delete;

  /// The number of `name`, which gets one by the first call. The empty name is `kNoName`.
  static NameId Intern(std::string_view name);
  /// The number of `name` if anything ever had that name, else `kNoName`.
  static NameId Find(std::string_view name);
  static std::string_view Text(NameId id);
};

}  // namespace standalone
