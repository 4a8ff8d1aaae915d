#include "upgrade/VersionManager.h"

#include <fmt/format.h>

#include <algorithm>

#include "adapters/FeatureAdapter.h"
#include "base/VLMFatalError.h"
#include "base/VLMLibrary.h"
#include "modeler/VLMISpecObject.h"
#include "session/Session.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIPropagatingFeature.h"
#include "workbench/HVXIUpgrade.h"

namespace standalone {
namespace {

constexpr std::size_t kProgressEvery = 4096;

// Handed over before the one that stands second, although it is younger: the second moves a contact's support
// away from the property that holds the clearance which the first maps.
constexpr std::string_view kMapsClearance = "UpgMapCCPClearanceToInterference";
constexpr std::string_view kMovesSupport = "UpgCCPToGACOrConstraintAsSupp";

std::vector<std::string> InOrderOfHandingOver(std::vector<std::string> identifiers) {
  const auto moves = std::ranges::find(identifiers, kMovesSupport);
  const auto maps = std::find(moves, identifiers.end(), kMapsClearance);
  if (maps != identifiers.end()) std::rotate(moves, maps, maps + 1);
  return identifiers;
}

// For each late type, the identifiers of a run that concern it. Made once per late type, not per feature.
class Concerns {
 public:
  Concerns(const VersionManager& manager, const std::vector<std::string>& identifiers) {
    for (const std::string& identifier : InOrderOfHandingOver(identifiers)) {
      for (const KnownUpgrade::Binding& bound : manager.Find(identifier)->bindings) {
        for (const char* const lateType : bound.upgradeClass->lateTypes) {
          const NameId type = LateType::Of(lateType).Id();
          if (type >= lists_.size()) lists_.resize(type + 1);
          VLMListValVLMUnicodeString& list = lists_[type];
          const VLMUnicodeString text(identifier.c_str());
          // Two rows of one class may bind one identifier; the extension finds both by itself.
          if (list.Size() == 0 || !(list[list.Size()] == text)) list.Append(text);
        }
      }
    }
  }

  [[nodiscard]] const VLMListValVLMUnicodeString* Of(const LateType& type) const {
    return type.Id() < lists_.size() && lists_[type.Id()].Size() > 0 ? &lists_[type.Id()] : nullptr;
  }

 private:
  std::vector<VLMListValVLMUnicodeString> lists_;  // by the number of the late type's name
};

HRESULT UpgradeAsItIs(Feature& feature, const VLMListValVLMUnicodeString& identifiers) {
  const HVXIUpgrade_var spUpgrade = HandleOn<HVXIUpgrade>(&feature);
  return spUpgrade == NULL_var ? E_NOINTERFACE : spUpgrade->Upgrade(identifiers);
}

// False when nothing concerned the feature.
bool UpgradeFeature(Feature& feature, const Concerns& concerns, HRESULT& code) {
  const LateType* const type = feature.type;
  const VLMListValVLMUnicodeString* const identifiers = concerns.Of(*type);
  if (identifiers == nullptr) return false;
  code = UpgradeAsItIs(feature, *identifiers);
  if (feature.removed || feature.type == type) return true;
  const VLMListValVLMUnicodeString* const again = concerns.Of(*feature.type);
  if (again != nullptr && Succeeded(code)) code = UpgradeAsItIs(feature, *again);
  return true;
}

// What is kept beside the document is written by whoever changed it, so that the changes are told as theirs.
void WriteBack(const Document& document) {
  if (document.Companion() != nullptr) document.Companion()->WriteBack();
}

std::vector<Feature*> FeaturesOf(const Document& document) {
  std::vector<Feature*> features;
  features.reserve(document.FeatureCount());
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next)
    features.push_back(feature);
  return features;
}

// Handles on all features of a document, made anew only where features came or went in between.
class AllFeatures {
 public:
  explicit AllFeatures(const Document& document) : document_(document) {}

  const VLMListValVLMISpecObject_var& List() {
    if (document_.NextId() == nextId_ && document_.FeatureCount() == count_) return list_;
    nextId_ = document_.NextId();
    count_ = document_.FeatureCount();
    list_.RemoveAll();
    list_.Reserve(count_);
    for (Feature* feature = document_.First(); feature != nullptr; feature = feature->next)
      list_.Append(HandleOn<VLMISpecObject>(feature));
    return list_;
  }

