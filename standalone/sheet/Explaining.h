#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sheet/Intentions.h"

/// \file
/// What explanations ask of facts; for the tables of intentions only.

namespace standalone::sheet {

[[nodiscard]] inline bool IsNumber(const Fact& fact, double number) {
  if (fact.standing != Standing::kSet && fact.standing != Standing::kDefault) return false;
  if (fact.value.Kind() == ValueKind::kInteger) return static_cast<double>(fact.value.AsInteger()) == number;
  return fact.value.Kind() == ValueKind::kReal && fact.value.AsReal() == number;
}

[[nodiscard]] inline bool IsFlag(const Fact& fact, bool flag) {
  if (fact.standing != Standing::kSet && fact.standing != Standing::kDefault) return false;
  return fact.value.Kind() == ValueKind::kBoolean && fact.value.AsBoolean() == flag;
}

[[nodiscard]] inline bool IsText(const Fact& fact, std::string_view text) {
  if (fact.standing != Standing::kSet && fact.standing != Standing::kDefault) return false;
  return fact.value.Kind() == ValueKind::kString && fact.value.AsString() == text;
}

/// The feature that the fact links to; null without one.
[[nodiscard]] inline const Feature* TargetOf(const Fact& fact) {
  return fact.standing != Standing::kNotSet && fact.value.Kind() == ValueKind::kLink ? fact.value.Target()
                                                                                     : nullptr;
}

[[nodiscard]] inline bool AreSame(const Feature* left, const Feature* right) {
  return left != nullptr && right != nullptr && left->id == right->id;
}

/// All facts of the subject that are of the quantity.
[[nodiscard]] std::vector<Fact> AllOf(const Sheet& sheet, const Subject& subject, std::string_view quantity);

/// What the feature's attribute of that name holds; null without it.
[[nodiscard]] const Value* Held(const Feature& feature, std::string_view key);
/// The feature that the attribute links to; null without one.
[[nodiscard]] const Feature* HeldFeature(const Feature& feature, std::string_view key);

/// Puts `current` in the place of every `old`; nothing happens for an empty `old`.
void ReplaceAll(std::string& text, std::string_view old, std::string_view current);

/// Explains a single value in whose place a number came, a flag, or a text.
template <int kNumber>
bool BecomesNumber(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && IsNumber(*gained, kNumber) && change.All();
}
template <bool kFlag>
bool BecomesFlag(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && IsFlag(*gained, kFlag) && change.All();
}

}  // namespace standalone::sheet
