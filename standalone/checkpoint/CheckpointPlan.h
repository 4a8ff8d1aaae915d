#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/VLMResult.h"
#include "model/FeatureId.h"

namespace standalone {

class Feature;

/// One host operation, as the checkpoint saw it.
struct HostCall {
  std::string operation;  ///< Such as "HVXIJob::SetMemoryUnit".
  FeatureId feature = 0;  ///< The feature that it was called on; 0 for a static operation without one.
  std::string detail;  ///< The attribute key, name or text that it was given, where that tells calls apart.
  int option = 0;      ///< The option that it was given, where this host makes nothing of it.

  friend bool operator==(const HostCall&, const HostCall&) = default;
};

/// What to do to host operations. At rest it does nothing.
struct CheckpointPlan {
  bool record = false;
  std::function<void(const HostCall&, const Feature*)> onCall;  ///< Told of every call, when set.

  std::int64_t failNth = 0;     ///< The first call is 1; 0 fails none.
  bool failFromNthOn = false;   ///< Not only the Nth call but every later one too.
  std::string failNamed;        ///< Fails every call of this operation.
  std::string failNamedDetail;  ///< Only those with this detail, when set.
  HRESULT failure = E_FAIL;     ///< What a failed call returns.

  std::int64_t callLimit = 0;  ///< The call after so many throws `CallLimitReached`; 0 for no limit.

  std::string withholdInterface;  ///< Casts to this interface give nothing ...
  FeatureId withholdFrom = 0;     ///< ... on this feature; 0 for all.
};

}  // namespace standalone
