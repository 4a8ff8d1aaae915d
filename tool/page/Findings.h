#pragma once

#include <simdjson.h>

#include <map>
#include <string>

#include "page/Detail.h"
#include "page/UpgradeIndex.h"

namespace tool::page {

/// What a person must look at, or what a check found, those of which the same is to be said together.
class Findings {
 public:
  explicit Findings(UpgradeIndex& upgrades) : upgrades_(upgrades) {}

  /// An entry as a record or a check tells it.
  void Add(simdjson::dom::element finding);

  /// In the order in which they were added first. Of very many the first.
  [[nodiscard]] Cut<Attention> Take();

 private:
  UpgradeIndex& upgrades_;
  std::map<std::string, std::size_t> places_;
  std::size_t count_ = 0;
  std::vector<Attention> groups_;
};

}  // namespace tool::page
