#include "compare/DocumentDifference.h"

#include <algorithm>

#include "compare/FeatureDifference.h"

namespace standalone {
namespace {

const Feature* Counterpart(const Feature& feature, const Document& other) {
  const Feature* const found = other.Find(feature.id);
  return found == nullptr || found->removed ? nullptr : found;
}

std::vector<std::string> Without(const std::vector<std::string>& all, const std::vector<std::string>& other) {
  std::vector<std::string> rest;
  for (const std::string& each : all) {
    if (std::ranges::find(other, each) == other.end()) rest.push_back(each);
  }
  return rest;
}

}  // namespace

DocumentDifference Compare(const Document& before, const Document& after) {
  DocumentDifference difference;
  difference.upgradesBefore = Without(before.Upgrades(), after.Upgrades());
  difference.upgradesAfter = Without(after.Upgrades(), before.Upgrades());
  for (const Feature* was = before.First(); was != nullptr; was = was->next) {
    const Feature* const is = Counterpart(*was, after);
    if (is == nullptr) {
      difference.removed.push_back(was);
    } else if (Differ(*was, *is)) {
      difference.changed.push_back({was, is});
    }
  }
  for (const Feature* is = after.First(); is != nullptr; is = is->next) {
    if (Counterpart(*is, before) == nullptr) difference.created.push_back(is);
  }
  return difference;
}

}  // namespace standalone
