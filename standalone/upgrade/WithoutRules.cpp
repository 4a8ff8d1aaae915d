#include "upgrade/WithoutRules.h"

#include "upgrade/BuiltInLibrary.h"

namespace standalone {
namespace {

Finding PendingOn(Feature& feature, const KnownUpgrade& upgrade, bool isOfDocument) {
  Finding finding{
      &feature,
      FindingKind::kPending,
      upgrade.identifier,
      isOfDocument
          ? "a library's conversion of the whole document is pending, and no rule tells what it changes"
          : "an upgrade of its library is pending, and no rule tells whether it changes the feature",
      {},
      {},
      {},
      nullptr,
      1};
  if (!isOfDocument) finding.visited = &feature;
  return finding;
}

}  // namespace

std::set<std::string_view> TypesWithoutRules(const KnownUpgrade& upgrade) {
  std::set<std::string_view> types;
  for (const bool isBuiltIn : {false, true}) {
    for (const KnownUpgrade::Binding& bound : upgrade.bindings) {
      if (IsBuiltIn(bound.library->name) != isBuiltIn) continue;
      for (const char* const lateType : bound.upgradeClass->lateTypes) {
        if (isBuiltIn) {
          types.erase(lateType);
        } else {
          types.insert(lateType);
        }
      }
    }
  }
  return types;
}

std::vector<Finding> PendingWithoutRules(Document& document, const VersionManager& manager) {
  std::vector<Finding> findings;
  for (const KnownUpgrade& upgrade : manager.Known()) {
    if (document.HasRecorded(upgrade.identifier)) continue;
    const bool converts = upgrade.documentUpgrade != nullptr && !IsBuiltIn(upgrade.documentLibrary->name);
    if (converts && document.First() != nullptr)
      findings.push_back(PendingOn(*document.First(), upgrade, true));
    const std::set<std::string_view> types = TypesWithoutRules(upgrade);
    if (types.empty()) continue;
    for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
      if (types.contains(feature->type->Name())) findings.push_back(PendingOn(*feature, upgrade, false));
    }
  }
  return findings;
}

}  // namespace standalone
