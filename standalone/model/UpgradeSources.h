#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/KeyedHash.h"

namespace standalone {

/// A version of an upgrade library, other than the built-in one, that a document has been through upgrades
/// of.
struct UpgradeSource {
  std::string library;                ///< Its name.
  std::string version;                ///< Empty where nobody knows it.
  std::vector<std::string> upgrades;  ///< Those of the document's upgrades that came from it.
};

/// Which of a document's upgrades came from which library.
class UpgradeSources {
 public:
  /// In the order in which they came in.
  [[nodiscard]] const std::vector<UpgradeSource>& All() const { return sources_; }
  /// Null for an upgrade of the built-in library, and where nobody tells.
  [[nodiscard]] const UpgradeSource* Of(std::string_view identifier) const;
  /// To be called once for an upgrade.
  void Add(std::string_view identifier, std::string_view library, std::string_view version);

 private:
  std::vector<UpgradeSource> sources_;
  std::map<std::pair<std::string, std::string>, std::size_t> places_;  // by library and version
  std::unordered_map<std::string, std::size_t, KeyedHash, std::equal_to<>> placeOf_;
};

}  // namespace standalone
