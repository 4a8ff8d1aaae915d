#pragma once

#include <string_view>
#include <vector>

#include "adapters/Attributes.h"
#include "check/Rule.h"

namespace standalone::check {

// What the rules of several subjects ask of a feature, and in what ways features are damaged.

inline bool IsA(const Feature& feature, const Key& lateType) {
  return feature.type->Id() == lateType.Id();
}
bool HasAttribute(Feature& feature, const Key& key);
/// Whether the attribute is there and holds nothing: its place was left empty, to be filled later.
bool IsLeftEmpty(Feature& feature, const Key& key);
/// The text of a string attribute; empty without one.
std::string_view TextOf(Feature& feature, const Key& key);
std::int32_t IntegerOf(Feature& feature, const Key& key, std::int32_t otherwise);
bool FlagOf(Feature& feature, const Key& key);

/// The first connector among the supports; null without one.
Feature* FirstSupport(Feature& feature);
/// What the first support rests on; null without one.
Feature* FirstSupported(Feature& feature);
/// A group that is to be replaced by its members: one of supports that is not defined on a mesh part.
bool IsGroupOfSupports(Feature& feature);
bool IsOfThisProduct(Feature& analysisCase);

/// Whether velocity and acceleration conditions once held a degree of freedom in a component of that name.
bool IsOldMotion(std::string_view component);

/// Appends what keeps the value of the parameter behind `key` from being read; nothing when it can be.
void AppendParameterDamage(Feature& feature, const Key& key, std::vector<Damage>& damage);

/// Appends what the feature lacks in that state though routines count on it.
void AppendMissing(const FeatureState& state, std::vector<Damage>& damage);

/// For late types whose host upgrade makes components.
Verdict LacksLayout(Feature& feature, const Survey& survey);
inline constexpr std::string_view kLacks = "a basic component of the current layout is missing";

extern const DamageKind kMissing;    ///< An attribute without which nothing can be done.
extern const DamageKind kNoInteger;  ///< An attribute that holds something else.

std::string LowerFirst(std::string text);

/// The case that stands above, which is handed what concerns the features beneath it.
Feature* VisitCase(Feature& feature);
Feature* VisitFather(Feature& feature);
/// For what a conversion of the whole document changes.
Feature* VisitNobody(Feature& feature);

}  // namespace standalone::check
