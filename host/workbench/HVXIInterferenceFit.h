#pragma once

#include "base/VLMBaseUnknown.h"

/// An interference fit: how an initial overlap or gap of two surfaces is resolved. A getter that fails leaves
/// the out number as it is.
class HVXIInterferenceFit : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIInterferenceFit"};

  /// Sets the type of fit: 0 none, 1 a fit that the solver resolves. The first of the integer settings.
  virtual HRESULT SetFitType(std::int32_t type) = 0;
  /// Sets where the fit's value comes from: 0 from the mesh, 1 the value that is given. The second of the
  /// integer settings.
  virtual HRESULT SetDefinition(std::int32_t definition) = 0;
  /// Sets the value, positive for a gap.
  virtual HRESULT SetValue(double value) = 0;

  // What the setters above set.
  virtual HRESULT GetFitType(std::int32_t& type) = 0;
  virtual HRESULT GetDefinition(std::int32_t& definition) = 0;
  virtual HRESULT GetValue(double& value) = 0;
};
using HVXIInterferenceFit_var = VLMHandle<HVXIInterferenceFit>;
