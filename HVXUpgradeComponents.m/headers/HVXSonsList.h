#pragma once

#include "analysis/VLMISamBasicComponent.h"
#include "modeler/VLMISpecAttrAccess.h"

/// The sons of a feature as an older release listed them, in attribute "SonsList". Positions run from 1.
/// Removing a son drops its entry, so those behind it move up.
class HVXSonsList {
 public:
  /// `spAttrAccess` and `spFeature` are of one feature, and not null.
  HVXSonsList(VLMISpecAttrAccess_var spAttrAccess, VLMISpecObject_var spFeature);

  /// The feature has no list. The other operations need one.
  [[nodiscard]] bool IsMissing() const { return key_.IsNull(); }

  [[nodiscard]] int Size() const { return spAttrAccess_->GetListSize(key_); }
  /// Null for an entry that holds nothing.
  [[nodiscard]] VLMISpecObject_var Son(int position) const {
    return spAttrAccess_->GetObject(key_, position);
  }

  /// Removes the son from the feature. Whether that succeeded shows in the size only, on purpose: what a trim
  /// gives depends on the sons that are left.
  void Remove(const VLMISpecObject_var& spSon) const;

 private:
  VLMISpecAttrAccess_var spAttrAccess_;
  VLMISpecObject_var spFeature_;
  VLMSpecAttrKey key_;
};

/// True for a basic component called `name`.
[[nodiscard]] bool HVXIsBasicComponentCalled(const VLMISpecObject_var& spSon, const VLMUnicodeString& name);
