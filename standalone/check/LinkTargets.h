#pragma once

#include <initializer_list>
#include <span>
#include <string_view>

#include "model/Value.h"

namespace standalone {

/// What the links of some attributes must lead to. Listed where readers take a link to anything else for
/// none, or where an upgrade would hand it on.
struct LinkTarget {
  std::string_view lateType;                        ///< Or kind: what has the attributes.
  std::initializer_list<std::string_view> targets;  ///< Late types or kinds; one of them.
  std::initializer_list<std::string_view> keys;
};

[[nodiscard]] std::span<const LinkTarget> LinkTargets();

/// Whether the link, or one of the list, leads to something else. A link that holds nothing does not.
[[nodiscard]] bool LeadsElsewhere(const Value& value, const LinkTarget& target);

}  // namespace standalone
