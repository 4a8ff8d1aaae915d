#include "base/VLMLibrary.h"

#include "base/VLMRegistry.h"
#include "checkpoint/Checkpoint.h"

VLMLibrary::VLMLibrary(std::string_view name) : name_(name) {}

VLMLibrary::~VLMLibrary() {
  VLMRegistry::Instance().Withdraw(*this);
}

HRESULT VLMLibrary::DeclareTie(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create) {
  return VLMRegistry::Instance().DeclareTie(*this, lateType, id, create);
}

HRESULT VLMLibrary::DeclareComponent(std::string_view name, VLMCreateComponent create) {
  return VLMRegistry::Instance().DeclareComponent(*this, name, create);
}

HRESULT VLMInstantiateComponent(std::string_view name, const VLMInterfaceId& id, void** out) {
  *out = nullptr;
  if (const HRESULT entered = standalone::Checkpoint::Pass("VLMInstantiateComponent", nullptr, name);
      Failed(entered)) {
    return entered;
  }
  return VLMRegistry::Instance().Instantiate(name, id, out);
}
