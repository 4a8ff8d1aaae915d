// Prescribed conditions: whether their values are where they are now.

#include <algorithm>
#include <set>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "check/Rules.h"
#include "check/SonsLists.h"

namespace standalone {
namespace {

using check::HasAttribute;

const Key kSonsList("SonsList");

constexpr DamageKind kNoList{"the analysis model has no {} to register it in",
                             "Give the analysis model an empty list {}"};
constexpr DamageKind kHadNoList{"the analysis model had no \"FeatList\" to register it in",
                                "Give the analysis model an empty list \"FeatList\" in the document as it "
                                "was before, and upgrade that again"};
constexpr DamageKind kMaybeMoved{
    "it was not registered, and its parameters are gone: they were moved, or were never there",
    "Compare the values of its components with the document as it was before, and enter the feature in the "
    "\"FeatList\" of the analysis model"};
constexpr DamageKind kNoMotion{"the component {} is missing",
                               "Give the feature the components {} with the \"Values\" and \"IsActive\" of "
                               "those degrees of freedom"};
constexpr DamageKind kNoValue{"the component {} has no number as its \"Values\" or none as its \"IsActive\"",
                              "Give the components {} numbers as \"Values\" and \"IsActive\""};
constexpr DamageKind kOtherType{"the component {} is of another \"Type\"",
                                "Delete the component {}; the upgrade recreates it"};

constexpr DamageKind kShared{"another feature links to the parameter behind {} too",
                             "Give the feature a parameter of its own as {}, beneath it"};

constexpr DamageKind kNumbered{
    "{} has a number in its name, so nothing reads it",
    "Give the component of that name without a number the value of {}, in its place "
    "in \"SonsList\""};
constexpr DamageKind kBehindThird{
    "{} is after the third place of \"SonsList\", from where everything is removed",
    "Put {} among the first three of \"SonsList\""};

// A condition is registered when its migration has succeeded. One that could not be registered has lost its
// old values: no second run finds them.
Verdict Unregistered(const Survey& survey, std::vector<Damage> damage = {}) {
  if (survey.CanRegister()) return Damaged(std::move(damage));
  damage.push_back({&kNoList, "FeatList"});
  return {Verdict::State::kOnce, std::move(damage), &kHadNoList};
}

// Where nothing is registered the list was missing, and given to the document later: what lacks its
// parameters had them moved, as far as one can tell.
Verdict WithoutParameters(Feature& feature, const Survey& survey, std::vector<Damage> damage) {
  Verdict verdict = Unregistered(survey, std::move(damage));
  if (survey.CanRegister() && !survey.HasRegistered() && !LacksComponents(feature)) {
    verdict.state = Verdict::State::kOnce;
    verdict.onceItRan = &kMaybeMoved;
  }
  return verdict;
}

template <class... Keys>
std::vector<Damage> ParameterDamage(Feature& feature, const Keys&... keys) {
  std::vector<Damage> damage;
  (check::AppendParameterDamage(feature, keys, damage), ...);
  return damage;
}

// A parameter that is moved is taken away, which the host refuses where others read it as well.
void AppendSharing(Feature& feature, const Key& key, std::vector<Damage>& damage) {
  Feature* const parameter = LinkedFeature(feature, key);
  if (parameter == nullptr || parameter->father == nullptr) return;
  if (parameter->document->IsLinkedFromElsewhere(*parameter, *parameter->father))
    damage.push_back({&kShared, std::string(key.Text())});
}

template <class... Keys>
Verdict MovedFrom(Feature& feature, const Survey& survey, const Keys&... keys) {
  const bool isRegistered = survey.IsRegistered(feature);
  if (!isRegistered || (HasAttribute(feature, keys) || ...)) {
    std::vector<Damage> damage = ParameterDamage(feature, keys...);
    (AppendSharing(feature, keys, damage), ...);
    if (!(HasAttribute(feature, keys) || ...)) return WithoutParameters(feature, survey, std::move(damage));
    return isRegistered ? Damaged(std::move(damage)) : Unregistered(survey, std::move(damage));
  }
  return check::LacksLayout(feature, survey);
}

template <class... Keys>
Verdict CopiedFrom(Feature& feature, const Survey& survey, const Keys&... keys) {
  if (!survey.IsRegistered(feature)) return Unregistered(survey, ParameterDamage(feature, keys...));
  return check::LacksLayout(feature, survey);
}

const Key kPressureParameter("pressure_param");
const Key kMagnitudeParameter("magnitude_param");
const Key kReferenceParameter("refTemperature_param");
const Key kVelocityParameter("velocity_param");
const Key kAccelerationParameter("acceleration_param");
const Key kGravityParameters[] = {Key("component1_param"), Key("component2_param"), Key("component3_param")};

Verdict Pressure(Feature& feature, const Survey& survey) {
  return MovedFrom(feature, survey, kPressureParameter);
}
Verdict Gravity(Feature& feature, const Survey& survey) {
  return MovedFrom(feature, survey, kGravityParameters[0], kGravityParameters[1], kGravityParameters[2]);
}
Verdict Temperature(Feature& feature, const Survey& survey) {
  return MovedFrom(feature, survey, kMagnitudeParameter);
}
Verdict Film(Feature& feature, const Survey& survey) {
  return MovedFrom(feature, survey, kReferenceParameter);
}
Verdict RotationalForce(Feature& feature, const Survey& survey) {
  return CopiedFrom(feature, survey, kVelocityParameter, kAccelerationParameter);
}
Verdict Magnitude(Feature& feature, const Survey& survey) {
  return CopiedFrom(feature, survey, kMagnitudeParameter);
}

// The first is the one for degree of freedom 1.
constexpr std::string_view kOldMotion[] = {"HVXTranslationalVelocity_1", "HVXTranslationalVelocity_2",
                                           "HVXTranslationalVelocity_3", "HVXRotationalVelocity_1",
                                           "HVXRotationalVelocity_2",    "HVXRotationalVelocity_3"};
constexpr std::string_view kVelocities[] = {"HVXVelocity_1", "HVXVelocity_2", "HVXVelocity_3",
                                            "HVXVelocity_4", "HVXVelocity_5", "HVXVelocity_6"};

bool IsOldMotion(const Feature& son) {
  return check::IsOldMotion(son.name) && IsComponent(son);
}

bool HasOldMotion(const Feature& feature) {
  const Feature* son = feature.firstSon;
  while (son != nullptr && !IsOldMotion(*son)) son = son->nextSibling;
  return son != nullptr;
}

// What keeps the degree of freedom that the component holds from being read; `name` is what it is called.
void AppendMotionDamage(Feature* component, std::string_view name, std::vector<Damage>& damage) {
  double value = 0.0;
  std::int32_t activity = 0;
  if (component == nullptr) {
    damage.push_back({&kNoMotion, std::string(name)});
  } else if (Failed(ReadAttribute(*component, kComponentValues, value)) ||
             Failed(ReadAttribute(*component, kComponentIsActive, activity))) {
    damage.push_back({&kNoValue, std::string(name)});
  }
}

Verdict Motion(Feature& feature, const Survey& survey, std::vector<Damage> damage) {
  if (!survey.IsRegistered(feature)) return Unregistered(survey, std::move(damage));
  return HasOldMotion(feature) ? Damaged(std::move(damage)) : check::LacksLayout(feature, survey);
}

// All six are moved from the components of old names, and no others.
Verdict Acceleration(Feature& feature, const Survey& survey) {
  if (survey.IsRegistered(feature) && !HasOldMotion(feature)) return check::LacksLayout(feature, survey);
  std::vector<Damage> damage;
  for (const std::string_view name : kOldMotion)
    AppendMotionDamage(FindComponent(feature, name), name, damage);
  return Motion(feature, survey, std::move(damage));
}

// Read as they are, current before old, and written anew.
Verdict Velocity(Feature& feature, const Survey& survey) {
  if (survey.IsRegistered(feature) && !HasOldMotion(feature)) return check::LacksLayout(feature, survey);
  std::vector<Damage> damage;
  for (std::size_t i = 0; i < std::size(kOldMotion); ++i) {
    Feature* const current = FindComponent(feature, kVelocities[i]);
    AppendMotionDamage(current != nullptr ? current : FindComponent(feature, kOldMotion[i]),
                       current != nullptr ? kVelocities[i] : kOldMotion[i], damage);
  }
  return Motion(feature, survey, std::move(damage));
}

// Sons that are redundant go when the condition is migrated; two must be left.
Verdict Trimmed(Feature& feature, const Survey& survey, check::Trim (*trim)(Feature&)) {
  const bool registered = survey.IsRegistered(feature);
  if (!HasAttribute(feature, kSonsList)) {
    return registered ? Conforms() : Unregistered(survey, {{&check::kMissing, "SonsList"}});
  }
  check::Trim trimmed = trim(feature);
  if (trimmed.damage != nullptr) {
    Verdict verdict = Damaged(*trimmed.damage, trimmed.key);
    if (trimmed.isEndless) verdict.state = Verdict::State::kOnce;
    return verdict;
  }
  if (!registered) return Unregistered(survey);
  return trimmed.removesSome ? Outdated() : check::LacksLayout(feature, survey);
}

Verdict Displacement(Feature& feature, const Survey& survey) {
  return Trimmed(feature, survey, check::TrimDisplacement);
}
Verdict ConcentratedForce(Feature& feature, const Survey& survey) {
  return Trimmed(feature, survey, check::TrimConcentratedForce);
}

bool HasRepetitions(Feature& feature) {
  static const auto layout = LayoutOf(LateType::Of("HVXSubmodelBCLT"));
  std::set<std::string_view> names;
  return std::ranges::any_of(LinkedFeatures(feature, kSonsList), [&names](const Feature* son) {
    const std::string_view name = son->name.substr(0, son->name.rfind('.'));
    return std::ranges::find(layout, name, &ComponentLayout::name) != layout.end() &&
           !names.insert(name).second;
  });
}

// Conditions whose components are made before the list is looked at, and that do not come through without it.
Verdict Listed(Feature& feature, const Survey& survey, bool hasRedundant) {
  if (!survey.IsRegistered(feature)) {
    std::vector<Damage> damage;
    if (!HasAttribute(feature, kSonsList)) damage.push_back({&check::kMissing, "SonsList"});
    return Unregistered(survey, std::move(damage));
  }
  return hasRedundant ? Outdated() : check::LacksLayout(feature, survey);
}

Verdict Submodel(Feature& feature, const Survey& survey) {
  return Listed(feature, survey, HasRepetitions(feature));
}

// Of repetitions the first stays, and only the name without a number is read.
Verdict NumberedParameter(Feature& feature, const Survey& /*survey*/) {
  static const auto layout = LayoutOf(LateType::Of("HVXSubmodelBCLT"));
  std::set<std::string_view> names;
  std::vector<Damage> damage;
  for (const Feature* const son : LinkedFeatures(feature, kSonsList)) {
    const std::string_view name = son->name.substr(0, son->name.rfind('.'));
    const bool isFirst =
        std::ranges::find(layout, name, &ComponentLayout::name) != layout.end() && names.insert(name).second;
    if (isFirst && name != son->name) damage.push_back({&kNumbered, std::string(son->name)});
  }
  return damage.empty() ? Conforms() : Verdict{Verdict::State::kBeyond, std::move(damage)};
}

Verdict InitialVelocity(Feature& feature, const Survey& survey) {
  static const auto layout = LayoutOf(LateType::Of("HVXInitialVelocityLT"));
  constexpr std::size_t kKept = 3;
  const std::vector<Feature*> sons = LinkedFeatures(feature, kSonsList);
  bool hasRedundant = false;
  std::vector<Damage> damage;
  for (std::size_t i = kKept; i < sons.size(); ++i) {
    hasRedundant = hasRedundant || IsComponent(*sons[i]);
    if (std::ranges::find(layout, sons[i]->name, &ComponentLayout::name) != layout.end())
      damage.push_back({&kBehindThird, std::string(sons[i]->name)});
  }
  Verdict verdict = Listed(feature, survey, hasRedundant);
  if (verdict.state != Verdict::State::kConforms)
    std::ranges::move(damage, std::back_inserter(verdict.damage));
  return verdict;
}

Verdict Axis(Feature& feature, const Survey& /*survey*/) {
  static const Key axis("RotationAxis");
  static const Key part("RotationAxisPart");
  return OutdatedIf(LinkedFeature(feature, axis) != nullptr && !HasAttribute(feature, part));
}

Verdict EndIncrement(Feature& feature, const Survey& /*survey*/) {
  constexpr std::string_view kName = "EndIncrement";
  Feature* const component = FindComponent(feature, kName);
  if (component == nullptr || check::IntegerOf(*component, kComponentValues, 0) >= 0) return Conforms();
  return check::TextOf(*component, kComponentType) == "SAMInteger" ? Outdated() : Damaged(kOtherType, kName);
}

constexpr std::string_view kInParameter = "its value is not in the current basic components";
constexpr std::string_view kInOldComponents = "its values are not in components of the current names";
constexpr std::string_view kHasRedundant = "its old list of sons was not updated";

constexpr ConformityRule kRules[] = {
    {"HVXPressure", "UpgradePressureBasicComponents", kInParameter, Pressure},
    {"HVXGravity", "UpgradeGravityBasicComponents", kInParameter, Gravity},
    {"HVXRotationalBodyForce", "UpgradeRotationalBodyForceBasicComponents", kInParameter, RotationalForce},
    {"HVXTemperatureLT", "UpgradeTemperatureBCBasicComponents", kInParameter, Temperature},
    {"HVXInitialTemperatureLT", "UpgradeInitialTemperatureBasicComponents", kInParameter, Temperature},
    {"HVXTemperatureHistoryLT", "UpgradeTemperatureHistoryBasicComponents", kInParameter, Magnitude},
    {"HVXConcHeatFlux", "UpgradeConcHeatFluxBasicComponents", kInParameter, Magnitude},
    {"HVXSurfaceHeatFlux", "UpgradeSurfaceHeatFluxBasicComponents", kInParameter, Magnitude},
    {"HVXFilmCondition", "UpgradeFilmConditionBasicComponents", kInParameter, Film},
    {"HVXAccelerationBCLT", "UpgradeAcclnBCBasicComponents", kInOldComponents, Acceleration},
    {"HVXVelocityBCLT", "UpgradeVelocityBCBasicComponents", kInOldComponents, Velocity},
    {"HVXDisplacementBC", "UpgradeDispBCBasicComponents", kHasRedundant, Displacement},
    {"HVXConcentratedForce", "UpgradeConcForceBasicComponents", kHasRedundant, ConcentratedForce},
    {"HVXSubmodelBCLT", "UpgradeSubModelBCBasicComponents", kHasRedundant, Submodel},
    {"HVXSubmodelBCLT", {}, "the value of a parameter is not where it is read", NumberedParameter},
    {"HVXInitialVelocityLT", "UpgradeInitialVelocityBasicComponents", kHasRedundant, InitialVelocity},
    {"HVXSurfaceHeatFlux", "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents", check::kLacks,
     check::LacksLayout},
    {"HVXFilmCondition", "UpgradeFilmConditionInvertSurfaceBasicComponents", check::kLacks,
     check::LacksLayout},
    {"HVXRotationalBodyForce", "UpgradeRBFAxisData", "its axis is stored without the axis's part", Axis},
    {"HVXTemperatureHistoryLT", "UpgradeEndIncrementOption", "its end increment is below 0", EndIncrement},
};

}  // namespace

bool check::IsOldMotion(std::string_view component) {
  return std::ranges::find(kOldMotion, component) != std::end(kOldMotion);
}

std::span<const ConformityRule> ConditionRules() {
  return kRules;
}

}  // namespace standalone
