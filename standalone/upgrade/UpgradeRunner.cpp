#include "upgrade/UpgradeRunner.h"

#include <cxxabi.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <typeinfo>

#include "adapters/FeatureAdapter.h"
#include "analysis/MeshNumbers.h"
#include "base/VLMFatalError.h"
#include "base/VLMLibrary.h"
#include "file/DocumentError.h"
#include "session/Session.h"
#include "upgrade/BuiltInLibrary.h"
#include "upgrade/UpgradePlace.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIPropagatingFeature.h"
#include "workbench/HVXIUpgrade.h"

namespace standalone {
namespace {

constexpr std::size_t kProgressEvery = 4096;

std::vector<NameId> TypesOf(const KnownUpgrade& upgrade) {
  std::vector<NameId> types;
  for (const KnownUpgrade::Binding& bound : upgrade.bindings) {
    for (const char* const lateType : bound.upgradeClass->lateTypes)
      types.push_back(LateType::Of(lateType).Id());
  }
  std::ranges::sort(types);
  types.erase(std::unique(types.begin(), types.end()), types.end());  // two rows may bind one identifier
  return types;
}

std::vector<bool> TypesOf(const std::vector<const KnownUpgrade*>& upgrades) {
  std::vector<bool> wanted;
  for (const KnownUpgrade* const upgrade : upgrades) {
    for (const NameId type : TypesOf(*upgrade)) {
      if (type >= wanted.size()) wanted.resize(type + 1);
      wanted[type] = true;
    }
  }
  return wanted;
}

VLMListValVLMUnicodeString Alone(const KnownUpgrade& upgrade) {
  VLMListValVLMUnicodeString identifiers;
  identifiers.Append(VLMUnicodeString(upgrade.identifier.c_str()));
  return identifiers;
}

// The name of what is being caught, for people.
std::string NameOfThrown() {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (type == nullptr) return "what a routine threw";
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(type->name(), nullptr, nullptr, &status), &std::free);
  return status == 0 ? name.get() : type->name();
}

// Conversions of the whole document make a contact pair for each connection property in each case.
std::string WhatWasMade(const Document& document, const UpgradeWork& work) {
  std::size_t old = static_cast<std::size_t>(std::ranges::count_if(
      document.Touched(), [](const Feature* each) { return each->removed && !each->created; }));
  std::size_t properties = 0;
  std::size_t cases = 0;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (feature->created) continue;
    ++old;
    properties += feature->TypeName() == "SAMFaceFaceContact" ? 1 : 0;
    cases += feature->type->MetaClass().IsAKindOf(kind::kAnalysisCase) ? 1 : 0;
  }
  const std::size_t created = document.CreatedCount();
  std::string text =
      fmt::format("it created {} feature{} in a document of {}", created, created == 1 ? "" : "s", old);
  if (work.kind == UpgradeWork::Kind::kConversion && properties != 0)
    text += fmt::format(" ({} connection properties in {} cases)", properties, cases);
  return text + ", which is the limit";
}

// The feature's extension of one of several libraries, which a cast does not give.
HVXIUpgrade_var ExtensionOf(const HVXUpgradeClass& upgradeClass, Feature& feature) {
  if (Checkpoint::Withholds(HVXIUpgrade::kId, feature)) return {};
  return HVXIUpgrade_var::Adopt(static_cast<HVXIUpgrade*>(upgradeClass.createTIE(feature)));
}

// What was registered by the first run already stands in the list twice when its upgrade ran again.
void RegisterOnce(Document& document) {
  static const Key featList("FeatList");
  Feature* const model = document.AnalysisModel();
  const Attribute* const list = model == nullptr ? nullptr : document.FindAttribute(*model, featList.Id());
  if (list == nullptr || list->value.Kind() != ValueKind::kList) return;
  std::unordered_set<const Feature*> seen;
  std::vector<Value> once;
  for (const Value& entry : list->value.Entries()) {
    const bool isLink = entry.Kind() == ValueKind::kLink && entry.Target() != nullptr;
    if (!isLink || seen.insert(entry.Target()).second) once.push_back(entry);
  }
  if (once.size() != list->value.Entries().size())
    document.SetAttribute(*model, featList.Id(), Value::List(document.Keep(std::span<const Value>(once))));
}

}  // namespace