 private:
  const Document& document_;
  FeatureId nextId_ = 0;
  std::size_t count_ = 0;
  VLMListValVLMISpecObject_var list_;
};

// Propagates what was handed over, in the order of the handing over. What is no propagating feature (a tie
// beside a contact, say) has nothing to bring to other steps.
std::vector<FeatureOutcome> PropagateHandedOver(const Document& document) {
  std::vector<FeatureOutcome> outcomes;
  for (Feature* const feature : Session::Current().ForPropagation()) {
    if (feature->removed || !Offers(*feature, HVXIPropagatingFeature::kId)) continue;
    HVXIFactoryExtForPropagation_var spFactory;
    const std::size_t touchedBefore = document.Touched().size();
    HRESULT code = VLMInstantiateComponent("HVXEFactoryExtForPropagation", spFactory);
    const VLMBaseUnknown_var spFeature = HandleOn<VLMBaseUnknown>(feature);
    if (Succeeded(code)) code = spFactory->SetDefaultPropagationData(spFeature, 0, NULL_var);
    if (Succeeded(code)) code = spFactory->Propagate(spFeature, 0);
    outcomes.push_back({feature, code, feature->type, touchedBefore});
  }
  return outcomes;
}

// Gives up on a document in words that tell where; `doing` gives them.
template <class Describe, class Action>
void OrAbort(const Describe& doing, const Action& action) {
  try {
    action();
  } catch (const VLMFatalAssertion& assertion) {
    throw UpgradeAborted(fmt::format("{}: {} in {}", doing(), assertion.what(), assertion.SourcePath()));
  } catch (const VLMNullVarError& error) {
    throw UpgradeAborted(fmt::format("{}: {}", doing(), error.what()));
  }
}

}  // namespace

std::size_t UpgradeRun::FailureCount() const {
  const auto failed = [](const auto& outcome) { return Failed(outcome.code); };
  return static_cast<std::size_t>(std::ranges::count_if(features, failed) +
                                  std::ranges::count_if(documentUpgrades, failed) +
                                  std::ranges::count_if(propagations, failed));
}

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
  const std::vector<std::string>& done = document.Upgrades();
  std::vector<std::string> pending;
  for (const KnownUpgrade& known : known_) {
    if (std::ranges::find(done, known.identifier) == done.end()) {
      pending.push_back(known.identifier);
    }
  }
  return pending;
}

std::vector<std::string> VersionManager::Unknown(const Document& document) const {
  std::vector<std::string> unknown;
  std::ranges::copy_if(document.Upgrades(), std::back_inserter(unknown),
                       [this](const std::string& identifier) { return Find(identifier) == nullptr; });
  return unknown;
}

UpgradeRun VersionManager::Run(const DocumentPtr& document, const std::vector<std::string>& identifiers,
                               const std::function<void(std::size_t, std::size_t)>& onProgress) const {
  const CurrentDocumentScope current(document);
  UpgradeRun run;
  run.identifiers = identifiers;

  const Concerns concerns(*this, identifiers);
  const std::vector<Feature*> features = FeaturesOf(*document.Get());
  for (std::size_t i = 0; i < features.size(); ++i) {
    if (onProgress && i % kProgressEvery == 0) onProgress(i, features.size());
    Feature& feature = *features[i];
    if (feature.removed) continue;
    FeatureOutcome outcome{&feature, S_OK, feature.type, document->Touched().size()};
    bool concerned = false;
    OrAbort([&] { return fmt::format("feature {} ({})", feature.id, feature.TypeName()); },
            [&] { concerned = UpgradeFeature(feature, concerns, outcome.code); });
    if (!concerned) continue;
    run.features.push_back(outcome);
    WriteBack(*document.Get());
  }
  if (onProgress) onProgress(features.size(), features.size());

  AllFeatures all(*document.Get());
  for (const std::string& identifier : identifiers) {
    const HVXDocumentUpgrade* const upgrade = Find(identifier)->documentUpgrade;
    if (upgrade == nullptr) continue;
    VLMListValVLMUnicodeString alone;
    alone.Append(upgrade->identifier);
    OrAbort([&] { return identifier; },
            [&] {
              run.documentUpgrades.push_back({identifier, S_OK, document->Touched().size()});
              run.documentUpgrades.back().code = upgrade->upgrade(alone, all.List());
            });
    WriteBack(*document.Get());
  }
  run.propagations = PropagateHandedOver(*document.Get());
  run.touched = document->Touched().size();
  for (const std::string& identifier : identifiers) document->RecordUpgrade(identifier);
  return run;
}

}  // namespace standalone
