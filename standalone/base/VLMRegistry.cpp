#include "base/VLMRegistry.h"

#include <algorithm>

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
  const bool taken = std::any_of(lateType.ties_.begin(), lateType.ties_.end(),
                                 [&](const auto& tie) { return tie.interfaceValue == id.Value(); });
  if (taken) return E_FAIL;
  lateType.ties_.push_back({id.Value(), create, &owner});
  ++stateOfTies_;
  return S_OK;
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