UpgradeRunner::UpgradeRunner(Document& document, const std::vector<UpgradeObserverPlace>& observers,
                             const std::vector<const KnownUpgrade*>& upgrades, const UpgradeWatch& watch)
    : document_(document),
      observers_(observers),
      watch_(watch),
      lists_(document, TypesOf(upgrades)),
      idle_(document, [this] { TellProgress(); }) {
  for (const UpgradeObserverPlace place : observers_) *place() = this;
  for (const KnownUpgrade* const upgrade : upgrades) {
    for (const NameId type : TypesOf(*upgrade)) {
      const auto [known, isNew] = concerned_.try_emplace(NameTable::Text(type), 0);
      if (isNew) known->second = lists_.Of({type}).size();
      expectedVisits_ += known->second;
    }
  }
  TellProgress();
}

UpgradeRunner::~UpgradeRunner() {
  for (const UpgradeObserverPlace place : observers_) *place() = nullptr;
}

void UpgradeRunner::Run(const KnownUpgrade& upgrade) {
  RunOn(upgrade, lists_.Of(TypesOf(upgrade)));
}

void UpgradeRunner::RunAgain(const KnownUpgrade& upgrade, const std::vector<Feature*>& features) {
  for (const Feature* const feature : features) {
    if (!concerned_.contains(feature->type->Name())) runAgain_[feature->type->Name()].insert(feature);
  }
  expectedVisits_ += features.size();
  // The last round tells what became of them.
  const std::unordered_set<const Feature*> visited(features.begin(), features.end());
  std::erase_if(run_.failures, [&](const UpgradeFailure& failure) {
    const bool isRound = failure.work.feature == nullptr || visited.contains(failure.work.feature);
    return failure.work.upgrade == &upgrade && isRound;
  });
  RunOn(upgrade, features);
  RegisterOnce(document_);
}

void UpgradeRunner::RunOn(const KnownUpgrade& upgrade, const std::vector<Feature*>& features) {
  const VLMListValVLMUnicodeString identifiers = Alone(upgrade);
  // As they are before the upgrade: what it makes something else of is current for it.
  std::vector<const LateType*> types;
  types.reserve(features.size());
  for (const Feature* const feature : features) types.push_back(feature->type);
  for (std::size_t i = 0; i < features.size(); ++i) {
    Feature& feature = *features[i];
    if (!feature.removed && feature.type == types[i]) Visit(upgrade, identifiers, feature);
    ++visits_;
    if (visits_ % kProgressEvery == 0) TellProgress();
  }
  if (upgrade.documentUpgrade != nullptr) Convert(upgrade, identifiers);
  PropagateHandedOver(upgrade);
  Settle(upgrade);
}

UpgradeRun UpgradeRunner::Finish() {
  for (const auto& [type, features] : runAgain_) concerned_.emplace(type, features.size());
  for (const auto& [type, count] : concerned_) {
    if (count != 0) run_.concerned.emplace_back(&document_.LateTypeFor(type), count);
  }
  run_.harmless.assign(harmless_.begin(), harmless_.end());
  expectedVisits_ = visits_;
  Tell(watch_.onPlace, nullptr);
  TellProgress();
  return std::move(run_);
}

void UpgradeRunner::BeforeRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row) {
  Tell(watch_.onRoutine, *FeatureOf(feature), row);
}

void UpgradeRunner::AfterRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row,
                                 HRESULT result) {
  Tell(watch_.onRoutineDone, *FeatureOf(feature), row, result);
  if (work_ != nullptr && Failed(result))
    told_.push_back({*work_, result, &row, AnswerableFor(*work_->upgrade, {}, nullptr, &row)});
}

