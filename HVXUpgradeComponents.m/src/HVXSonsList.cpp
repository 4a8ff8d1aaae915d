#include "HVXSonsList.h"

namespace {

const VLMString kSonsList("SonsList");

}  // namespace

HVXSonsList::HVXSonsList(VLMISpecAttrAccess_var spAttrAccess, VLMISpecObject_var spFeature)
    : spAttrAccess_(std::move(spAttrAccess)),
      spFeature_(std::move(spFeature)),
      key_(spAttrAccess_->GetAttrKey(kSonsList)) {}

void HVXSonsList::Remove(const VLMISpecObject_var& spSon) const {
  static_cast<void>(spFeature_->RemoveSon(spSon, 0));
}

bool HVXIsBasicComponentCalled(const VLMISpecObject_var& spSon, const VLMUnicodeString& name) {
  const VLMISamBasicComponent_var spComponent(spSon);
  return !(spComponent == NULL_var) && spComponent->GetName() == name;
}
