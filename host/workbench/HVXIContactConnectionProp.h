#pragma once

#include "base/VLMBaseUnknown.h"

/// A contact connection property: the older way to declare contact, on a connection between two supports. Its
/// two supports are the first and the second connected object of its first support
/// (`VLMISamAnalysisSupport`). A getter that fails leaves the out number as it is.
class HVXIContactConnectionProp : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIContactConnectionProp"};

  /// Gives the kind of property: 1 standard, 2 explicit dynamics.
  virtual HRESULT GetKind(std::int32_t& kind) = 0;

  /// Gives whether the property prescribes a clearance: 1 yes, 0 no.
  virtual HRESULT GetClearanceFlag(unsigned char& flag) = 0;

  /// Gives the clearance, positive for a gap, as it is stored (single precision).
  virtual HRESULT GetClearance(float& clearance) = 0;

  /// Gives the property's interference-fit data, to be cast to `HVXIInterferenceFit`; null, with S_OK, when
  /// it has none.
  virtual HRESULT GetInterferenceFit(VLMBaseUnknown_var& fit) = 0;
};
using HVXIContactConnectionProp_var = VLMHandle<HVXIContactConnectionProp>;
