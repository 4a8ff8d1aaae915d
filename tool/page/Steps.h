#pragma once

#include <simdjson.h>

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "page/Detail.h"
#include "page/FeatureMap.h"
#include "page/UpgradeIndex.h"

namespace tool::page {

/// What each upgrade did to a document, with equal changes of several features folded into one. How much it
/// holds does not depend on how many features there are, but for how many differ in what changed.
class Steps {
 public:
  /// Both must outlive it. The features must be known before the first change is added; null: only how many
  /// features were changed is wanted.
  Steps(UpgradeIndex& upgrades, const FeatureMap* features) : upgrades_(upgrades), features_(features) {}

  /// Entries as a record or a difference tells them. Where no upgrades are told, the change belongs to none.
  void AddChanged(simdjson::dom::element feature);
  void AddMade(simdjson::dom::element feature);
  void AddRemoved(simdjson::dom::element feature);

  /// In chronological order. Tells `upgrades` what each did.
  [[nodiscard]] std::vector<Step> Take();

 private:
  struct Folding {
    Change change;
    std::set<Labelled> different;  // of `own`, as many as tell whether all are the same
  };
  struct Work {
    std::unordered_map<std::string, Folding> changes;
    std::map<std::string, Gathered> makes;
    std::map<std::string, Gathered> removes;
    std::int64_t last = -1;  // the feature that was counted last
    Step step;
  };

  void Fold(Work& work, std::int64_t id, const std::string& type, simdjson::dom::element change);
  static void Gather(std::map<std::string, Gathered>& into, simdjson::dom::element feature);
  [[nodiscard]] std::set<int> PlacesIn(simdjson::dom::element entry);

  UpgradeIndex& upgrades_;
  const FeatureMap* features_;
  std::map<int, Work> works_;
};

}  // namespace tool::page
