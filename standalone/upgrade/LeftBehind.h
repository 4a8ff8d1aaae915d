#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "upgrade/VersionManager.h"

namespace standalone {

/// What earlier runs left behind in a document, and a person may have corrected since.
class LeftBehind {
 public:
  /// The document must outlive it.
  explicit LeftBehind(Document& document) : document_(document) {}

  /// Which recorded upgrades to run again, and on what: first all that the rules find left behind; then, call
  /// after call, what is found newly and what needs several runs, since the last one left less of it behind.
  /// When none of that is left, everything once more, as long as less is left behind in all than the last
  /// time: one upgrade may wait for another. So the calls end with an empty answer, and only when nothing
  /// more can be done without a person.
  std::vector<VersionManager::Again> Next();

 private:
  using Pair = std::pair<std::string_view, Feature*>;  // an identifier, and what it visits

  Document& document_;
  std::map<Pair, std::size_t> given_;  // with the number of findings then
  std::size_t totalBefore_ = 0;        // all findings, when everything was given last
};

}  // namespace standalone
