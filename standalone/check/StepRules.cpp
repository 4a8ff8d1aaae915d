// Steps and output requests.

#include <algorithm>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Frame.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::IntegerOf;
using check::IsA;

constexpr DamageKind kNoModel{"the document has no analysis model", "Give the document an \"AnalysisModel\""};
constexpr DamageKind kNoNewParameters{"{} of the analysis model is false",
                                      "Set {} of the analysis model to true"};
constexpr DamageKind kNotAMember{"it is in no {}",
                                 "Create a new request in the workbench, and delete this one"};
constexpr DamageKind kNothingElse{"{} holds nothing else", "Select the variables of the request again"};

// Steps.

Verdict StepValues(Feature& feature, const Survey& survey) {
  static const Key parameterOfComponent("Parameter");
  const auto layout = LayoutOf(*feature.type);
  const bool isCurrent = std::ranges::all_of(layout, [&feature](const ComponentLayout& each) {
    Feature* const component = FindComponent(feature, each.name);
    return component != nullptr && LinkedFeature(*component, parameterOfComponent) != nullptr;
  });
  if (isCurrent) return Conforms();
  std::vector<Damage> damage;
  for (const ComponentLayout& each : layout) {
    const std::string quantity(each.name == "StepTime" ? "TimePeriod" : each.name);
    check::AppendParameterDamage(feature, Key("Step" + quantity + "_param"), damage);
  }
  if (!survey.CreatesParameters()) damage.push_back({&kNoNewParameters, "CreatesParameters"});
  return Damaged(std::move(damage));
}

// Told by the late type too: the container's name is in the language of the session that made it.
bool HoldsConnections(const Feature& beneath) {
  static const Key container("HVXInteractionContainerLT");
  return IsA(beneath, container) || (beneath.externalName == "Connections" && beneath.type->IsAnalysisSet());
}

Verdict WithoutConnections(Feature& feature, const Survey& survey) {
  // It mostly is a son of the step; what stands beneath the sons is many times as much.
  const Feature* found = feature.firstSon;
  while (found != nullptr && !HoldsConnections(*found)) found = found->nextSibling;
  if (found == nullptr) found = NextBeneath(feature, feature);
  while (found != nullptr && !HoldsConnections(*found)) found = NextBeneath(feature, *found);
  if (found != nullptr) return Conforms();
  return survey.Of().AnalysisModel() == nullptr ? Damaged(kNoModel) : Outdated();
}

// Output requests.

Verdict OldOutput(Feature& feature, const Survey& /*survey*/) {
  static const Key container("HVXFieldOutputRequestContainerLT");
  const bool isMember = feature.father != nullptr && IsA(*feature.father, container);
  return isMember ? Outdated() : Beyond(kNotAMember, container.Text());
}

bool Lists(std::string_view variables, std::string_view name) {
  while (!variables.empty()) {
    const std::size_t end = variables.find(',');
    if (variables.substr(0, end) == name) return true;
    variables = end == std::string_view::npos ? std::string_view() : variables.substr(end + 1);
  }
  return false;
}

// Requests with propagation data were made by a release that gives them all variables that are preselected by
// default, whatever the case: that is current. Cases of other products are theirs.
Verdict NodalTemperature(Feature& feature, const Survey& /*survey*/) {
  static const Key selection("VariableSelection");
  static const Key variables("PreselectedVariableList");
  static const Key propagationState("PropagationState");
  static const Key analysisType("AnalysisType");
  constexpr std::int32_t kPreselected = 1;
  constexpr std::int32_t kThermal = 2;
  if (HasAttribute(feature, propagationState)) return Conforms();
  const std::string_view list = check::TextOf(feature, variables);
  if (IntegerOf(feature, selection, 0) != kPreselected || !Lists(list, "NT")) return Conforms();
  Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr || !check::IsOfThisProduct(*analysisCase)) return Conforms();
  if (IntegerOf(*analysisCase, analysisType, 0) == kThermal) return Conforms();
  return list == "NT" ? Beyond(kNothingElse, variables.Text()) : Outdated();
}

constexpr ConformityRule kRules[] = {
    {"HVXGeneralStaticStepLT HVXHeatTransferStepLT HVXRiksStepLT HVXStaticLPStepLT", "AddConnectionContainer",
     "the connections container is missing", WithoutConnections},
    {"HVXGeneralStaticStepLT HVXHeatTransferStepLT", "UpgFromSpecToComp",
     "its incrementation is not in the current basic components", StepValues},
    {"HVXFieldOutputLT", "UpgradeFieldOutputRequest", "field output requests have another late type now",
     OldOutput, check::VisitFather},
    {"HVXNewFieldOutputLT", "UpgradeFORPreselectedVarListAttr",
     "the preselected variables hold the nodal temperature in a case that is not thermal", NodalTemperature},
    {"HVXNewFieldOutputLT", "UpgradeFORBasicComponents", check::kLacks, check::LacksLayout},
};

}  // namespace

std::span<const ConformityRule> StepRules() {
  return kRules;
}

}  // namespace standalone
