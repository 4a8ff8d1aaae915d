#pragma once

#include "base/VLMBaseUnknown.h"

/// An analysis case: what is solved together. Holds steps, loads, restraints, connections and a solution.
///
/// Tells cases apart from other features and is the type under which cases are passed; its steps come from
/// `HVXStepUtils`, what stands beneath it from `VLMISamAnalysisScan`.
class VLMISamAnalysisCase : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisCase"};
};
using VLMISamAnalysisCase_var = VLMHandle<VLMISamAnalysisCase>;
