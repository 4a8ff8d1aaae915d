#include "base/VLMRegistry.h"

#include <algorithm>
#include <iterator>

VLMRegistry& VLMRegistry::Instance() {
  // Never destroyed: a library that is still loaded when the process ends withdraws after all statics are
  // gone.
  static auto* const registry = new VLMRegistry;
  return *registry;
}

VLMMetaClass* VLMRegistry::Find(std::string_view name) const {
  const auto found = metaClasses_.find(name);
  return found == metaClasses_.end() ? nullptr : found->second.get();
}

VLMMetaClass& VLMRegistry::LateType(std::string_view name, const VLMMetaClass* base) {
  if (VLMMetaClass* const known = Find(name)) {
    // A library may have extended a late type before the host came to know what it derives from.
    // A late type may bear any name, that of a base included: nothing derives from itself.
    if (known->base_ == nullptr && base != nullptr && !base->IsAKindOf(name)) {
      known->base_ = base;
      ++stateOfTies_;
    }
    return *known;
  }
  std::unique_ptr<VLMMetaClass> made(new VLMMetaClass(name, VLMExtensionKind::kLateType, base, "", nullptr));
  return *metaClasses_.emplace(name, std::move(made)).first->second;
}

VLMMetaClass& VLMRegistry::Class(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                                 const VLMMetaClass* base, std::string_view extendedLateType,
                                 std::string_view framework) {
  if (VLMMetaClass* const known = Find(name)) return *known;
  std::unique_ptr<VLMMetaClass> made(new VLMMetaClass(name, kind, base, framework, &owner));
  VLMMetaClass& metaClass = *metaClasses_.emplace(name, std::move(made)).first->second;
  if (!extendedLateType.empty()) metaClass.SetExtensionOf(LateType(extendedLateType, nullptr));
  return metaClass;
}

HRESULT VLMRegistry::DeclareTie(const VLMLibrary& owner, VLMMetaClass& lateType, const VLMInterfaceId& id,
                                VLMCreateTIE create) {
  const auto isSame = [&id](const auto& tie) { return tie.interfaceValue == id.Value(); };
  const auto first = std::ranges::find_if(lateType.ties_, isSame);
  const bool taken = first != lateType.ties_.end();
  // Another library's is kept behind the first, which is found: it counts once that one is withdrawn.
  if (taken && first->owner == &owner) return E_FAIL;
  lateType.ties_.push_back({id.Value(), create, &owner});
  ++stateOfTies_;
  return taken ? E_FAIL : S_OK;
}

void VLMRegistry::Prefer(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create) {
  const auto isMeant = [&](const auto& tie) {
    return tie.interfaceValue == id.Value() && tie.create == create;
  };
  const auto found = std::ranges::find_if(lateType.ties_, isMeant);
  if (found == lateType.ties_.end()) return;
  std::rotate(lateType.ties_.begin(), found, std::next(found));
  ++stateOfTies_;
}

HRESULT VLMRegistry::DeclareComponent(const VLMLibrary& owner, std::string_view name,
                                      VLMCreateComponent create) {
  return components_.try_emplace(std::string(name), Component{create, &owner}).second ? S_OK : E_FAIL;
}

HRESULT VLMRegistry::Instantiate(std::string_view name, const VLMInterfaceId& id, void** out) const {
  *out = nullptr;
  const auto found = components_.find(name);
  return found == components_.end() ? E_FAIL : found->second.create(id, out);
}

void VLMRegistry::Withdraw(const VLMLibrary& owner) {
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
  Counts counts;
  for (const auto& [name, metaClass] : metaClasses_) {
    counts.classes += metaClass->owner_ != nullptr ? 1 : 0;
    counts.ties += metaClass->ties_.size();
  }
  counts.components = components_.size();
  return counts;
}
