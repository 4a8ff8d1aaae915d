#include "document/Selection.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/Resemblance.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::KnownUpgrade;
using standalone::VersionManager;

// The one that was probably meant: with few letters wrong, or the first that holds the text. Empty for none.
std::string_view Meant(const VersionManager& manager, std::string_view identifier) {
  constexpr std::size_t kLettersPerFault = 3;
  constexpr std::size_t kLeastPart = 4;
  std::vector<std::string_view> known;
  for (const KnownUpgrade& each : manager.Known()) known.emplace_back(each.identifier);
  const std::string_view nearest = standalone::Resembling(identifier, known, kLettersPerFault);
  if (!nearest.empty() || identifier.size() < kLeastPart) return nearest;
  const auto holding = std::ranges::find_if(
      known, [identifier](std::string_view each) { return each.find(identifier) != std::string_view::npos; });
  return holding == known.end() ? std::string_view() : *holding;
}

}  // namespace

const KnownUpgrade& KnownOrRefuse(const VersionManager& manager, std::string_view identifier) {
  if (const KnownUpgrade* const known = manager.Find(identifier); known != nullptr) return *known;
  const std::string_view meant = Meant(manager, identifier);
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

Selection::Chosen Selection::Of(const std::vector<std::string>& pending) const {
  const auto isWanted = [this](const std::string& identifier) {
    return std::ranges::find(wanted_, identifier) != wanted_.end();
  };
  Chosen chosen;
  std::ranges::copy_if(pending, std::back_inserter(chosen.identifiers), isWanted);
  chosen.broughtAlong = manager_.NeededBy(chosen.identifiers, pending);
  if (chosen.broughtAlong.empty()) return chosen;
  const auto isChosen = [&](const std::string& identifier) {
    return isWanted(identifier) ||
           std::ranges::find(chosen.broughtAlong, identifier,
                             &standalone::VersionManager::Needed::identifier) != chosen.broughtAlong.end();
  };
  chosen.identifiers.clear();
  std::ranges::copy_if(pending, std::back_inserter(chosen.identifiers), isChosen);
  return chosen;
}

}  // namespace tool
