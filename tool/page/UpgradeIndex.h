#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// The upgrades that a page tells of, in chronological order, and what they did to its documents.
class UpgradeIndex {
 public:
  /// Both must outlive it.
  UpgradeIndex(const standalone::VersionManager& manager, const Explanations& explanations);

  /// The place of an upgrade in the list; of one that nobody here knows, behind the others.
  [[nodiscard]] int PlaceOf(std::string_view upgrade);
  /// Counts what an upgrade did to one more document.
  void Count(int place, std::size_t features);

  /// The list, as JSON.
  void AppendTo(fmt::memory_buffer& out) const;

 private:
  struct Did {
    std::string name;
    std::size_t documents = 0;
    std::size_t features = 0;
  };

  const standalone::VersionManager& manager_;
  const Explanations& explanations_;
  std::vector<Did> did_;
  std::unordered_map<std::string, int> places_;
};

}  // namespace tool::page
