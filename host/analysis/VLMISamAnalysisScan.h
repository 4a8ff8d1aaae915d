#pragma once

#include "analysis/VLMISamAnalysisSet.h"

/// How deep a scan looks.
enum class VLMScanMode : int {
  kSons = 1,        ///< The direct sons.
  kSonsOfSets = 2,  ///< The direct sons, each analysis set among them followed by its own sons.
  kAll = 3,         ///< All that stands beneath the object, at any depth.
};

/// Looks through what stands beneath an analysis case, step or model. The object itself is never listed.
/// Whatever the mode, features come depth first in document order: each before what stands beneath it.
class VLMISamAnalysisScan : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisScan"};

  /// Gives every feature that the mode reaches. Empty, with S_OK, when there are none.
  virtual HRESULT ListChildren(VLMListValVLMBaseUnknown_var& children, VLMScanMode mode) = 0;

  /// The same for features whose late type is `lateType` or derives from it.
  virtual HRESULT ListChildrenOfLateType(const VLMUnicodeString& lateType,
                                         VLMListValVLMBaseUnknown_var& children, VLMScanMode mode) = 0;

  /// The same for analysis sets whose external name is `name`, letter for letter.
  virtual HRESULT ListSetsOfName(const VLMUnicodeString& name, VLMListValVLMBaseUnknown_var& sets,
                                 VLMScanMode mode) = 0;

  /// Makes `set` the last son of the object, wherever it stood before. E_FAIL for a null set or one of
  /// another document.
  virtual HRESULT AddSet(const VLMISamAnalysisSet_var& set) = 0;

  /// Moves `set` next to `reference`, another set of the same father. `option` is 0; `after` 1 places it
  /// directly behind the reference, 0 directly before. E_FAIL, and nothing moves, when the two do not stand
  /// beneath the same father.
  virtual HRESULT OrderSet(const VLMISamAnalysisSet_var& set, const VLMISamAnalysisSet_var& reference,
                           int option, int after) = 0;
};
using VLMISamAnalysisScan_var = VLMHandle<VLMISamAnalysisScan>;
