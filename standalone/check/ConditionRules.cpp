#include <algorithm>
#include <set>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::HasParameter;

const Key kSonsList("SonsList");
const Key kRotationAxis("RotationAxis");
const Key kRotationAxisPart("RotationAxisPart");

constexpr std::string_view kNoList = "it cannot be registered: the analysis model has no feature list";
constexpr std::string_view kNoParameter = "its parameter, or the parameter's value, is missing";
constexpr std::string_view kNoSonsList = "the list of its sons is missing";
constexpr std::string_view kStraySons = "the list of its sons holds others than old releases made";
constexpr std::string_view kNoContext = "the support has no context, or the body no part with a main body";

// A condition is registered when its migration has succeeded.
Verdict Unregistered(const Survey& survey, std::string_view damage) {
  if (!survey.CanRegister()) return Damaged(kNoList);
  return damage.empty() ? kOutdated : Damaged(damage);
}

template <class... Keys>
Verdict MovedFrom(Feature& feature, const Survey& survey, const Keys&... keys) {
  const bool all = (HasParameter(feature, keys) && ...);
  if (!survey.IsRegistered(feature)) return Unregistered(survey, all ? "" : kNoParameter);
  if ((HasAttribute(feature, keys) || ...)) return all ? kOutdated : Damaged(kNoParameter);
  return OutdatedIf(LacksComponents(feature));
}

template <class... Keys>
Verdict CopiedFrom(Feature& feature, const Survey& survey, const Keys&... keys) {
  const bool all = (HasParameter(feature, keys) && ...);
  if (!survey.IsRegistered(feature)) return Unregistered(survey, all ? "" : kNoParameter);
  return OutdatedIf(LacksComponents(feature));
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

bool HasOldMotion(Feature& feature) {
  for (const char* const half : {"HVXTranslationalVelocity_", "HVXRotationalVelocity_"}) {
    for (const char number : {'1', '2', '3'}) {
      if (FindComponent(feature, std::string(half) + number) != nullptr) return true;
    }
  }
  return false;
}

Verdict Motion(Feature& feature, const Survey& survey) {
  const bool old = HasOldMotion(feature);
  const bool lacks = LacksComponents(feature);
  if (!survey.IsRegistered(feature))
    return Unregistered(survey, lacks && !old ? "it has neither old nor current values" : "");
  return OutdatedIf(old || lacks);
}

// Sons that are redundant go when the condition is migrated; two must be left.
template <class IsRedundant>
Verdict Trimmed(Feature& feature, const Survey& survey, const IsRedundant& isRedundant) {
  const std::vector<Feature*> sons = LinkedFeatures(feature, kSonsList);
  const auto redundant = std::ranges::count_if(sons, [&](const Feature* son) {
    return IsComponent(*son) && isRedundant(std::string_view(son->name));
  });
  const bool registered = survey.IsRegistered(feature);
  if (!HasAttribute(feature, kSonsList)) return registered ? kConforms : Unregistered(survey, kNoSonsList);
  if (std::ssize(sons) - redundant != 2) return Damaged(kStraySons);
  if (!registered) return Unregistered(survey, "");
  return OutdatedIf(redundant > 0 || LacksComponents(feature));
}

Verdict Displacement(Feature& feature, const Survey& survey) {
  return Trimmed(feature, survey, [](std::string_view name) { return name == "DisplBCTrans"; });
}
Verdict ConcentratedForce(Feature& feature, const Survey& survey) {
  return Trimmed(feature, survey,
                 [](std::string_view name) { return name == "ConcForce" || name == "ConcForceMoment"; });
}

bool HasRepetitions(Feature& feature) {
  std::set<std::string_view> names;
  return std::ranges::any_of(LinkedFeatures(feature, kSonsList), [&names](const Feature* son) {
    const std::string_view name = son->name.substr(0, son->name.rfind('.'));
    const auto layout = LayoutOf(LateType::Of("HVXSubmodelBCLT"));
    return std::ranges::find(layout, name, &ComponentLayout::name) != layout.end() &&
           !names.insert(name).second;
  });
}

Verdict Submodel(Feature& feature, const Survey& survey) {
  const bool listed = HasAttribute(feature, kSonsList);
  if (!survey.IsRegistered(feature)) return Unregistered(survey, listed ? "" : kNoSonsList);
  return OutdatedIf(HasRepetitions(feature) || LacksComponents(feature));
}

Verdict InitialVelocity(Feature& feature, const Survey& survey) {
  const std::vector<Feature*> sons = LinkedFeatures(feature, kSonsList);
  const bool listed = HasAttribute(feature, kSonsList);
  if (!survey.IsRegistered(feature)) return Unregistered(survey, listed ? "" : kNoSonsList);
  const bool redundant = sons.size() > 3 && std::any_of(sons.begin() + 3, sons.end(),
                                                        [](const Feature* son) { return IsComponent(*son); });
  return OutdatedIf(redundant || LacksComponents(feature));
}

// A solid is taken out in the support's context, and replaced by the main body of the part that it stands in.
Verdict BodySupport(Feature& feature, const Survey& /*survey*/) {
  static const Key part("Part");
  static const Key mainBody("MainBody");
  Verdict verdict = kConforms;
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first == nullptr || !check::IsA(*first, "Solid")) continue;
    Feature* const owner = first->container == nullptr ? nullptr : LinkedFeature(*first->container, part);
    const bool known = owner != nullptr && LinkedFeature(*owner, mainBody) != nullptr;
    verdict = known && LinkedFeature(*connector, kSecondObject) != nullptr ? kOutdated : Damaged(kNoContext);
    if (verdict.damage.empty()) break;
  }
  return verdict;
}

