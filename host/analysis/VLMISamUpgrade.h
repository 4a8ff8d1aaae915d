#pragma once

#include "base/VLMTie.h"

/// The host's own upgrade of an analysis feature: brings its basic components to the current layout.
class VLMISamUpgrade : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamUpgrade"};

  /// 1 when the feature's basic components differ from the current layout: one lacks, or is of another type.
  /// 0 when not.
  virtual unsigned char NeedToUpgrade() = 0;

  /// Creates the basic components that the current layout has and the feature lacks; those that exist
  /// stay as they are, of whatever type. E_FAIL for a feature whose late type has no layout.
  virtual HRESULT Upgrade() = 0;
};
using VLMISamUpgrade_var = VLMHandle<VLMISamUpgrade>;

/// Forwards both operations of `VLMISamUpgrade` to an extension class.
template <class Extension>
class TIEVLMISamUpgrade final : public VLMTie<VLMISamUpgrade, Extension> {
 public:
  using VLMTie<VLMISamUpgrade, Extension>::VLMTie;

  unsigned char NeedToUpgrade() override { return this->Implementation().NeedToUpgrade(); }
  HRESULT Upgrade() override { return this->Implementation().Upgrade(); }
};
