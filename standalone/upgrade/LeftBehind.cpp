#include "upgrade/LeftBehind.h"

#include <algorithm>

#include "check/Conformity.h"

namespace standalone {

std::vector<VersionManager::Again> LeftBehind::Next() {
  std::vector<VersionManager::Again> upgrades;
  for (const Finding& finding : CheckConformity(document_)) {
    if (finding.kind != FindingKind::kLeftBehind || finding.identifier.empty()) continue;
    if (!given_.emplace(finding.identifier, finding.visited).second) continue;
    auto again = std::ranges::find(upgrades, finding.identifier, &VersionManager::Again::identifier);
    if (again == upgrades.end())
      again = upgrades.insert(upgrades.end(), {std::string(finding.identifier), {}});
    if (finding.visited != nullptr) again->features.push_back(finding.visited);
  }
  return upgrades;
}

}  // namespace standalone
