#pragma once

#include "base/VLMBaseUnknown.h"

/// The global element assignment of a case. As an analysis set (`VLMISamAnalysisSet`) it holds the local
/// ones.
class HVXIGlobalElemAssignment : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIGlobalElemAssignment"};

  /// Gives the entry for analyses of type `analysisType`, to be cast to `HVXIGlobalElemAsgnEntry`; null, with
  /// S_OK, when there is none.
  virtual HRESULT GetEntry(std::int32_t analysisType, VLMBaseUnknown_var& entry) = 0;

  /// Gives all entries, in order. Empty, with S_OK, when there are none.
  virtual HRESULT GetEntries(VLMListValVLMBaseUnknown_var& entries) = 0;
};
using HVXIGlobalElemAssignment_var = VLMHandle<HVXIGlobalElemAssignment>;
