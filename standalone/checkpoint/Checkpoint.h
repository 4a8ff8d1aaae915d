#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/VLMBaseUnknown.h"
#include "checkpoint/CheckpointPlan.h"
#include "model/Feature.h"

namespace standalone {

/// What a call beyond the plan's limit throws: the run that made it would perhaps never end.
class CallLimitReached : public std::runtime_error {
 public:
  explicit CallLimitReached(const Feature* on)
      : std::runtime_error("the limit of host calls is reached"), feature(on) {}

  const Feature* feature;  ///< What the call was made on; null for a static operation without one.
};

/// The one place that every host operation passes. Off, passing costs one counting down; on, it records
/// calls, makes chosen ones fail and withholds interfaces, which is how call order and fault handling are
/// tested and traced. A lookout may be called now and then, whether a plan is at work or not. Every thread
/// has a plan, an account and a lookout of its own.
class Checkpoint {
 public:
  Checkpoint() = delete;

  /// To be called first by every host operation; it must fail with the result when that is negative.
  static HRESULT Pass(std::string_view operation, const Feature* feature, std::string_view detail = {},
                      int option = 0) {
    return --untilLook_ > 0 ? S_OK : PassSlowly(operation, feature, detail, option);
  }
  /// The same for what is called by the million: true when nobody looks at this call, which has passed. When
  /// it is false nothing has happened yet, and `Pass` must be called.
  static bool PassUnseen() {
    if (untilLook_ <= 1) return false;
    --untilLook_;
    return true;
  }
  /// To be called by every cast: whether `feature` must seem not to offer the interface.
  static bool Withholds(const VLMInterfaceId& id, const Feature& feature) {
    return active_ && WithholdsActive(id, feature);
  }

  /// Puts a plan to work and forgets what an earlier one recorded.
  static void Start(CheckpointPlan plan);
  static void Stop();

  /// Has `lookout` called whenever so many calls were made since it was called last, or since
  /// `RestartLookout`. It may throw: the call does not return then. An empty one ends it.
  static void SetLookout(std::int64_t calls, std::function<void()> lookout);
  static void RestartLookout() {
    untilLook_ = active_ ? 0 : lookoutCalls_;
    activeSinceLook_ = 0;
  }

  /// The calls since `Start`; recorded ones, and how many there were.
  static const std::vector<HostCall>& Recorded();
  /// The interfaces that features were asked for meanwhile, when the plan records; as operations of that
  /// name.
  static const std::vector<HostCall>& RecordedCasts();
  static std::int64_t CallCount();

 private:
  static HRESULT PassSlowly(std::string_view operation, const Feature* feature, std::string_view detail,
                            int option);
  static HRESULT PassActive(std::string_view operation, const Feature* feature, std::string_view detail,
                            int option);
  static bool WithholdsActive(const VLMInterfaceId& id, const Feature& feature);

  static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
  static constinit thread_local bool active_;
  static constinit thread_local std::int64_t
      untilLook_;  // calls that need not be looked at; none while a plan is at work
  static constinit thread_local std::int64_t lookoutCalls_;
  static constinit thread_local std::int64_t activeSinceLook_;
};

/// A plan at work for the life of this object.
class CheckpointScope {
 public:
  explicit CheckpointScope(CheckpointPlan plan) { Checkpoint::Start(std::move(plan)); }
  ~CheckpointScope() { Checkpoint::Stop(); }
  CheckpointScope(const CheckpointScope&) = delete;
  CheckpointScope& operator=(const CheckpointScope&) = delete;
};

}  // namespace standalone
