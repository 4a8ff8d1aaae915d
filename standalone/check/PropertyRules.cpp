// Interaction properties and sections, and what every product feature once held.

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;

const Key kTangentialBehavior("tangentialBehavior");

constexpr DamageKind kNoStiffness{
    "it has neither an old nor a current stiffness",
    "Give the gasket a component \"StabilisationStiffnessValue\" with a number"};
constexpr DamageKind kNoNumber{"the component {} holds no number", "Give the component {} a number"};
constexpr DamageKind kNoAngle{"{} is missing", "Give the orientation its angle in radians as {}"};

// Only a list of numbers is a table's source, and an empty one holds none.
Verdict FrictionValue(Feature& feature, const Survey& /*survey*/) {
  static const Key oldValues("frictionValList");
  static const Key table("FrictionTable");
  Feature* const behavior = LinkedFeature(feature, kTangentialBehavior);
  if (behavior == nullptr || HasAttribute(*behavior, table)) return Conforms();
  std::vector<double> values;
  return OutdatedIf(Succeeded(ReadAttribute(*behavior, oldValues, values)) && !values.empty());
}

Verdict UserFriction(Feature& feature, const Survey& /*survey*/) {
  static const Key userSubroutine("UserSubroutine");
  static const Key formulation("FrictionFormulation");
  constexpr std::int32_t kUserDefined = 3;
  Feature* const behavior = LinkedFeature(feature, kTangentialBehavior);
  return OutdatedIf(behavior != nullptr && check::FlagOf(*behavior, userSubroutine) &&
                    check::IntegerOf(*behavior, formulation, 0) != kUserDefined);
}

// What the angle's unit is cannot be told, so it is never divided a second time.
Verdict WithoutAngle(Feature& feature, const Survey& /*survey*/) {
  static const Key angle("Angle");
  return HasAttribute(feature, angle) ? Conforms() : Beyond(kNoAngle, "Angle");
}

Verdict OldStiffness(Feature& feature, const Survey& /*survey*/) {
  constexpr std::string_view kOldStiffness = "StabilisationStiffnessValue";
  Feature* const old = FindComponent(feature, kOldStiffness);
  if (old == nullptr) return LacksComponents(feature) ? Damaged(kNoStiffness) : Conforms();
  double value = 0.0;
  const bool isNumber = Succeeded(ReadAttribute(*old, kComponentValues, value));
  return isNumber ? Outdated() : Damaged(kNoNumber, kOldStiffness);
}

Verdict AttributeOfOldCheck(Feature& feature, const Survey& /*survey*/) {
  static const Key ruleNames("ListOfRuleNames");
  return OutdatedIf(HasAttribute(feature, ruleNames));
}

constexpr ConformityRule kRules[] = {
    {"HVXInteractionPropertyLT", "UserSubRoutineAttrUpgrade",
     "friction by user subroutine is not its friction formulation", UserFriction},
    {"HVXInteractionPropertyLT", "FrictionValueUpgrade", "the friction value is not in a friction table",
     FrictionValue},
    {"HVXMatOrientationLT", {}, "the material orientation has no angle", WithoutAngle},
    {"HVXGaskPropertyLT", "UpgradeGasketStabilizationStiffnessUnit",
     "the stabilization stiffness is in a component of an old name", OldStiffness},
    {"HVXPreTensionPropertyLT", "UpgradeBasicComponents", check::kLacks, check::LacksLayout},
    {"HVX*", "RemoveConsisChkAttr", "it has rules of an abandoned consistency check", AttributeOfOldCheck,
     check::VisitNobody},
};

}  // namespace

std::span<const ConformityRule> PropertyRules() {
  return kRules;
}

}  // namespace standalone
