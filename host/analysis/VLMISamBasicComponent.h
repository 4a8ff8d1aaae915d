#pragma once

#include "base/VLMBaseUnknown.h"
#include "base/VLMString.h"

class VLMISamBasicComponent;
using VLMISamBasicComponent_var = VLMHandle<VLMISamBasicComponent>;

/// A basic component: a named, typed value of an analysis entity, which may hold further basic components (a
/// contact keeps its settings in one such holder). Reads that fail leave the out number as it is.
class VLMISamBasicComponent : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamBasicComponent"};

  /// The component's name. Empty when the call fails.
  virtual VLMUnicodeString GetName() = 0;

  /// Gives the component called `name` that this one holds; null, and E_FAIL, when there is none.
  virtual HRESULT FindComponent(const VLMString& name, VLMISamBasicComponent_var& component) = 0;

  /// Creates a component called `name` of type `type`, such as "SAMBoolean", in this one; `magnitude` gives
  /// its unit kind and is null for a value without one. E_FAIL when there is a component of that name
  /// already, or for an unknown type.
  virtual HRESULT CreateComponent(const VLMString& name, const VLMString& type,
                                  const VLMBaseUnknown_var& magnitude) = 0;

  /// Gives the real that stands under `key`, such as "Values", as it is stored. E_FAIL when there is none.
  virtual HRESULT GetReal(const VLMString& key, double& value) = 0;

  /// Gives the integer that stands under `key`, such as "IsActive" (0 inactive, other values active). A
  /// boolean reads as 0 or 1. E_FAIL when there is none.
  virtual HRESULT GetInteger(const VLMString& key, std::int32_t& value) = 0;

  /// Gives the component's value as a real in `unit`; an empty unit gives it in the magnitude's base unit.
  /// E_FAIL when it is not a number or the unit does not fit its magnitude.
  virtual HRESULT GetValueAsReal(double& value, const VLMString& unit) = 0;

  /// Sets the component's value to an integer. `index` tells which of several values and is 0 for a single
  /// one, `unit` is empty, and `row`, `column` and `layer`, the place in a value that is a field, are 0.
  /// E_FAIL when the component is not an integer.
  virtual HRESULT SetInteger(std::int32_t value, int index, const VLMString& unit, int row, int column,
                             int layer) = 0;

  /// Sets the component's value to a boolean, 0 or 1; the other arguments are those of `SetInteger`. E_FAIL
  /// when the component is not a boolean.
  virtual HRESULT SetBoolean(unsigned char value, int index, const VLMString& unit, int row, int column,
                             int layer) = 0;
};
