#include "base/VLMMetaClass.h"

#include "base/VLMRegistry.h"

VLMMetaClass& VLMMetaClass::Retrieve(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                                     const VLMMetaClass* base, std::string_view extendedLateType,
                                     std::string_view framework) {
  return VLMRegistry::Instance().Class(owner, name, kind, base, extendedLateType, framework);
}

VLMMetaClass& VLMMetaClass::LateType(std::string_view name, const VLMMetaClass* base) {
  return VLMRegistry::Instance().LateType(name, base);
}

VLMMetaClass* VLMMetaClass::Find(std::string_view name) {
  return VLMRegistry::Instance().Find(name);
}

const VLMMetaClass& VLMMetaClass::BaseUnknown() {
  static const VLMMetaClass& root = LateType(VLMBaseUnknown::kId.Name(), nullptr);
  return root;
}

void VLMMetaClass::SetExtensionOf(VLMMetaClass& lateType) {
  VLMRegistry::Instance().SetExtensionOf(*this, lateType);
}

std::vector<const VLMMetaClass*> VLMMetaClass::ExtendedLateTypes() const {
  return VLMRegistry::Instance().ExtendedBy(*this);
}

std::vector<const VLMMetaClass*> VLMMetaClass::Extensions() const {
  return VLMRegistry::Instance().ExtensionsOf(*this);
}

bool VLMMetaClass::IsAKindOf(std::string_view name) const noexcept {
  const VLMMetaClass* metaClass = this;
  while (metaClass != nullptr && metaClass->name_ != name) metaClass = metaClass->Base();
  return metaClass != nullptr;
}

VLMCreateTIE VLMMetaClass::FindTie(const VLMInterfaceId& id) const {
  return VLMRegistry::FindTie(*this, id);
}
