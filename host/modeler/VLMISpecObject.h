#pragma once

#include "base/VLMBaseUnknown.h"

class VLMIContainer;
class VLMISpecObject;
using VLMIContainer_var = VLMHandle<VLMIContainer>;
using VLMISpecObject_var = VLMHandle<VLMISpecObject>;
using VLMListValVLMISpecObject_var = VLMListVal<VLMISpecObject_var>;

/// A feature: a stored object with a late type, named attributes (`VLMISpecAttrAccess`), a father and a
/// container.
class VLMISpecObject : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISpecObject"};

  /// The feature's run-time type name, such as "HVXJobLT". Empty when the call fails.
  virtual VLMUnicodeString GetLateType() = 0;

  /// The feature's internal name, such as "Magnitude.2". Empty when it has none or the call fails.
  virtual VLMUnicodeString GetName() = 0;

  /// Sets the up-to-date flag that the host's update reads. With 0 the feature is out of date: the host
  /// rebuilds (re-explicitates) it at its next update.
  virtual HRESULT SetUpToDate(int upToDate) = 0;

  /// Gives the feature beneath which this one stands; null, and E_FAIL, for a feature at the top.
  virtual HRESULT GetFather(VLMISpecObject_var& father) = 0;

  /// Gives the container that holds the feature; null, and E_FAIL, when it stands in none.
  virtual HRESULT GetContainer(VLMIContainer_var& container) = 0;

  /// Takes `son` out of this feature and deletes it with all that stands beneath it. One that stands beneath
  /// another feature, and is a son only by the list that an old release kept, is taken off that list and
  /// stays with the other. `option` is 0. E_FAIL when it is not a son of this feature.
  virtual HRESULT RemoveSon(const VLMISpecObject_var& son, int option) = 0;

  /// 1 when the feature is ready in `domain` (an empty domain asks for all of them), 0 when not or when the
  /// call fails.
  virtual int IsReadyInDomain(const VLMUnicodeString& domain) = 0;
};
