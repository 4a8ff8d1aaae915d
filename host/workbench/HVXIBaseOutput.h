#pragma once

#include "base/VLMBaseUnknown.h"

/// An output request: which result variables a step writes, and when. A getter that fails leaves the out
/// argument as it is.
class HVXIBaseOutput : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIBaseOutput"};

  /// Gives what output is counted by: 0 increments, 1 intervals of time. The first of the integer settings.
  virtual HRESULT GetFrequencyType(std::int32_t& type) = 0;
  /// Gives after how many of these output is written. The second of the integer settings.
  virtual HRESULT GetFrequency(std::int32_t& frequency) = 0;
  /// Sets what output is counted by; the codes are those of `GetFrequencyType`.
  virtual HRESULT SetFrequencyType(std::int32_t type) = 0;
  /// Sets after how many of these output is written.
  virtual HRESULT SetFrequency(std::int32_t frequency) = 0;

  /// Gives how variables are selected: 1 the preselected list, other codes the user's own selection.
  virtual HRESULT GetVariableSelection(std::int32_t& selection) = 0;
  /// Sets how variables are selected; the codes are those of `GetVariableSelection`.
  virtual HRESULT SetVariableSelection(std::int32_t selection) = 0;

  /// Gives the preselected variables: their names, separated by commas, without blanks, such as "S,NT,U".
  virtual HRESULT GetPreselectedVariableList(VLMUnicodeString& variables) = 0;
  /// Sets the preselected variables, written the same way.
  virtual HRESULT SetPreselectedVariableList(const VLMUnicodeString& variables) = 0;
};
using HVXIBaseOutput_var = VLMHandle<HVXIBaseOutput>;
