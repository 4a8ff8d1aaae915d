#include <algorithm>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Frame.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::HasParameter;
using check::IntegerOf;
using check::IsA;

// Steps.

Verdict StepValues(Feature& feature, const Survey& /*survey*/) {
  static const Key parameterOfComponent("Parameter");
  const auto layout = LayoutOf(*feature.type);
  const bool isCurrent = std::ranges::all_of(layout, [&feature](const ComponentLayout& each) {
    Feature* const component = FindComponent(feature, each.name);
    return component != nullptr && LinkedFeature(*component, parameterOfComponent) != nullptr;
  });
  if (isCurrent) return kConforms;
  const bool isComplete = std::ranges::all_of(layout, [&feature](const ComponentLayout& each) {
    return HasParameter(
        feature, Key("Step" + std::string(each.name == "StepTime" ? "TimePeriod" : each.name) + "_param"));
  });
  return isComplete ? kOutdated : Damaged("a parameter of the step, or its value, is missing");
}

// Told by the late type too: the container's name is in the language of the session that made it.
Verdict WithoutConnections(Feature& feature, const Survey& /*survey*/) {
  const Feature* beneath = NextBeneath(feature, feature);
  while (beneath != nullptr && !IsA(*beneath, "HVXInteractionContainerLT") &&
         !(beneath->externalName == "Connections" && IsOfKind(*beneath, kind::kAnalysisSet))) {
    beneath = NextBeneath(feature, *beneath);
  }
  return OutdatedIf(beneath == nullptr);
}

// Properties.

const Key kTangentialBehavior("tangentialBehavior");

Verdict FrictionValue(Feature& feature, const Survey& /*survey*/) {
  static const Key oldValues("frictionValList");
  static const Key table("FrictionTable");
  Feature* const behavior = LinkedFeature(feature, kTangentialBehavior);
  if (behavior == nullptr || HasAttribute(*behavior, table)) return kConforms;
  std::vector<double> values;
  return OutdatedIf(Succeeded(ReadAttribute(*behavior, oldValues, values)) && !values.empty());
}

Verdict UserFriction(Feature& feature, const Survey& /*survey*/) {
  static const Key userSubroutine("UserSubroutine");
  static const Key formulation("FrictionFormulation");
  Feature* const behavior = LinkedFeature(feature, kTangentialBehavior);
  return OutdatedIf(behavior != nullptr && check::FlagOf(*behavior, userSubroutine) &&
                    IntegerOf(*behavior, formulation, 0) != 3);
}

Verdict OldStiffness(Feature& feature, const Survey& /*survey*/) {
  if (FindComponent(feature, "StabilisationStiffnessValue") != nullptr) return kOutdated;
  return LacksComponents(feature) ? Damaged("it has neither an old nor a current stiffness") : kConforms;
}

Verdict AttributeOfOldCheck(Feature& feature, const Survey& /*survey*/) {
  static const Key ruleNames("ListOfRuleNames");
  return OutdatedIf(HasAttribute(feature, ruleNames));
}

// Output requests.

Verdict OldOutput(Feature& feature, const Survey& /*survey*/) {
  const bool isMember = feature.father != nullptr && IsA(*feature.father, "HVXFieldOutputRequestContainerLT");
  return isMember ? kOutdated : Damaged("it stands in no container of field output requests");
}

bool Lists(std::string_view variables, std::string_view name) {
  while (!variables.empty()) {
    const std::size_t end = variables.find(',');
    if (variables.substr(0, end) == name) return true;
    variables = end == std::string_view::npos ? std::string_view() : variables.substr(end + 1);
  }
  return false;
}

const Key kAnalysisType("AnalysisType");

// Requests with propagation data were made by a release that gives them all variables that are preselected by
// default, whatever the case: that is current.
Verdict NodalTemperature(Feature& feature, const Survey& /*survey*/) {
  static const Key selection("VariableSelection");
  static const Key variables("PreselectedVariableList");
  static const Key propagationState("PropagationState");
  constexpr std::int32_t kPreselected = 1;
  constexpr std::int32_t kThermal = 2;
  if (HasAttribute(feature, propagationState)) return kConforms;
  const std::string_view list = check::TextOf(feature, variables);
  if (IntegerOf(feature, selection, 0) != kPreselected || !Lists(list, "NT")) return kConforms;
  Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr || IntegerOf(*analysisCase, kAnalysisType, 0) == kThermal) return kConforms;
  return list == "NT" ? Damaged("the list holds nothing else") : kOutdated;
}

// Element assignments.

const Key kElementAssignments("ElementAssignments");
const Key kOldAssignments("HVXListElementAsgnSpec");

Verdict OldAssignments(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(!HasAttribute(feature, kElementAssignments) &&
                    LinkedFeatures(feature, kOldAssignments).size() == 2);
}

// In the global assignment only the entry of the case's own type is looked at.
Verdict WithoutControls(Feature& feature, const Survey& /*survey*/) {
  static const Key controls("SectionControlsSpec");
  static const Key entryKind("Kind");
  if (feature.father == nullptr || LinkedFeature(feature, controls) != nullptr) return kConforms;
  Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr) return kConforms;
  if (IsA(*feature.father, "HVXGlobalElemAsgnEntryLT") &&
      IntegerOf(*feature.father, entryKind, -1) != IntegerOf(*analysisCase, kAnalysisType, 0))
    return kConforms;
  return HasAttribute(feature, controls) ? kOutdated : Damaged("it has no place for them");
}

// Jobs and solutions.

Verdict FromInputFile(Feature& feature, const Survey& /*survey*/) {
  static const Key runType("RunType");
  return OutdatedIf(check::TextOf(feature, runType) == "From InputFile");
}

