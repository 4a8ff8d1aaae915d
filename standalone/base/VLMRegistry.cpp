#include "base/VLMRegistry.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>

#include "base/OfThread.h"

namespace {

// What a thread looked up lately. An answer holds for one state of the registered ties.
struct TieAnswer {
  std::uint64_t metaClass = 0;  // its number
  std::uint64_t interfaceValue = 0;
  std::uint64_t stateOfTies = 0;
  VLMCreateTIE create = nullptr;
};
using TieAnswers = std::array<TieAnswer, 1024>;

std::size_t PlaceOf(std::uint64_t metaClass, std::uint64_t interfaceValue) {
  constexpr std::uint64_t kSpread = 0x9e3779b97f4a7c15U;
  return (interfaceValue ^ (metaClass * kSpread)) % std::tuple_size_v<TieAnswers>;
}

}  // namespace

VLMRegistry& VLMRegistry::Instance() {
  // Never destroyed: a library that is still loaded when the process ends withdraws after all statics are
  // gone.
  static auto* const registry = new VLMRegistry;
  return *registry;
}

VLMMetaClass* VLMRegistry::Find(std::string_view name) const {
  const std::shared_lock lock(mutex_);
  return Known(name);
}

VLMMetaClass* VLMRegistry::Known(std::string_view name) const {
  const auto found = metaClasses_.find(name);
  return found == metaClasses_.end() ? nullptr : found->second.get();
}

VLMMetaClass& VLMRegistry::Make(std::string_view name, VLMExtensionKind kind, const VLMMetaClass* base,
                                std::string_view framework, const VLMLibrary* owner) {
  std::unique_ptr<VLMMetaClass> made(new VLMMetaClass(name, kind, base, framework, owner, ++lastNumber_));
  return *metaClasses_.emplace(name, std::move(made)).first->second;
}

VLMMetaClass& VLMRegistry::LateType(std::string_view name, const VLMMetaClass* base) {
  const std::unique_lock lock(mutex_);
  return KnownOrMade(name, base, false);
}

VLMMetaClass& VLMRegistry::LateTypeOfDocument(std::string_view name, const VLMMetaClass* base) {
  const std::unique_lock lock(mutex_);
  return KnownOrMade(name, base, true);
}

VLMMetaClass& VLMRegistry::KnownOrMade(std::string_view name, const VLMMetaClass* base, bool isOfDocuments) {
  VLMMetaClass* const known = Known(name);
  if (known == nullptr) {
    VLMMetaClass& made = Make(name, VLMExtensionKind::kLateType, base, "", nullptr);
    made.isOfDocuments_ = isOfDocuments;
    return made;
  }
  if (!isOfDocuments) known->isOfDocuments_ = false;
  // A library may have extended a late type before the host came to know what it derives from.
  // A late type may bear any name, that of a base included: nothing derives from itself.
  if (known->base_ == nullptr && base != nullptr && !base->IsAKindOf(name)) {
    known->base_ = base;
    ++stateOfTies_;
  }
  return *known;
}

void VLMRegistry::ForgetLateType(std::string_view name) {
  const std::unique_lock lock(mutex_);
  const auto found = metaClasses_.find(name);
  if (found != metaClasses_.end() && found->second->isOfDocuments_) metaClasses_.erase(found);
}

VLMMetaClass& VLMRegistry::Class(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                                 const VLMMetaClass* base, std::string_view extendedLateType,
                                 std::string_view framework) {
  const std::unique_lock lock(mutex_);
  if (VLMMetaClass* const known = Known(name)) return *known;
  VLMMetaClass& metaClass = Make(name, kind, base, framework, &owner);
  if (!extendedLateType.empty()) Extend(metaClass, KnownOrMade(extendedLateType, nullptr, false));
  return metaClass;
}

void VLMRegistry::SetExtensionOf(VLMMetaClass& extension, VLMMetaClass& lateType) {
  const std::unique_lock lock(mutex_);
  lateType.isOfDocuments_ = false;
  Extend(extension, lateType);
}

void VLMRegistry::Extend(VLMMetaClass& extension, VLMMetaClass& lateType) {
  if (std::ranges::find(extension.extended_, &lateType) != extension.extended_.end()) return;
  extension.extended_.push_back(&lateType);
  lateType.extensions_.push_back(&extension);
}

std::vector<const VLMMetaClass*> VLMRegistry::ExtendedBy(const VLMMetaClass& extension) const {
  const std::shared_lock lock(mutex_);
  return extension.extended_;
}

std::vector<const VLMMetaClass*> VLMRegistry::ExtensionsOf(const VLMMetaClass& lateType) const {
  const std::shared_lock lock(mutex_);
  return lateType.extensions_;
}

