// Names that upgrades give.

#include <algorithm>
#include <array>
#include <string>

#include "session/Messages.h"
#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

struct Renaming {
  std::string_view identifier;
  std::string_view old;
  std::string_view current;
  // Where the messages have these words in the user's language; empty for none.
  std::string_view oldKey = {};
  std::string_view currentKey = {};
};

constexpr std::string_view kContacts = "UpgradeToContactConnectionEnhancementLT";
constexpr std::string_view kTies = "UpgCCPToGACOrConstraintAsSupp";
constexpr std::string_view kCapitals = "UpgradeAnalysisCaseExternalName";
constexpr std::string_view kNeutral = "UpgradeFeaturesExternalName";

// In the order in which the upgrades come.
constexpr Renaming kRenamings[] = {
    {kContacts, "Contact Connection Enhancement-", "Contact Pair-"},
    {kTies, "Fastened Connection Enhancement-", "Fastened Pair-"},
    {kCapitals, "HALVEX", "Halvex"},
    {kNeutral, "Halvex-Structural-Case", "Nonlinear Structural Case", "Halvex.Structural.Case",
     "Nonlinear.Structural.Case"},
    {kNeutral, "Halvex-Explicit-Dynamics-Case", "Explicit Dynamics Case", "Halvex.Explicit.Dynamics.Case",
     "Explicit.Dynamics.Case"},
    {kNeutral, "Halvex-Thermal-Case", "Thermal Case", "Halvex.Thermal.Case", "Thermal.Case"},
    {kNeutral, "Halvex Simulation History", "Simulation History", "Halvex.Simulation.History",
     "Simulation.History"},
    {kNeutral, "Halvex Jobs", "Jobs", "Halvex.Jobs", "Jobs"},
    {kNeutral, "Halvex Display Groups", "Display Groups", "Halvex.Display.Groups", "Display.Groups"},
    {kNeutral, "Halvex-Analysis-Case Solution", "Analysis Case Solution", "Halvex.Analysis.Case.Solution",
     "Analysis.Case.Solution"},
    {kNeutral, "Halvex Solution Sensors", "Solution Sensors", "Halvex.Solution.Sensors", "Solution.Sensors"},
    {kNeutral, "Halvex Properties", "Nonlinear and Thermal Properties", "Halvex.Properties",
     "Nonlinear.Thermal.Properties"},
};

void Rename(std::string& name, const Renaming& renaming) {
  ReplaceAll(name, renaming.old, renaming.current);
  if (renaming.oldKey.empty()) return;
  const std::optional<std::string> old = Messages::Find("HVXVersionManager", renaming.oldKey);
  const std::optional<std::string> current = Messages::Find("HVXVersionManager", renaming.currentKey);
  if (old && current) ReplaceAll(name, *old, *current);
}

// Whether renamings of those identifiers, one after the other, give the new name.
bool IsRenamed(const Change& change, std::initializer_list<std::string_view> identifiers) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  if (lost == nullptr || gained == nullptr || lost->standing != Standing::kSet ||
      gained->standing != Standing::kSet)
    return false;
  std::string name(lost->value.AsString());
  for (const Renaming& renaming : kRenamings) {
    if (std::ranges::find(identifiers, renaming.identifier) != identifiers.end()) Rename(name, renaming);
  }
  return name == gained->value.AsString();
}

bool NamesOfContacts(Change& change) {
  return IsRenamed(change, {kContacts}) && change.All();
}
bool NamesOfTies(Change& change) {
  return IsRenamed(change, {kTies}) && change.All();
}
bool Capitals(Change& change) {
  return IsRenamed(change, {kCapitals}) && change.All();
}
bool Neutral(Change& change) {
  return (IsRenamed(change, {kNeutral}) || IsRenamed(change, {kCapitals, kNeutral})) && change.All();
}
bool NameOfNewRequest(Change& change) {
  return change.was->lateType == "HVXFieldOutputLT" && change.All();
}

constexpr Intention kIntentions[] = {
    {kContacts, "contact pair", "name", Meaning::kSame, "contacts are called contact pairs", NamesOfContacts},
    {kTies, "tie", "name", Meaning::kSame, "ties are called fastened pairs", NamesOfTies},
    {kCapitals, "", "name", Meaning::kSame, "the product's name is written in mixed case", Capitals},
    {kNeutral, "", "name", Meaning::kSame, "names no longer mention the product", Neutral},
    {"UpgradeFieldOutputRequest", "field output request", "name", Meaning::kSame,
     "the new request has a name of its own", NameOfNewRequest},
};

}  // namespace

std::span<const Intention> NameIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