void UpgradeRunner::Visit(const KnownUpgrade& upgrade, const VLMListValVLMUnicodeString& identifiers,
                          Feature& feature) {
  const UpgradeWork work{UpgradeWork::Kind::kVisit, &upgrade, &feature, feature.type};
  const auto shared = upgrade.shared.find(feature.type->Name());
  if (shared == upgrade.shared.end()) {
    HandOver(
        work, [&] { return HandleOn<HVXIUpgrade>(&feature); }, identifiers);
    return;
  }
  for (const HVXUpgradeClass* const upgradeClass : shared->second) {
    // What an extension removes, or makes something else of, is current for those after it.
    if (feature.removed || feature.type != work.type) break;
    handedTo_ = upgradeClass;
    HandOver(
        work, [&] { return ExtensionOf(*upgradeClass, feature); }, identifiers);
  }
  handedTo_ = nullptr;
}

template <class Extension>
void UpgradeRunner::HandOver(const UpgradeWork& work, const Extension& extension,
                             const VLMListValVLMUnicodeString& identifiers) {
  told_.clear();
  HRESULT code = E_NOINTERFACE;
  Do(work, [&] {
    const HVXIUpgrade_var spUpgrade = extension();
    if (!(spUpgrade == NULL_var)) code = spUpgrade->Upgrade(identifiers);
  });
  for (const UpgradeFailure& failure : told_) {
    if (failure.IsIgnored() && failure.row->harmless != nullptr) {
      ++harmless_[failure.row];
    } else {
      run_.failures.push_back(failure);
    }
  }
  // A library that tells nothing of its routines, or a code that no routine gave.
  const auto isTold = [code](const UpgradeFailure& failure) { return failure.code == code; };
  if (Failed(code) && std::ranges::none_of(told_, isTold)) AddFailure(work, code);
}

void UpgradeRunner::AddFailure(const UpgradeWork& work, HRESULT code) {
  run_.failures.push_back({work, code, nullptr, AnswerableAt(PlaceOf(work))});
}

UpgradePlace UpgradeRunner::PlaceOf(const UpgradeWork& work) const {
  UpgradePlace place{.kind = work.kind, .upgrade = work.upgrade, .upgradeClass = handedTo_};
  if (work.feature == nullptr) return place;
  place.feature = work.feature->id;
  place.lateType = work.type->Name();
  place.name = work.feature->externalName.empty() ? work.feature->name : work.feature->externalName;
  return place;
}

void UpgradeRunner::Convert(const KnownUpgrade& upgrade, const VLMListValVLMUnicodeString& identifiers) {
  const UpgradeWork work{UpgradeWork::Kind::kConversion, &upgrade, nullptr, nullptr};
  VLMListValVLMISpecObject_var features;
  features.Reserve(document_.FeatureCount());
  for (Feature* feature = document_.First(); feature != nullptr; feature = feature->next)
    features.Append(HandleOn<VLMISpecObject>(feature));
  HRESULT code = S_OK;
  Do(work, [&] { code = upgrade.documentUpgrade->upgrade(identifiers, features); });
  if (Failed(code)) AddFailure(work, code);
}

// In the order of the handing over. What is no propagating feature (a tie beside a contact, say) has nothing
// to bring to other steps.
void UpgradeRunner::PropagateHandedOver(const KnownUpgrade& upgrade) {
  for (Feature* const feature : Session::Current().TakeForPropagation()) {
    if (feature->removed || !Offers(*feature, HVXIPropagatingFeature::kId)) continue;
    const UpgradeWork work{UpgradeWork::Kind::kPropagation, &upgrade, feature, feature->type};
    HRESULT code = S_OK;
    Do(work, [&] {
      HVXIFactoryExtForPropagation_var spFactory;
      code = VLMInstantiateComponent("HVXEFactoryExtForPropagation", spFactory);
      const VLMBaseUnknown_var spFeature = HandleOn<VLMBaseUnknown>(feature);
      if (Succeeded(code)) code = spFactory->SetDefaultPropagationData(spFeature, 0, NULL_var);
      if (Succeeded(code)) code = spFactory->Propagate(spFeature, 0);
    });
    if (Failed(code)) AddFailure(work, code);
  }
}

