#include "model/UpgradeSources.h"

namespace standalone {

const UpgradeSource* UpgradeSources::Of(std::string_view identifier) const {
  const auto found = placeOf_.find(identifier);
  return found == placeOf_.end() ? nullptr : &sources_[found->second];
}

void UpgradeSources::Add(std::string_view identifier, std::string_view library, std::string_view version) {
  const auto [place, isNew] =
      places_.try_emplace({std::string(library), std::string(version)}, sources_.size());
  if (isNew) sources_.push_back({std::string(library), std::string(version), {}});
  sources_[place->second].upgrades.emplace_back(identifier);
  placeOf_.emplace(identifier, place->second);
}

}  // namespace standalone
