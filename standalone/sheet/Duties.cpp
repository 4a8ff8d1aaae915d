#include "sheet/Duties.h"

#include <unordered_set>

#include "session/Messages.h"
#include "sheet/Explaining.h"
#include "sheet/Items.h"
#include "sheet/Listed.h"

namespace standalone::sheet {
namespace {

const Fact* Was(const Change& change, std::string_view quantity) {
  return Sheet::Find(*change.was, quantity);
}
const Fact* Is(const Change& change, std::string_view quantity) {
  return Sheet::Find(*change.is, quantity);
}

bool HasStayed(const Change& change, std::string_view quantity) {
  const Fact* const was = Was(change, quantity);
  const Fact* const is = Is(change, quantity);
  return was != nullptr && is != nullptr && SayTheSame(*was, *is);
}

bool IsStandardPair(const Change& change) {
  return change.is->lateType == "HVXContactConnectionEnhancementStdLT";
}
bool IsConverted(const Change& change) {
  return IsStandardPair(change) && IsOldContact(*change.was);
}
bool IsReplaced(const Change& change) {
  return change.was->lateType == "HVXFieldOutputLT" && change.is->lateType == "HVXNewFieldOutputLT";
}

bool NoCentreOfMass(const Change& change) {
  // A reference that connects nothing is one.
  const bool hasReference = HeldFeature(*change.is->feature, "ReferenceConnector") != nullptr;
  const Fact* const centre = Is(change, "centre of mass is the reference");
  return !hasReference && centre != nullptr && IsFlag(*centre, false);
}

bool NoPartOfAxis(const Change& change) {
  const Fact* const axis = Is(change, "axis");
  const Fact* const part = Is(change, "part of the axis");
  const Feature* const target = axis == nullptr ? nullptr : TargetOf(*axis);
  const Feature* const container = target == nullptr ? nullptr : target->Container();
  return container != nullptr && HeldFeature(*container, "Part") != nullptr && part != nullptr &&
         part->standing == Standing::kNotSet;
}

bool NotInterpolated(const Change& change) {
  const Fact* const midside = Is(change, "midside nodes interpolated");
  return midside != nullptr && IsFlag(*midside, false);
}

bool EndIncrementLeft(const Change& change) {
  const Fact* const increment = Is(change, "end increment");
  return HasStayed(change, "end increment") && increment->standing == Standing::kSet &&
         !IsNumber(*increment, 0);
}

bool HasControls(const Fact* controls, bool has) {
  return controls != nullptr && IsFlag(*controls, has);
}

bool NoTolerances(const Change& change) {
  if (!IsStandardPair(change) || !HasControls(Was(change, "contact controls"), false)) return false;
  const auto lacks = [&](std::string_view quantity, double number) {
    return HasStayed(change, quantity) && !IsNumber(*Is(change, quantity), number);
  };
  return lacks("search tolerance", 0.1) || lacks("overclosure tolerance", -0.001);
}

bool NoTolerancesMode(const Change& change) {
  constexpr std::string_view kMode = "overclosure tolerance mode";
  return IsStandardPair(change) && HasControls(Is(change, "contact controls"), true) &&
         HasStayed(change, kMode) && !IsNumber(*Is(change, kMode), 2);
}

bool ActsNowhereElse(const Change& change) {
  const Fact* const steps = Is(change, "also acts in");
  return change.is->analysisCase != nullptr && steps != nullptr && steps->standing == Standing::kNotSet;
}
bool ContactNotPropagated(const Change& change) {
  return IsConverted(change) && ActsNowhereElse(change);
}
bool RequestNotPropagated(const Change& change) {
  return IsReplaced(change) && ActsNowhereElse(change);
}

bool NoDefaultVariables(const Change& change) {
  const std::optional<std::string> defaults = Messages::Find("HVXAnalysisStep", "PreSelDefault.Title");
  const Fact* const selection = Is(change, "variable selection");
  const Fact* const variables = Is(change, "variables");
  if (!IsReplaced(change) || !defaults || selection == nullptr || variables == nullptr) return false;
  return !IsText(*selection, "preselected") || IsText(*variables, "");
}

bool NoPhysicalType(const Change& change) {
  const Feature* const father = change.is->father;
  const Subject* const owner = father == nullptr ? nullptr : change.after.Find(father->id);
  const Fact* const type = owner == nullptr ? nullptr : Sheet::Find(*owner, "physical type");
  return type != nullptr && type->standing == Standing::kNotSet;
}

bool StillRunsInputFile(const Change& change) {
  const Fact* const was = Was(change, "run type");
  const Fact* const runs = Is(change, "runs an input file");
  return was != nullptr && IsText(*was, "From InputFile") && runs != nullptr && IsFlag(*runs, true);
}

bool NoMeshOfCase(const Change& change) {
  const Fact* const analysisCase = Is(change, "case");
  const Fact* const mesh = Is(change, "mesh of");
  return analysisCase != nullptr && TargetOf(*analysisCase) != nullptr && mesh != nullptr &&
         !AreSame(TargetOf(*analysisCase), TargetOf(*mesh));
}

constexpr Duty kDuties[] = {
    {"AddCenterOfMassToRBC", "rigid body", {"its centre of mass as the reference"}, NoCentreOfMass},
    {"UpgradeRBFAxisData", "rotational body force", {"the part of its axis"}, NoPartOfAxis},
    {"UpgradeTempMidside",
     "initial temperature, temperature history",
     {"interpolation at midside nodes"},
     NotInterpolated},
    {"UpgradeEndIncrementOption", "temperature history", {"the default end increment"}, EndIncrementLeft},
    {"UpgContactWithContactControl", "contact pair", {"the default tolerances"}, NoTolerances},
    {"UpgradeReAutomaticOverclosureTolerancesInContactPair",
     "contact pair",
     {"mode 2 of its tolerances"},
     NoTolerancesMode},
    {"UpgradeToContactConnectionEnhancementLT",
     "contact pair",
     {"its action in later steps"},
     ContactNotPropagated},
    {"UpgradeFieldOutputRequest",
     "field output request",
     {"its action in later steps"},
     RequestNotPropagated},
    {"UpgradeFieldOutputRequest", "field output request", {"its default variables"}, NoDefaultVariables},
    {"UpgradeAnalysisCase", "solution", {"the physical type of its case"}, NoPhysicalType},
    {"UpgradeAnalysisCase", "solution", {"the mesh of its case"}, NoMeshOfCase},
    {"UpgradeJobForFromInputFile",
     "job, settings of new jobs",
     {"a run without the input file"},
     StillRunsInputFile},
};

}  // namespace

std::vector<DutyOfKind> DutiesBetween(const Sheet& before, const Sheet& after) {
  std::unordered_set<std::string_view> fresh(after.Upgrades().begin(), after.Upgrades().end());
  for (const std::string& identifier : before.Upgrades()) fresh.erase(identifier);
  std::vector<DutyOfKind> all;
  for (const Duty& duty : kDuties) {
    if (!fresh.contains(duty.identifier)) continue;
    for (const std::span<const Description> table : Descriptions()) {
      for (const Description& description : table) {
        if (Lists(duty.kinds, ", ", description.kind.name)) all.push_back({&description.kind, &duty});
      }
    }
  }
  return all;
}

}  // namespace standalone::sheet
