#pragma once

#include "base/VLMBaseUnknown.h"

struct HVXUpgradeBinding;

/// Told by a library's dispatch of every routine that it runs, whatever becomes of the result. An upgrade
/// returns one code for its whole list, and many results are ignored on purpose: this is how a version
/// manager learns of all of them, and which routine made a change. An observer only watches; it throws
/// nothing.
class HVXUpgradeObserver {
 public:
  HVXUpgradeObserver() = default;
  HVXUpgradeObserver(const HVXUpgradeObserver&) = delete;
  HVXUpgradeObserver& operator=(const HVXUpgradeObserver&) = delete;

  /// The routine of `row` is about to run on `feature`.
  virtual void BeforeRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row) = 0;
  /// It gave `result`. Not told of a routine that ended with an exception.
  virtual void AfterRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row,
                            HRESULT result) = 0;

 protected:
  ~HVXUpgradeObserver() = default;
};