Verdict OldBody(Feature& feature, const Survey& survey) {
  Verdict verdict = BodySupport(feature, survey);
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    const Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first == nullptr) continue;
    if (!check::IsA(*first, "TopologicalBody") && !check::IsA(*first, "ShapeBody")) continue;
    if (LinkedFeature(*connector, kSecondObject) != nullptr) return kOutdated;
    if (verdict.conforms) verdict = Damaged(kNoContext);
  }
  return verdict;
}

Verdict Axis(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LinkedFeature(feature, kRotationAxis) != nullptr &&
                    !HasAttribute(feature, kRotationAxisPart));
}

Verdict EndIncrement(Feature& feature, const Survey& /*survey*/) {
  Feature* const component = FindComponent(feature, "EndIncrement");
  return OutdatedIf(component != nullptr && check::IntegerOf(*component, kComponentValues, 0) < 0);
}

constexpr std::string_view kInParameter = "its value is not in the current basic components";
constexpr std::string_view kInOldComponents = "its values are in components of old names";
constexpr std::string_view kHasRedundant = "it holds redundant components of old releases";
constexpr std::string_view kLacks = "a basic component of the current layout is missing";
constexpr std::string_view kOnSolid = "a support rests on a solid";

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
    {"HVXAccelerationBCLT", "UpgradeAcclnBCBasicComponents", kInOldComponents, Motion},
    {"HVXVelocityBCLT", "UpgradeVelocityBCBasicComponents", kInOldComponents, Motion},
    {"HVXDisplacementBC", "UpgradeDispBCBasicComponents", kHasRedundant, Displacement},
    {"HVXConcentratedForce", "UpgradeConcForceBasicComponents", kHasRedundant, ConcentratedForce},
    {"HVXSubmodelBCLT", "UpgradeSubModelBCBasicComponents", kHasRedundant, Submodel},
    {"HVXInitialVelocityLT", "UpgradeInitialVelocityBasicComponents", kHasRedundant, InitialVelocity},
    {"HVXSurfaceHeatFlux", "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents", kLacks, check::LacksLayout},
    {"HVXFilmCondition", "UpgradeFilmConditionInvertSurfaceBasicComponents", kLacks, check::LacksLayout},
    {"HVXBodyHeatFlux HVXGravity HVXInitialTemperatureLT HVXRotationalBodyForce HVXTemperatureHistoryLT",
     "UpgradeBodySupport", kOnSolid, BodySupport},
    {"HVXRigidBodyConstraintLT", "UpgradeBodySupport", "a support rests on a body of an old kind", OldBody},
    {"HVXRotationalBodyForce", "UpgradeRBFAxisData", "its axis is stored without the axis's part", Axis},
    {"HVXTemperatureHistoryLT", "UpgradeEndIncrementOption", "its end increment is below 0", EndIncrement},
};

}  // namespace

std::span<const ConformityRule> ConditionRules() {
  return kRules;
}

}  // namespace standalone
