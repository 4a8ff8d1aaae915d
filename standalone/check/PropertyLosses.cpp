#include "check/PropertyLosses.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/Contacts.h"
#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

constexpr std::string_view kRemedy =
    "Read {} in the document as it was before, and give it to the contact pair between the two sides";
constexpr DamageKind kNotHeld{"no contact pair between its two sides holds its {}", kRemedy};

const Value kNothing;

const Value& ValueIn(const FeatureState& state, const Key& key) {
  const auto found = std::ranges::find(state.Attributes(), key.Id(), &Attribute::key);
  return found == state.Attributes().end() ? kNothing : found->value;
}

Feature* LinkIn(const FeatureState& state, const Key& key) {
  const Value& value = ValueIn(state, key);
  return value.Kind() == ValueKind::kLink ? value.Target() : nullptr;
}

std::int64_t IntegerIn(const FeatureState& state, const Key& key) {
  const Value& value = ValueIn(state, key);
  return value.Kind() == ValueKind::kInteger ? value.AsInteger() : 0;
}

double NumberIn(const FeatureState& state, const Key& key) {
  const Value& value = ValueIn(state, key);
  return value.Kind() == ValueKind::kReal ? value.AsReal() : static_cast<double>(IntegerIn(state, key));
}

bool IsTrueIn(const FeatureState& state, const Key& key) {
  return ValueIn(state, key) == Value::Boolean(true) || IntegerIn(state, key) == 1;
}

}  // namespace

std::vector<Damage> PropertyLosses::Of(const Feature& feature, const FeatureState& before) {
  static const Key property("SAMFaceFaceContact");
  static const Key clearanceFlag("ClearanceFlag");
  static const Key clearanceKey("Clearance");
  constexpr std::int64_t kResolvedBySolver = 1;  // the type of a fit that stands for a clearance
  constexpr std::int64_t kGivenValue = 1;        // its definition
  std::vector<Damage> damage;
  if (!feature.removed || before.type->Id() != property.Id()) return damage;
  const auto appendUnlessHeld = [&](const Fit& fit, const Key& key) {
    if (!IsHeld(SidesOf(before), fit)) damage.push_back({&kNotHeld, std::string(key.Text())});
  };
  const Feature* const linked = LinkIn(before, kInterferenceFit);
  const FeatureState* const fit = linked == nullptr ? nullptr : document_.Before(*linked);
  if (fit != nullptr && FitIn(*fit) != Fit()) appendUnlessHeld(FitIn(*fit), kInterferenceFit);
  if (!IsTrueIn(before, clearanceFlag)) return damage;
  // It goes through single precision on its way, unless that cannot hold it.
  double clearance = NumberIn(before, clearanceKey);
  if (std::abs(clearance) <= static_cast<double>(std::numeric_limits<float>::max()))
    clearance = static_cast<double>(static_cast<float>(clearance));
  appendUnlessHeld({kResolvedBySolver, kGivenValue, clearance}, clearanceKey);
  return damage;
}

PropertyLosses::Fit PropertyLosses::FitIn(const FeatureState& fit) {
  return {IntegerIn(fit, kFitType), IntegerIn(fit, kFitDefinition), NumberIn(fit, kFitValue)};
}

// Null for a side that it did not have.
PropertyLosses::Sides PropertyLosses::SidesOf(const FeatureState& property) const {
  const Value& supports = ValueIn(property, kSupports);
  if (supports.Kind() != ValueKind::kList) return {};
  for (const Value& entry : supports.Entries()) {
    if (entry.Kind() != ValueKind::kLink || entry.Target() == nullptr) continue;
    const FeatureState* const connector = document_.Before(*entry.Target());
    if (connector == nullptr) return {};
    return {LinkIn(*connector, kFirstObject), LinkIn(*connector, kSecondObject)};
  }
  return {};
}

bool PropertyLosses::IsHeld(const Sides& sides, const Fit& fit) {
  if (!fits_.has_value()) ListFitsOfPairs();
  const auto [begin, end] = fits_->equal_range(sides);
  return std::any_of(begin, end, [&fit](const auto& held) { return held.second == fit; });
}

void PropertyLosses::ListFitsOfPairs() {
  fits_.emplace();
  for (Feature* pair = document_.First(); pair != nullptr; pair = pair->next) {
    if (!IsContactPair(*pair)) continue;
    Feature* const connector = check::FirstSupport(*pair);
    const Feature* const fit = LinkedFeature(*pair, kInterferenceFit);
    if (connector == nullptr || fit == nullptr) continue;
    fits_->emplace(Sides(LinkedFeature(*connector, kFirstObject), LinkedFeature(*connector, kSecondObject)),
                   FitIn(*fit));
  }
}

}  // namespace standalone
