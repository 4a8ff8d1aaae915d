#pragma once

#include <string_view>
#include <vector>

#include "adapters/Attributes.h"
#include "check/Conformity.h"

namespace standalone::check {

// What the rules of several subjects ask of a feature.

inline bool IsA(const Feature& feature, std::string_view lateType) {
  return feature.TypeName() == lateType;
}
bool HasAttribute(Feature& feature, const Key& key);
/// Whether the link attribute leads to a parameter that has a value.
bool HasParameter(Feature& feature, const Key& key);
/// The text of a string attribute; empty without one.
std::string_view TextOf(Feature& feature, const Key& key);
std::int32_t IntegerOf(Feature& feature, const Key& key, std::int32_t otherwise);
bool FlagOf(Feature& feature, const Key& key);

/// Whether a support rests on a feature of that late type.
bool RestsOn(Feature& feature, std::string_view lateType);
/// A group that is to be replaced by its members: one of supports that is not defined on a mesh part.
bool IsGroupOfSupports(Feature& feature);

/// For late types whose host upgrade makes components.
Verdict LacksLayout(Feature& feature, const Survey& survey);

}  // namespace standalone::check
