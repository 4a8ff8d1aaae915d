#pragma once

#include "base/VLMBaseUnknown.h"

/// A job: the settings of one solver run of an analysis case. A getter that fails leaves the out argument as
/// it is (a handle is null).
class HVXIJob : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIJob"};

  /// Gives what is run: "Full Analysis", "Data Check", "Continue Analysis", "From InputFile", "Syntax Check",
  /// "Restart", or an empty string when it was never chosen.
  virtual HRESULT GetRunType(VLMUnicodeString& runType) = 0;

  /// Gives the analysis case that the job runs; null, with S_OK, when it has none.
  virtual HRESULT GetAnalysisCase(VLMBaseUnknown_var& analysisCase) = 0;

  /// Gives after how many increments restart data is written; 0 never. The first of the restart settings.
  virtual HRESULT GetRestartFrequency(std::int32_t& frequency) = 0;

  /// Sets what is run; the texts are those of `GetRunType`.
  virtual HRESULT SetRunType(const VLMUnicodeString& runType) = 0;

  /// Sets the code of the unit that the memory limit is given in. What a code stands for is the solver's
  /// business; the limit's number stays as it is.
  virtual HRESULT SetMemoryUnit(std::int32_t code) = 0;

  /// Sets the code of how restart data is written: 3 at a number of intervals of the step, 4 at a number of
  /// increments.
  virtual HRESULT SetRestartMode(std::int32_t code) = 0;

  /// Sets the number that the restart mode counts by. The second of the restart settings.
  virtual HRESULT SetRestartInterval(std::int32_t interval) = 0;

  /// Sets whether restart data is written: 1 yes, 0 no.
  virtual HRESULT SetRestartFlag(std::int32_t flag) = 0;

  /// Sets whether the job runs an input file in place of its case: 1 yes, 0 no.
  virtual HRESULT SetInputFileFlag(std::int32_t flag) = 0;

  // What the setters above set.
  virtual HRESULT GetMemoryUnit(std::int32_t& code) = 0;
  virtual HRESULT GetRestartMode(std::int32_t& code) = 0;
  virtual HRESULT GetRestartInterval(std::int32_t& interval) = 0;
  virtual HRESULT GetRestartFlag(std::int32_t& flag) = 0;
  virtual HRESULT GetInputFileFlag(std::int32_t& flag) = 0;
};
using HVXIJob_var = VLMHandle<HVXIJob>;
