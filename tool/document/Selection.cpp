#include "document/Selection.h"

#include <fmt/format.h>

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
      meant.empty() ? "'hvxupgrade identifiers' lists them" : fmt::format("did you mean \"{}\"?", meant)));
}

Selection::Selection(const VersionManager& manager, const std::vector<std::string>& only,
                     const std::string& until)
    : manager_(manager) {
  for (const std::string& identifier : only) wanted_.push_back(KnownOrRefuse(manager, identifier).identifier);
  if (!only.empty()) return;
  if (!until.empty()) static_cast<void>(KnownOrRefuse(manager, until));
  for (const KnownUpgrade& known : manager.Known()) {
    wanted_.push_back(known.identifier);
    if (known.identifier == until) break;
  }
}

}  // namespace tool
