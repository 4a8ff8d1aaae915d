#include "HVXEAnalysisCaseUpgrade.h"

#include <span>

#include "HVXSectionControlsUpgrade.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "base/VLMMsgCatalog.h"
#include "modeler/VLMIAlias.h"

namespace {

constexpr const char* kLateTypes[] = {"AnalysisCase"};

const VLMString kCatalog("HVXVersionManager");

// A name of older documents and what it is called now: keys of the message catalog, and the texts without
// one.
struct NamePair {
  const char* oldKey;
  const char* oldDefault;
  const char* newKey;
  const char* newDefault;
};

// The mix of hyphens and blanks is that of the old names, on purpose.
constexpr NamePair kCaseNames[] = {
    {"Halvex.Structural.Case", "Halvex-Structural-Case", "Nonlinear.Structural.Case",
     "Nonlinear Structural Case"},
    {"Halvex.Explicit.Dynamics.Case", "Halvex-Explicit-Dynamics-Case", "Explicit.Dynamics.Case",
     "Explicit Dynamics Case"},
    {"Halvex.Thermal.Case", "Halvex-Thermal-Case", "Thermal.Case", "Thermal Case"},
};

constexpr NamePair kSubFeatureNames[] = {
    {"Halvex.Simulation.History", "Halvex Simulation History", "Simulation.History", "Simulation History"},
    {"Halvex.Jobs", "Halvex Jobs", "Jobs", "Jobs"},  // the one new key without a dot, on purpose
    {"Halvex.Display.Groups", "Halvex Display Groups", "Display.Groups", "Display Groups"},
    {"Halvex.Analysis.Case.Solution", "Halvex-Analysis-Case Solution", "Analysis.Case.Solution",
     "Analysis Case Solution"},
    {"Halvex.Solution.Sensors", "Halvex Solution Sensors", "Solution.Sensors", "Solution Sensors"},
};

struct Replacement {
  VLMUnicodeString oldText;
  VLMUnicodeString newText;
};

// Each pair replaces its default texts first and then the catalog's, in the order of the table: a document
// that holds the default names is renamed in a session of any language.
std::vector<Replacement> ReplacementsOf(std::span<const NamePair> pairs) {
  std::vector<Replacement> replacements;
  for (const NamePair& pair : pairs) {
    replacements.push_back({pair.oldDefault, pair.newDefault});
    replacements.push_back({VLMMsgCatalog::BuildMessage(kCatalog, pair.oldKey, nullptr, 0, pair.oldDefault),
                            VLMMsgCatalog::BuildMessage(kCatalog, pair.newKey, nullptr, 0, pair.newDefault)});
  }
  return replacements;
}

// Writes the name back even when nothing was replaced, on purpose.
void Rename(const VLMIAlias_var& spAlias, std::span<const Replacement> replacements) {
  VLMUnicodeString name;
  static_cast<void>(spAlias->GetExternalName(name));
  for (const Replacement& replacement : replacements)
    name.ReplaceAll(replacement.oldText, replacement.newText);
  static_cast<void>(spAlias->SetExternalName(name));
}

// Stops at the first feature that cannot be named; those before it stay renamed, on purpose.
HRESULT RenameSubFeatures(const VLMISamAnalysisScan_var& spScan, std::span<const Replacement> replacements) {
  VLMListValVLMBaseUnknown_var subFeatures;
  static_cast<void>(spScan->ListChildren(subFeatures, VLMScanMode::kAll));
  for (int position = 1; position <= subFeatures.Size(); ++position) {
    const VLMIAlias_var spAlias(subFeatures[position]);
    if (spAlias == NULL_var) return E_FAIL;
    Rename(spAlias, replacements);
  }
  return S_OK;
}

}  // namespace

const HVXUpgradeBinding HVXEAnalysisCaseUpgrade::kBindings[] = {
    {kUpgradeToElemType, "Changes nothing; recorded only.", Own<&HVXEAnalysisCaseUpgrade::MigrateToElemType>,
     HVXOnFailure::kIgnore},
    {kUpgradeToLocalAndGlobalAsgn, "Changes nothing; recorded only.",
     Own<&HVXEAnalysisCaseUpgrade::MigrateToLocalAndGlobalAssignment>, HVXOnFailure::kIgnore},
    {kUpgradeGlobalAndLocalElemAssgnToContainSectionControls,
     "Adds an element assignment to each local one, and section controls to those of the case's type of "
     "analysis.",
     Shared<&HVXAddSectionControlsToCase>, HVXOnFailure::kIgnore,
     "A case without element assignments has none to complete, and one whose local assignment holds two ends "
     "the pass."},
    {kUpgradeAnalysisCaseExternalName, "Writes the product word in names in mixed case.",
     Own<&HVXEAnalysisCaseUpgrade::RewriteProductWord>, HVXOnFailure::kIgnore},
    {kUpgradeFeaturesExternalName, "Replaces names that mention the product by neutral ones.",
     Own<&HVXEAnalysisCaseUpgrade::ReplaceProductNames>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEAnalysisCaseUpgrade::kClass = {
    .name = "HVXEAnalysisCaseUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

// The identifier is recorded and nothing is changed, on purpose: what the step did to element types is not
// known.
HRESULT HVXEAnalysisCaseUpgrade::MigrateToElemType() {
  return S_OK;
}

// Nothing is changed, on purpose: what the step did to the case's assignments is not known either.
HRESULT HVXEAnalysisCaseUpgrade::MigrateToLocalAndGlobalAssignment() {
  return S_OK;
}

HRESULT HVXEAnalysisCaseUpgrade::RewriteProductWord() {
  const VLMIAlias_var spAlias(Feature());
  if (spAlias == NULL_var) return E_FAIL;
  // The word is the same in every language, so no catalog is asked.
  const Replacement capitals[] = {{"HALVEX", "Halvex"}};
  Rename(spAlias, capitals);

  const VLMISamAnalysisScan_var spScan(Feature());
  if (spScan == NULL_var) return E_FAIL;
  return RenameSubFeatures(spScan, capitals);
}

HRESULT HVXEAnalysisCaseUpgrade::ReplaceProductNames() {
  const VLMIAlias_var spAlias(Feature());
  if (spAlias == NULL_var) return E_FAIL;
  Rename(spAlias, ReplacementsOf(kCaseNames));

  const VLMISamAnalysisScan_var spScan(Feature());
  if (spScan == NULL_var) return E_FAIL;
  return RenameSubFeatures(spScan, ReplacementsOf(kSubFeatureNames));
}

HVX_EXPORT_CREATE_TIE(HVXEAnalysisCaseUpgrade)
