#include "upgrade/Choice.h"

#include <algorithm>
#include <iterator>

#include "base/Resemblance.h"

namespace standalone {

Choice ChooseUpgrades(const VersionManager& manager, const std::vector<std::string>& wanted,
                      const std::vector<std::string>& pending) {
  const auto isWanted = [&wanted](const std::string& identifier) {
    return std::ranges::find(wanted, identifier) != wanted.end();
  };
  Choice choice;
  std::ranges::copy_if(pending, std::back_inserter(choice.identifiers), isWanted);
  choice.broughtAlong = manager.NeededBy(choice.identifiers, pending);
  if (choice.broughtAlong.empty()) return choice;
  const auto isChosen = [&](const std::string& identifier) {
    return isWanted(identifier) ||
           std::ranges::find(choice.broughtAlong, identifier, &VersionManager::Needed::identifier) !=
               choice.broughtAlong.end();
  };
  choice.identifiers.clear();
  std::ranges::copy_if(pending, std::back_inserter(choice.identifiers), isChosen);
  return choice;
}

std::string_view LikelyMeant(const VersionManager& manager, std::string_view identifier) {
  constexpr std::size_t kLettersPerFault = 3;
  constexpr std::size_t kLeastPart = 4;
  std::vector<std::string_view> known;
  for (const KnownUpgrade& each : manager.Known()) known.emplace_back(each.identifier);
  const std::string_view nearest = Resembling(identifier, known, kLettersPerFault);
  if (!nearest.empty() || identifier.size() < kLeastPart) return nearest;
  const auto holding = std::ranges::find_if(
      known, [identifier](std::string_view each) { return each.find(identifier) != std::string_view::npos; });
  return holding == known.end() ? std::string_view() : *holding;
}

// Old documents grow to about twice their features; the largest growth that made sense was less than tenfold.
std::size_t UsualCreationLimit(std::size_t features) {
  constexpr std::size_t kMadePerFeature = 10;
  constexpr std::size_t kMadeInAnyDocument = 1'000'000;
  return kMadeInAnyDocument + kMadePerFeature * features;
}

}  // namespace standalone
