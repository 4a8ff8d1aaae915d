#include "upgrade/VersionManager.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "session/Session.h"
#include "upgrade/UpgradeRunner.h"

namespace standalone {

VersionManager::VersionManager(const std::vector<const HVXUpgradeLibrary*>& libraries) {
  for (const HVXUpgradeLibrary* const library : libraries) Learn(*library);
}

void VersionManager::Learn(const HVXUpgradeLibrary& library) {
  for (const VLMUnicodeString& identifier : library.identifiers) FindOrAdd(identifier.View());
  for (const HVXUpgradeClass* const upgradeClass : library.classes) {
    if (upgradeClass->bindings.empty()) hostUpgrades_.push_back(upgradeClass);
    for (const HVXUpgradeBinding& binding : upgradeClass->bindings) {
      KnownUpgrade& known = FindOrAdd(binding.identifier.View());
      known.bindings.push_back({upgradeClass, &binding});
    }
  }
  for (const HVXDocumentUpgrade& upgrade : library.documentUpgrades) {
    KnownUpgrade& known = FindOrAdd(upgrade.identifier.View());
    known.documentUpgrade = &upgrade;
  }
  for (const HVXUpgradeOrder& order : library.orders) {
    static_cast<void>(FindOrAdd(order.first.View()));
    static_cast<void>(FindOrAdd(order.then.View()));
    orders_.push_back({PositionOf(order.first.View()), PositionOf(order.then.View()), order.reason});
  }
  if (library.observer != nullptr) observers_.push_back(library.observer);
}

KnownUpgrade& VersionManager::FindOrAdd(std::string_view identifier) {
  const auto [entry, added] = index_.try_emplace(std::string(identifier), known_.size());
  if (added) known_.push_back({std::string(identifier), {}});
  return known_[entry->second];
}

const KnownUpgrade* VersionManager::Find(std::string_view identifier) const {
  const auto found = index_.find(std::string(identifier));
  return found == index_.end() ? nullptr : &known_[found->second];
}

std::vector<std::string> VersionManager::Pending(const Document& document) const {
  std::vector<std::string> pending;
  for (const KnownUpgrade& known : known_) {
    if (!document.HasRecorded(known.identifier)) pending.push_back(known.identifier);
  }
  return pending;
}

std::vector<std::string> VersionManager::Unknown(const Document& document) const {
  std::vector<std::string> unknown;
  std::ranges::copy_if(document.Upgrades(), std::back_inserter(unknown),
                       [this](const std::string& identifier) { return Find(identifier) == nullptr; });
  return unknown;
}

std::size_t VersionManager::PositionOf(std::string_view identifier) const {
  return index_.at(std::string(identifier));
}

std::vector<std::size_t> VersionManager::Sorted(const std::vector<std::string>& identifiers) const {
  std::vector<std::size_t> positions;
  positions.reserve(identifiers.size());
  for (const std::string& identifier : identifiers) positions.push_back(PositionOf(identifier));
  std::ranges::sort(positions);
  return positions;
}

std::vector<std::size_t> VersionManager::InOrderOfRunning(const std::vector<std::string>& identifiers) const {
  std::vector<std::size_t> waiting = Sorted(identifiers);
  std::vector<std::size_t> ordered;
  // Each is taken behind what must come first and is still waiting. `waiting` shrinks with each step, so that
  // orders which contradict each other end too.
  const auto take = [&](std::size_t upgrade, const auto& self) -> void {
    const auto found = std::ranges::find(waiting, upgrade);
    if (found == waiting.end()) return;
    waiting.erase(found);
    for (const Order& order : orders_) {
      if (order.then == upgrade) self(order.first, self);
    }
    ordered.push_back(upgrade);
  };
  while (!waiting.empty()) take(waiting.front(), take);
  return ordered;
}

std::vector<VersionManager::Needed> VersionManager::NeededBy(const std::vector<std::string>& chosen,
                                                             const std::vector<std::string>& pending) const {
  std::vector<std::string> wanted = chosen;
  std::vector<Needed> needed;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const std::size_t upgrade = PositionOf(wanted[i]);
    for (const Order& order : orders_) {
      const std::string& first = known_[order.first].identifier;
      if (order.then != upgrade || std::ranges::find(wanted, first) != wanted.end()) continue;
      if (std::ranges::find(pending, first) == pending.end()) continue;
      needed.push_back({first, known_[upgrade].identifier, order.reason});
      wanted.push_back(first);
    }
  }
  return needed;
}

std::vector<const KnownUpgrade*> VersionManager::KnownOnes(
    const std::vector<std::string>& identifiers) const {
  std::vector<const KnownUpgrade*> known;
  for (const std::size_t position : InOrderOfRunning(identifiers)) known.push_back(&known_[position]);
  return known;
}

UpgradeRun VersionManager::Run(const DocumentPtr& document, const std::vector<std::string>& identifiers,
                               const UpgradeWatch& watch) const {
  return RunAgain(
      document, [] { return std::vector<Again>(); }, identifiers, watch);
}

UpgradeRun VersionManager::RunAgain(const DocumentPtr& document, const NextRound& nextRound,
                                    const std::vector<std::string>& identifiers,
                                    const UpgradeWatch& watch) const {
  const std::vector<const KnownUpgrade*> once = KnownOnes(identifiers);
  const CurrentDocumentScope current(document);
  UpgradeRunner runner(*document.Get(), observers_, once, watch);
  std::set<std::string> again;
  for (std::vector<Again> round = nextRound(); !round.empty(); round = nextRound()) {
    std::vector<std::string> wanted;
    wanted.reserve(round.size());
    for (const Again& each : round) wanted.push_back(each.identifier);
    again.insert(wanted.begin(), wanted.end());
    for (const KnownUpgrade* const upgrade : KnownOnes(wanted))
      runner.RunAgain(*upgrade, std::ranges::find(round, upgrade->identifier, &Again::identifier)->features);
  }
  for (const KnownUpgrade* const upgrade : once) runner.Run(*upgrade);
  UpgradeRun run = runner.Finish();
  for (const std::size_t position : Sorted({again.begin(), again.end()}))
    run.identifiers.push_back(known_[position].identifier);
  for (const std::size_t position : Sorted(identifiers)) {
    run.identifiers.push_back(known_[position].identifier);
    document->RecordUpgrade(known_[position].identifier);
  }
  return run;
}

}  // namespace standalone
