#include "upgrade/VersionManager.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "session/Session.h"
#include "upgrade/BuiltInLibrary.h"
#include "upgrade/UpgradePlace.h"
#include "upgrade/UpgradeRunner.h"
#include "upgrade/WithoutRules.h"
#include "workbench/HVXIUpgrade.h"

namespace standalone {
VersionManager::VersionManager(const std::vector<const HVXUpgradeLibrary*>& libraries)
    : libraries_(libraries) {
  for (const HVXUpgradeLibrary* const library : libraries) Learn(*library);
  for (const HVXUpgradeLibrary* const library : libraries) LearnOrders(*library);
  LearnShared();
}

void VersionManager::Learn(const HVXUpgradeLibrary& library) {
  for (const VLMUnicodeString& identifier : library.identifiers) FindOrAdd(identifier.View(), library);
  for (const HVXUpgradeClass* const upgradeClass : library.classes) {
    if (upgradeClass->bindings.empty()) hostUpgrades_.push_back(upgradeClass);
    for (const HVXUpgradeBinding& binding : upgradeClass->bindings) {
      KnownUpgrade& known = FindOrAdd(binding.identifier.View(), library);
      known.bindings.push_back({&library, upgradeClass, &binding});
    }
  }
  for (const HVXDocumentUpgrade& upgrade : library.documentUpgrades) {
    KnownUpgrade& known = FindOrAdd(upgrade.identifier.View(), library);
    known.documentUpgrade = &upgrade;
    known.documentLibrary = &library;
  }
  if (library.observer != nullptr) observers_.push_back(library.observer);
}

// An order with an identifier of a library that is not loaded says nothing about this run.
void VersionManager::LearnOrders(const HVXUpgradeLibrary& library) {
  for (const HVXUpgradeOrder& order : library.orders) {
    if (Find(order.first.View()) == nullptr || Find(order.then.View()) == nullptr) continue;
    orders_.push_back({PositionOf(order.first.View()), PositionOf(order.then.View()), order.reason});
  }
}

void VersionManager::LearnShared() {
  // The first class of each library: a library offers one extension for a late type.
  std::map<std::string_view, std::map<const HVXUpgradeLibrary*, const HVXUpgradeClass*>> extensions;
  for (const HVXUpgradeLibrary* const library : libraries_) {
    for (const HVXUpgradeClass* const upgradeClass : library->classes) {
      if (!(upgradeClass->interface == HVXIUpgrade::kId)) continue;
      for (const char* const lateType : upgradeClass->lateTypes)
        extensions[lateType].emplace(library, upgradeClass);
    }
  }
  std::erase_if(extensions, [](const auto& entry) { return entry.second.size() == 1; });
  if (extensions.empty()) return;
  for (KnownUpgrade& known : known_) {
    for (const KnownUpgrade::Binding& bound : known.bindings) {
      for (const char* const lateType : bound.upgradeClass->lateTypes) {
        const auto found = extensions.find(lateType);
        if (found == extensions.end() || found->second.at(bound.library) != bound.upgradeClass) continue;
        std::vector<const HVXUpgradeClass*>& handed = known.shared[lateType];
        // A class may have two rows for one identifier, and walks over both itself.
        if (handed.empty() || handed.back() != bound.upgradeClass) handed.push_back(bound.upgradeClass);
      }
    }
  }
}

KnownUpgrade& VersionManager::FindOrAdd(std::string_view identifier, const HVXUpgradeLibrary& library) {
  const auto [entry, added] = index_.try_emplace(std::string(identifier), known_.size());
  if (added) {
    known_.emplace_back().identifier = identifier;
    known_.back().library = &library;
  }
  return known_[entry->second];
}

const HVXUpgradeLibrary* VersionManager::LibraryNamed(std::string_view name) const {
  const auto found = std::ranges::find_if(
      libraries_, [name](const HVXUpgradeLibrary* library) { return library->name == name; });
  return found == libraries_.end() ? nullptr : *found;
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

UnknownUpgrades VersionManager::Unknown(const Document& document) const {
  UnknownUpgrades unknown;
  for (const std::string& identifier : document.Upgrades()) {
    const UpgradeSource* const source = document.Sources().Of(identifier);
    MissingLibrary library;
    library.name = source == nullptr ? kBuiltInLibrary : source->library;
    const HVXUpgradeLibrary* const loaded = LibraryNamed(library.name);
    // What bears that name in another library is another upgrade.
    const bool isOfOther = source != nullptr && loaded == nullptr;
    if (Find(identifier) != nullptr && !isOfOther) continue;
    if (source != nullptr) library.version = source->version;
    if (loaded != nullptr) {
      library.isLoaded = true;
      library.loaded = VersionOf(*loaded);
    }
    unknown.Add(library, identifier);
    if (Find(identifier) != nullptr) unknown.NoteNamesake();
  }
  return unknown;
}

bool VersionManager::Refuses(const Document& document) const {
  const UnknownUpgrades unknown = Unknown(document);
  if (unknown.IsEmpty()) return false;
  return !unknown.AreOnlyNotLoaded() || unknown.HaveNamesake() || !Pending(document).empty();
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

std::optional<VersionManager::Again> VersionManager::AgainWithoutRules(Document& document,
                                                                       std::string_view identifier) const {
  const KnownUpgrade* const known = Find(identifier);
  if (known == nullptr || !document.HasRecorded(identifier)) return {};
  const bool converts = known->documentUpgrade != nullptr;
  if (converts && IsBuiltIn(known->documentLibrary->name)) return {};
  const std::set<std::string_view> types = TypesWithoutRules(*known);
  Again again{known->identifier, {}};
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (types.contains(feature->type->Name())) again.features.push_back(feature);
  }
  if (again.features.empty() && !converts) return {};
  return again;
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
  TellSources(*document.Get(), identifiers);
  return run;
}

// Of what programs before format version 2 recorded, too; which version of the library that was nobody knows.
void VersionManager::TellSources(Document& document, const std::vector<std::string>& recordedNow) const {
  const std::set<std::string_view> isNow(recordedNow.begin(), recordedNow.end());
  for (const std::string& identifier : document.Upgrades()) {
    const KnownUpgrade* const known = Find(identifier);
    if (known == nullptr || IsBuiltIn(known->library->name)) continue;
    if (document.Sources().Of(identifier) != nullptr) continue;
    document.Sources().Add(identifier, known->library->name,
                           isNow.contains(identifier) ? VersionOf(*known->library) : std::string_view());
  }
}

}  // namespace standalone
