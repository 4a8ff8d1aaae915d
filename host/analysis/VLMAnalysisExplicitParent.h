#pragma once

#include "analysis/VLMAnalysisExplicitData.h"
#include "base/VLMResult.h"

/// What explicit nodes and elements have in common: a user number.
class VLMAnalysisExplicitParent : public VLMAnalysisExplicitData {
 public:
  /// Sets the number that the user sees; 0 stands for not numbered. E_FAIL for a number below 0, or an
  /// object that denotes nothing.
  HRESULT SetUserNumber(std::int32_t number);

  /// Gives that number. E_FAIL, and the number stays as it is, for an object that denotes nothing.
  HRESULT GetUserNumber(std::int32_t& number) const;

 protected:
  constexpr VLMAnalysisExplicitParent() noexcept = default;
};
