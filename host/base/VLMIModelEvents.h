#pragma once

#include "base/VLMBaseUnknown.h"

/// A change of an object, as told to viewers.
class VLMModify {
 public:
  /// `object` was changed in its view `changed`; `flag` 1 tells viewers to draw it again.
  VLMModify(VLMBaseUnknown_var object, const VLMInterfaceId& changed, int flag)
      : object_(std::move(object)), changed_(changed), flag_(flag) {}

  [[nodiscard]] const VLMBaseUnknown_var& Object() const noexcept { return object_; }
  [[nodiscard]] const VLMInterfaceId& Changed() const noexcept { return changed_; }
  [[nodiscard]] int Flag() const noexcept { return flag_; }

 private:
  VLMBaseUnknown_var object_;
  VLMInterfaceId changed_;
  int flag_;
};

/// Where an object's changes are announced.
class VLMIModelEvents : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIModelEvents"};

  /// Tells every viewer of the object. Fails only as the host's viewers do.
  virtual HRESULT Dispatch(const VLMModify& notice) = 0;
};
using VLMIModelEvents_var = VLMHandle<VLMIModelEvents>;
