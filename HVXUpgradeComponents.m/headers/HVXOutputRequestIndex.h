#pragma once

#include <unordered_map>
#include <vector>

#include "modeler/VLMISpecObject.h"

/// The output requests of steps by what they rest on. Each set of a step is listed once, when it is first
/// asked about, and again where that failed; what is put under a request later is not seen, which is sound as
/// long as nobody asks about objects that were put there.
class HVXOutputRequestIndex {
 public:
  HVXOutputRequestIndex() = default;
  HVXOutputRequestIndex(const HVXOutputRequestIndex&) = delete;  // it points into itself
  HVXOutputRequestIndex& operator=(const HVXOutputRequestIndex&) = delete;

  /// The requests in the step's set of late type `setType` that rest on `support`, each once, in the set's
  /// order.
  std::vector<VLMISpecObject_var> RestingOn(const VLMBaseUnknown_var& support,
                                            const VLMUnicodeString& setType,
                                            const VLMBaseUnknown_var& spStep);

 private:
  struct Entry {
    VLMBaseUnknown_var spSupport;  // held, so that no other object can come to bear its identity
    std::vector<VLMISpecObject_var> requests;
  };
  using BySupport = std::unordered_map<const void*, Entry>;
  struct Set {
    VLMUnicodeString type;
    BySupport requests;
  };
  struct Step {
    VLMBaseUnknown_var spStep;  // held for the same reason
    std::vector<Set> sets;      // those that were listed
  };

  Step& StepOf(const VLMBaseUnknown_var& spStep);
  /// `isWhole` becomes false when a call failed, so that something may be missing.
  static BySupport List(const VLMUnicodeString& setType, const VLMBaseUnknown_var& spStep, bool& isWhole);

  std::unordered_map<const void*, Step> steps_;
  Step* latest_ = nullptr;  // the sets of a step are asked about one after the other
};
