#include "checkpoint/Checkpoint.h"

namespace standalone {
namespace {

struct State {
  CheckpointPlan plan;
  std::vector<HostCall> recorded;
  std::vector<HostCall> recordedCasts;
  std::int64_t calls = 0;
};

State& Current() {
  static thread_local State state;
  return state;
}

std::function<void()>& Lookout() {
  static thread_local std::function<void()> lookout;
  return lookout;
}

bool MustFail(const CheckpointPlan& plan, std::int64_t number, std::string_view operation,
              std::string_view detail) {
  if (plan.failNth > 0 && (plan.failFromNthOn ? number >= plan.failNth : number == plan.failNth)) return true;
  return !plan.failNamed.empty() && operation == plan.failNamed &&
         (plan.failNamedDetail.empty() || detail == plan.failNamedDetail);
}

}  // namespace

constinit thread_local bool Checkpoint::active_ = false;
constinit thread_local std::int64_t Checkpoint::untilLook_ = kNever;
constinit thread_local std::int64_t Checkpoint::lookoutCalls_ = kNever;
constinit thread_local std::int64_t Checkpoint::activeSinceLook_ = 0;

void Checkpoint::Start(CheckpointPlan plan) {
  Current() = {std::move(plan), {}, {}, 0};
  active_ = true;
  RestartLookout();
}

void Checkpoint::Stop() {
  active_ = false;
  RestartLookout();
}

void Checkpoint::SetLookout(std::int64_t calls, std::function<void()> lookout) {
  lookoutCalls_ = lookout ? calls : kNever;
  Lookout() = std::move(lookout);
  RestartLookout();
}

const std::vector<HostCall>& Checkpoint::Recorded() {
  return Current().recorded;
}

const std::vector<HostCall>& Checkpoint::RecordedCasts() {
  return Current().recordedCasts;
}

std::int64_t Checkpoint::CallCount() {
  return Current().calls;
}

HRESULT Checkpoint::PassSlowly(std::string_view operation, const Feature* feature, std::string_view detail,
                               int option) {
  if (!active_ || ++activeSinceLook_ >= lookoutCalls_) {
    RestartLookout();
    if (Lookout()) Lookout()();
  }
  if (!active_) return S_OK;
  untilLook_ = 0;
  return PassActive(operation, feature, detail, option);
}

HRESULT Checkpoint::PassActive(std::string_view operation, const Feature* feature, std::string_view detail,
                               int option) {
  State& state = Current();
  ++state.calls;
  if (state.plan.callLimit > 0 && state.calls > state.plan.callLimit) throw CallLimitReached(feature);
  if (state.plan.record || state.plan.onCall) {
    HostCall call{std::string(operation), feature == nullptr ? 0 : feature->id, std::string(detail), option};
    if (state.plan.onCall) state.plan.onCall(call, feature);
    if (state.plan.record) state.recorded.push_back(std::move(call));
  }
  return MustFail(state.plan, state.calls, operation, detail) ? state.plan.failure : S_OK;
}

bool Checkpoint::WithholdsActive(const VLMInterfaceId& id, const Feature& feature) {
  const CheckpointPlan& plan = Current().plan;
  if (plan.record) Current().recordedCasts.push_back({std::string(id.Name()), feature.id, {}, 0});
  return id.Name() == plan.withholdInterface && (plan.withholdFrom == 0 || plan.withholdFrom == feature.id);
}

}  // namespace standalone
