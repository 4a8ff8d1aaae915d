#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "model/Feature.h"

namespace standalone {

/// One basic component of the current layout of a late type.
struct ComponentLayout {
  std::string_view name;  ///< "Holder/Name" stands within component "Holder".
  std::string_view type;
  double value = 0.0;  ///< The default: a number, or 0 and 1 for a boolean.
  std::string_view magnitude = {};
  bool switchable = false;  ///< Has "IsActive", which begins with 0.
};

/// The basic components that features of the late type have in current documents; empty when it has no
/// layout.
std::span<const ComponentLayout> LayoutOf(const LateType& type);

/// Whether the feature lacks a component of its layout.
bool LacksComponents(Feature& feature);
/// The names of those that it lacks.
std::vector<std::string_view> LackingComponents(Feature& feature);
/// Whether it lacks one, or has one that is of another type than the layout's.
bool DiffersFromLayout(Feature& feature);
/// Makes the components that it lacks. Those that are there keep what they hold.
void CompleteComponents(Feature& feature);

}  // namespace standalone