Verdict RestartFrequency(Feature& feature, const Survey& /*survey*/) {
  static const Key frequency("RestartFrequency");
  static const Key interval("RestartInterval");
  return OutdatedIf(IntegerOf(feature, frequency, 0) > 1 && !HasAttribute(feature, interval));
}

Verdict MemoryUnit(Feature& feature, const Survey& /*survey*/) {
  static const Key unit("MemoryUnit");
  return OutdatedIf(IntegerOf(feature, unit, 0) != 1);
}

Verdict ThermalStep(Feature& feature, const Survey& /*survey*/) {
  static const Key type("ResultStepType");
  return OutdatedIf(IntegerOf(feature, type, 0) == 3 &&
                    NameTable::Text(feature.physicalType) != "THERMAL_STATIC_LINEAR");
}

Verdict WithoutCase(Feature& feature, const Survey& /*survey*/) {
  static const Key analysisCase("AnalysisCase");
  static const Key workingCase("WorkingCase");
  if (LinkedFeature(feature, analysisCase) != nullptr) return kConforms;
  const bool hasOne = LinkedFeature(feature, workingCase) != nullptr || CaseAbove(feature) != nullptr;
  return hasOne ? kOutdated : Damaged("there is no case that it could be the solution of");
}

// Names, as the default texts have them: those of other languages cannot be told.

Verdict ProductInCapitals(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(feature.externalName.find("HALVEX") != std::string_view::npos &&
                    CaseAbove(feature) != nullptr);
}

bool NameHoldsOneOf(const Feature& feature, std::span<const std::string_view> texts) {
  return std::ranges::any_of(texts, [&feature](std::string_view text) {
    return feature.externalName.find(text) != std::string_view::npos;
  });
}

Verdict ProductName(Feature& feature, const Survey& /*survey*/) {
  constexpr std::string_view kCases[] = {"Halvex-Structural-Case", "Halvex-Explicit-Dynamics-Case",
                                         "Halvex-Thermal-Case"};
  constexpr std::string_view kBeneathCases[] = {"Halvex Simulation History", "Halvex Jobs",
                                                "Halvex Display Groups", "Halvex-Analysis-Case Solution",
                                                "Halvex Solution Sensors"};
  constexpr std::string_view kPropertySets[] = {"Halvex Properties"};
  if (IsA(feature, "AnalysisCase")) return OutdatedIf(NameHoldsOneOf(feature, kCases));
  if (IsA(feature, "HVXHalvexPropertySetLT")) return OutdatedIf(NameHoldsOneOf(feature, kPropertySets));
  return OutdatedIf(NameHoldsOneOf(feature, kBeneathCases) && CaseAbove(feature) != nullptr);
}

constexpr std::string_view kLacks = "a basic component of the current layout is missing";

constexpr ConformityRule kRules[] = {
    {"HVXGeneralStaticStepLT HVXHeatTransferStepLT HVXRiksStepLT HVXStaticLPStepLT", "AddConnectionContainer",
     "the connections container is missing", WithoutConnections},
    {"HVXGeneralStaticStepLT HVXHeatTransferStepLT", "UpgFromSpecToComp",
     "its incrementation is not in the current basic components", StepValues},
    {"HVXInteractionPropertyLT", "UserSubRoutineAttrUpgrade",
     "friction by user subroutine is not its friction formulation", UserFriction},
    {"HVXInteractionPropertyLT", "FrictionValueUpgrade", "the friction value is not in a friction table",
     FrictionValue},
    {"HVXGaskPropertyLT", "UpgradeGasketStabilizationStiffnessUnit",
     "the stabilization stiffness is in a component of an old name", OldStiffness},
    {"HVXPreTensionPropertyLT", "UpgradeBasicComponents", kLacks, check::LacksLayout},
    {"HVX*", "RemoveConsisChkAttr", "it has rules of an abandoned consistency check", AttributeOfOldCheck},
    {"HVXFieldOutputLT", "UpgradeFieldOutputRequest", "field output requests have another late type now",
     OldOutput},
    {"HVXNewFieldOutputLT", "UpgradeFORPreselectedVarListAttr",
     "the preselected variables hold the nodal temperature in a case that is not thermal", NodalTemperature},
    {"HVXNewFieldOutputLT", "UpgradeFORBasicComponents", kLacks, check::LacksLayout},
    {"HVXLocalElemAsgnLT", "UpgradeLocalElementAssignment", "its element assignments are in an old list",
     OldAssignments},
    {"HVXElementAssignmentLT", "UpgradeGlobalAndLocalElemAssgnToContainSectionControls",
     "the section controls are missing", WithoutControls},
    {"HVXJobLT HVXJobContainerLT", "UpgradeJobRestartData",
     "the restart frequency is not its restart interval", RestartFrequency},
    {"HVXJobLT HVXJobContainerLT", "UpgradeJobForFromInputFile", "jobs run no input files any more",
     FromInputFile},
    {"HVXJobLT HVXJobContainerLT", "UpgradeJobMemoryUnit", "the code of its memory unit is not 1",
     MemoryUnit},
    {"HVXHacAnaStepSolLT", "UpgradeThermalSolutionStep", "a thermal solution has another physical type",
     ThermalStep},
    {"HVXHacSolutionLT", "UpgradeAnalysisCase", "its analysis case is missing", WithoutCase},
    {"*", "UpgradeAnalysisCaseExternalName", "its name holds the product word in capitals",
     ProductInCapitals},
    {"*", "UpgradeFeaturesExternalName", "its name mentions the product", ProductName},
};

}  // namespace

std::span<const ConformityRule> ModelRules() {
  return kRules;
}

}  // namespace standalone
