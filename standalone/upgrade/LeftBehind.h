#pragma once

#include <set>
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

  /// Which recorded upgrades to run again, and on what: all that the rules find left behind and that no
  /// earlier call gave. What runs again may bring an upgrade that waited for it within reach; the next call
  /// gives that one. So the calls end with an empty answer.
  std::vector<VersionManager::Again> Next();

 private:
  Document& document_;
  std::set<std::pair<std::string_view, const Feature*>> given_;
};

}  // namespace standalone
