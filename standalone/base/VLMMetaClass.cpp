#include "base/VLMMetaClass.h"

#include <algorithm>

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
  if (std::find(extended_.begin(), extended_.end(), &lateType) != extended_.end()) return;
  extended_.push_back(&lateType);
  lateType.extensions_.push_back(this);
}

bool VLMMetaClass::IsAKindOf(std::string_view name) const noexcept {
  const VLMMetaClass* metaClass = this;
  while (metaClass != nullptr && metaClass->name_ != name) metaClass = metaClass->base_;
  return metaClass != nullptr;
}

VLMCreateTIE VLMMetaClass::FindTie(const VLMInterfaceId& id) const {
  Answer& answer = answers_[id.Value() % answers_.size()];
  const std::uint64_t state = VLMRegistry::StateOfTies();
  if (answer.interfaceValue != id.Value() || answer.stateOfTies != state)
    answer = {id.Value(), LookUpTie(id), state};
  return answer.create;
}

VLMCreateTIE VLMMetaClass::LookUpTie(const VLMInterfaceId& id) const {
  for (const VLMMetaClass* metaClass = this; metaClass != nullptr; metaClass = metaClass->base_) {
    for (const TieEntry& tie : metaClass->ties_) {
      if (tie.interfaceValue == id.Value()) return tie.create;
    }
  }
  return nullptr;
}
