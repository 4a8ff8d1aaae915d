#include "upgrade/LeftBehind.h"

#include <algorithm>

#include "check/Conformity.h"

namespace standalone {

std::vector<VersionManager::Again> LeftBehind::Next() {
  std::map<Pair, std::size_t> found;
  std::vector<Pair> inOrder;
  std::size_t total = 0;
  for (const Finding& finding : CheckConformity(document_)) {
    if (finding.kind != FindingKind::kLeftBehind || finding.identifier.empty()) continue;
    // A conversion of the whole document, which visits nothing, does its work on what it cannot complete too.
    if (finding.visited == nullptr && !finding.damage.empty()) continue;
    const Pair pair(finding.identifier, finding.visited);
    if (++found[pair] == 1) inOrder.push_back(pair);
    ++total;
  }
  const auto ranWithoutSuccess = [&](const Pair& pair) {
    const auto last = given_.find(pair);
    return last != given_.end() && found.at(pair) >= last->second;
  };
  if (std::ranges::all_of(inOrder, ranWithoutSuccess)) {
    if (total >= totalBefore_) return {};
    totalBefore_ = total;
  } else {
    if (given_.empty()) totalBefore_ = total;
    std::erase_if(inOrder, ranWithoutSuccess);
  }
  std::vector<VersionManager::Again> upgrades;
  for (const Pair& pair : inOrder) {
    const auto& [identifier, visited] = pair;
    given_[pair] = found.at(pair);
    auto again = std::ranges::find(upgrades, identifier, &VersionManager::Again::identifier);
    if (again == upgrades.end()) again = upgrades.insert(upgrades.end(), {std::string(identifier), {}});
    if (visited != nullptr) again->features.push_back(visited);
  }
  return upgrades;
}

}  // namespace standalone
