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
constexpr DamageKind kNoBehavior{"its interaction property does not link to it as its {}",
                                 "Let the interaction property link to it as its {}"};

// Only a list of numbers is a table's source, and an empty one holds none.
bool HasOldValue(Feature& behavior) {
  static const Key oldValues("frictionValList");
  static const Key table("FrictionTable");
  std::vector<double> values;
  return !HasAttribute(behavior, table) && Succeeded(ReadAttribute(behavior, oldValues, values)) &&
         !values.empty();
}

bool HasOldSubroutine(Feature& behavior) {
  static const Key userSubroutine("UserSubroutine");
  static const Key formulation("FrictionFormulation");
  constexpr std::int32_t kUserDefined = 3;
  return check::FlagOf(behavior, userSubroutine) &&
         check::IntegerOf(behavior, formulation, 0) != kUserDefined;
}

// Judged at the interaction property, which is what the upgrade is handed ...
template <bool (*isOld)(Feature& behavior)>
Verdict Friction(Feature& feature, const Survey& /*survey*/) {
  Feature* const behavior = LinkedFeature(feature, kTangentialBehavior);
  return OutdatedIf(behavior != nullptr && isOld(*behavior));
}

// ... unless that has lost its link to the behavior beneath it.
template <bool (*isOld)(Feature& behavior)>
Verdict UnlinkedFriction(Feature& feature, const Survey& /*survey*/) {
  static const Key interactionProperty("HVXInteractionPropertyLT");
  Feature* const property = feature.father;
  if (property == nullptr || !check::IsA(*property, interactionProperty) || !isOld(feature))
    return Conforms();
  return LinkedFeature(*property, kTangentialBehavior) == nullptr
             ? Damaged(kNoBehavior, kTangentialBehavior.Text())
             : Conforms();
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

constexpr std::string_view kOldSubroutine = "friction by user subroutine is not its friction formulation";
constexpr std::string_view kOldValue = "the friction value is not in a friction table";

constexpr ConformityRule kRules[] = {
    {"HVXInteractionPropertyLT", "UserSubRoutineAttrUpgrade", kOldSubroutine, Friction<HasOldSubroutine>},
    {"HVXInteractionPropertyLT", "FrictionValueUpgrade", kOldValue, Friction<HasOldValue>},
    {"HVXTangentialBehaviorLT", "UserSubRoutineAttrUpgrade", kOldSubroutine,
     UnlinkedFriction<HasOldSubroutine>, check::VisitFather},
    {"HVXTangentialBehaviorLT", "FrictionValueUpgrade", kOldValue, UnlinkedFriction<HasOldValue>,
     check::VisitFather},
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
