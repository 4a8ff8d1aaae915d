#pragma once

#include <cstdint>

class VLMAnalysisExplicitModel;

/// A place in an explicit model: a value, cheap to copy, that holds until the model is renumbered or dies.
class VLMAnalysisExplicitData {
 public:
  constexpr VLMAnalysisExplicitData() noexcept = default;

  /// Equal when both denote the same object of the same model; all that denote nothing are equal.
  friend constexpr bool operator==(const VLMAnalysisExplicitData& left,
                                   const VLMAnalysisExplicitData& right) noexcept = default;

 protected:
  VLMAnalysisExplicitModel* model_ = nullptr;
  std::int64_t index_ = -1;  // the model's own number of the object
};

/// The explicit object that a mesh pointer without a counterpart links to.
inline constexpr VLMAnalysisExplicitData NULL_exp{};