template <class Action>
void UpgradeRunner::Do(const UpgradeWork& work, const Action& action) {
  ChangeLog& changes = document_.Changes();
  const std::size_t noted = changes.Notes().size();
  changes.SetWork(run_.works.size());
  work_ = &work;
  if (watch_.onPlace) {
    const UpgradePlace place = PlaceOf(work);
    Tell(watch_.onPlace, &place);
  }
  idle_.Restart();
  try {
    action();
  } catch (...) {
    GiveUp(work);
  }
  // A routine that catches everything must not keep the user waiting.
  if (thrownByWatch_ != nullptr) std::rethrow_exception(thrownByWatch_);
  work_ = nullptr;
  document_.RestoreListsSetAside();
  // What is kept beside the document is written by whoever changed it, so that the changes are told as
  // theirs.
  if (document_.Companion() != nullptr) document_.Companion()->WriteBack();
  if (changes.Notes().size() != noted) run_.works.push_back(work);
}

// To be called while what ended the work is being caught. Throws it, or tells it with its place.
void UpgradeRunner::GiveUp(const UpgradeWork& work) const {
  if (thrownByWatch_ != nullptr) std::rethrow_exception(thrownByWatch_);
  const UpgradePlace place = PlaceOf(work);
  const auto aborted = [&place](const std::string& why, const std::string& advice) {
    return UpgradeAborted(fmt::format("{}: {}", WordsOf(place), why), advice);
  };
  try {
    throw;
  } catch (const VLMFatalAssertion& assertion) {
    throw aborted(fmt::format("{} in {}", assertion.what(), assertion.SourcePath()), AdviceAt(place));
  } catch (const VLMNullVarError& error) {
    throw aborted(error.what(), AdviceAt(place));
  } catch (const IdleRun& error) {
    throw aborted(error.what(),
                  IsBuiltIn(AnswerableAt(place).library->name) ? "A check shows the cause" : AdviceAt(place));
  } catch (const TooManyFeatures&) {
    throw aborted(WhatWasMade(document_, work), std::string(watch_.limitAdvice));
  } catch (const TooManyMeshObjects& error) {
    throw aborted(error.what(), "Leave out meshes that can be made anew");
  } catch (const std::bad_alloc&) {
    throw;  // no fault of the upgrade
  } catch (const CallLimitReached&) {
    throw;  // whoever planned it waits for it
  } catch (const DocumentError&) {
    throw;  // of a trace that cannot be written
  } catch (const std::exception& error) {
    throw aborted(fmt::format("an exception got out of it: {} ({})", NameOfThrown(), error.what()),
                  AdviceAt(place));
  } catch (...) {
    throw aborted("an exception got out of it: " + NameOfThrown(), AdviceAt(place));
  }
}

// Leaves the document as it would be read from a file: links to what was removed are gone, and no catalog is
// loaded. What follows must not see more than a later run would.
void UpgradeRunner::Settle(const KnownUpgrade& upgrade) {
  Do({UpgradeWork::Kind::kDeadLinks, &upgrade, nullptr, nullptr}, [this] { document_.DropAllDeadLinks(); });
  document_.UnloadCatalogs();
}

// What the one who watches throws passes through routines, and must not be taken for theirs.
template <class Function, class... Arguments>
void UpgradeRunner::Tell(const Function& function, const Arguments&... arguments) {
  if (!function) return;
  try {
    function(arguments...);
  } catch (...) {
    thrownByWatch_ = std::current_exception();
    throw;
  }
}

void UpgradeRunner::TellProgress() {
  Tell(watch_.onProgress, std::min(visits_, expectedVisits_), expectedVisits_);
}

}  // namespace standalone
