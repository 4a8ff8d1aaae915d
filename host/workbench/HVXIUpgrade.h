#pragma once

#include "base/VLMTie.h"

/// Brings one feature up to the current data model. Offered by the upgrade extension of the feature's late
/// type.
class HVXIUpgrade : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIUpgrade"};

  /// Runs the migrations that `identifiers` (the pending ones, positions 1 to `Size()`) name and that the
  /// extension knows; others are skipped. 0 or the code of the failure that ended it; some give
  /// the code of their last routine, and the two for solutions E_FAIL when no identifier is theirs; changes
  /// made before a failure stay.
  virtual HRESULT Upgrade(const VLMListValVLMUnicodeString& identifiers) = 0;
};
using HVXIUpgrade_var = VLMHandle<HVXIUpgrade>;

/// Forwards the one operation of `HVXIUpgrade` to an extension class.
template <class Extension>
class TIEHVXIUpgrade final : public VLMTie<HVXIUpgrade, Extension> {
 public:
  using VLMTie<HVXIUpgrade, Extension>::VLMTie;

  HRESULT Upgrade(const VLMListValVLMUnicodeString& identifiers) override {
    return this->Implementation().Upgrade(identifiers);
  }
};
