#include "document/Selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {

using standalone::KnownUpgrade;
using standalone::VersionManager;

const KnownUpgrade& KnownOrRefuse(const VersionManager& manager, std::string_view identifier) {
  if (const KnownUpgrade* const known = manager.Find(identifier); known != nullptr) return *known;
  const std::string_view meant = standalone::LikelyMeant(manager, identifier);
  throw UsageError(fmt::format(
      "there is no upgrade {}; {}", Quoted(identifier),
      meant.empty() ? "the command identifiers lists them" : fmt::format("did you mean \"{}\"?", meant)));
}

Selection::Selection(const VersionManager& manager, const std::vector<std::string>& only,
                     const std::string& until)
    : manager_(manager) {
  for (const std::string& identifier : only) named_.push_back(KnownOrRefuse(manager, identifier).identifier);
  wanted_ = named_;
  if (!only.empty()) return;
  if (!until.empty()) static_cast<void>(KnownOrRefuse(manager, until));
  for (const KnownUpgrade& known : manager.Known()) {
    wanted_.push_back(known.identifier);
    if (known.identifier == until) break;
  }
}

std::vector<VersionManager::Again> Selection::NamedAgain(standalone::Document& document) const {
  std::vector<VersionManager::Again> all;
  for (const std::string& identifier : named_) {
    const bool isTwice = std::ranges::count(all, identifier, &VersionManager::Again::identifier) != 0;
    auto again = manager_.AgainWithoutRules(document, identifier);
    if (again && !isTwice) all.push_back(std::move(*again));
  }
  return all;
}

}  // namespace tool