HRESULT VLMRegistry::DeclareTie(const VLMLibrary& owner, VLMMetaClass& lateType, const VLMInterfaceId& id,
                                VLMCreateTIE create) {
  const std::unique_lock lock(mutex_);
  const auto isSame = [&id](const auto& tie) { return tie.interfaceValue == id.Value(); };
  const auto first = std::ranges::find_if(lateType.ties_, isSame);
  const bool taken = first != lateType.ties_.end();
  // Another library's is kept behind the first, which is found: it counts once that one is withdrawn.
  if (taken && first->owner == &owner) return E_FAIL;
  lateType.isOfDocuments_ = false;
  lateType.ties_.push_back({id.Value(), create, &owner});
  ++stateOfTies_;
  return taken ? E_FAIL : S_OK;
}

void VLMRegistry::Prefer(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create) {
  const std::unique_lock lock(mutex_);
  const auto isMeant = [&](const auto& tie) {
    return tie.interfaceValue == id.Value() && tie.create == create;
  };
  const auto found = std::ranges::find_if(lateType.ties_, isMeant);
  if (found == lateType.ties_.end()) return;
  std::rotate(lateType.ties_.begin(), found, std::next(found));
  ++stateOfTies_;
}

bool VLMRegistry::HasTies(const VLMMetaClass& lateType) const {
  const std::shared_lock lock(mutex_);
  return !lateType.ties_.empty();
}

VLMCreateTIE VLMRegistry::LookUpTie(const VLMMetaClass& lateType, std::uint64_t interfaceValue) const {
  const std::shared_lock lock(mutex_);
  for (const VLMMetaClass* metaClass = &lateType; metaClass != nullptr; metaClass = metaClass->Base()) {
    for (const VLMMetaClass::TieEntry& tie : metaClass->ties_) {
      if (tie.interfaceValue == interfaceValue) return tie.create;
    }
  }
  return nullptr;
}

VLMCreateTIE VLMRegistry::FindTie(const VLMMetaClass& lateType, const VLMInterfaceId& id) {
  TieAnswers* const answers = standalone::OfThread<TieAnswers>::Get();
  if (answers == nullptr) return Instance().LookUpTie(lateType, id.Value());
  TieAnswer& answer = (*answers)[PlaceOf(lateType.number_, id.Value())];
  // Read before the look-up: what is found in a later state is then looked up again, never the reverse.
  const std::uint64_t state = stateOfTies_.load(std::memory_order_acquire);
  if (answer.metaClass != lateType.number_ || answer.interfaceValue != id.Value() ||
      answer.stateOfTies != state)
    answer = {lateType.number_, id.Value(), state, Instance().LookUpTie(lateType, id.Value())};
  return answer.create;
}

HRESULT VLMRegistry::DeclareComponent(const VLMLibrary& owner, std::string_view name,
                                      VLMCreateComponent create) {
  const std::unique_lock lock(mutex_);
  return components_.try_emplace(std::string(name), Component{create, &owner}).second ? S_OK : E_FAIL;
}

HRESULT VLMRegistry::Instantiate(std::string_view name, const VLMInterfaceId& id, void** out) const {
  *out = nullptr;
  const auto find = [&]() -> VLMCreateComponent {
    const std::shared_lock lock(mutex_);
    const auto found = components_.find(name);
    return found == components_.end() ? nullptr : found->second.create;
  };
  const VLMCreateComponent create = find();
  return create == nullptr ? E_FAIL : create(id, out);
}

void VLMRegistry::Withdraw(const VLMLibrary& owner) {
  const std::unique_lock lock(mutex_);
  ++stateOfTies_;
  const auto ownedBy = [&owner](const VLMMetaClass* metaClass) { return metaClass->owner_ == &owner; };
  for (auto& [name, metaClass] : metaClasses_) {
    std::erase_if(metaClass->ties_, [&owner](const auto& tie) { return tie.owner == &owner; });
    std::erase_if(metaClass->extensions_, ownedBy);
  }
  std::erase_if(metaClasses_, [&](const auto& entry) { return ownedBy(entry.second.get()); });
  std::erase_if(components_, [&owner](const auto& entry) { return entry.second.owner == &owner; });
}

VLMRegistry::Counts VLMRegistry::Count() const {
  const std::shared_lock lock(mutex_);
  Counts counts;
  for (const auto& [name, metaClass] : metaClasses_) {
    counts.classes += metaClass->owner_ != nullptr ? 1 : 0;
    counts.ties += metaClass->ties_.size();
  }
  counts.components = components_.size();
  return counts;
}
