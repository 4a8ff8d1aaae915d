#include "upgrade/IdleWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "analysis/MeshNumbers.h"
#include "checkpoint/Checkpoint.h"

namespace standalone {
namespace {

// No routine goes through the whole document with so many calls for each feature.
constexpr std::int64_t kCallsPerFeature = 100;
constexpr std::int64_t kCallsOfSmallDocument = 1'000'000;
// Each element and node is linked with its counterpart and given a number, which the document shows only when
// all of its mesh part have theirs.
constexpr std::int64_t kCallsPerMeshObject = 2;
// A few milliseconds, in which nobody misses an answer.
constexpr std::int64_t kCallsPerLook = 100'000;

std::int64_t MeshObjectsOf(const Document& document) {
  std::int64_t count = 0;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    for (const Attribute& attribute : feature->Attributes()) {
      const bool counts = attribute.key == kElementCount.Id() || attribute.key == kNodeCount.Id();
      if (!counts || attribute.value.Kind() != ValueKind::kInteger) continue;
      count = std::min<std::int64_t>(
          count + std::clamp<std::int64_t>(attribute.value.AsInteger(), 0, kMostMeshObjects),
          kMostMeshObjects);
    }
  }
  return count;
}

}  // namespace

IdleRun::IdleRun(std::int64_t calls)
    : std::runtime_error(fmt::format("more than {} calls of the host in a row changed nothing, so it would "
                                     "probably never end",
                                     calls)) {}

IdleWatch::IdleWatch(const Document& document, std::function<void()> meanwhile)
    : document_(document),
      meanwhile_(std::move(meanwhile)),
      mostCalls_(kCallsOfSmallDocument +
                 kCallsPerFeature * static_cast<std::int64_t>(document.FeatureCount()) +
                 kCallsPerMeshObject * MeshObjectsOf(document)) {
  Checkpoint::SetLookout(kCallsPerLook, [this] { Look(); });
  Restart();
}

IdleWatch::~IdleWatch() {
  Checkpoint::SetLookout(0, nullptr);
}

void IdleWatch::Restart() {
  changes_ = document_.ChangeCount();
  quietCalls_ = 0;
  Checkpoint::RestartLookout();
}

void IdleWatch::Look() {
  quietCalls_ = document_.ChangeCount() == changes_ ? quietCalls_ + kCallsPerLook : 0;
  changes_ = document_.ChangeCount();
  if (quietCalls_ >= mostCalls_) throw IdleRun(mostCalls_);
  meanwhile_();
}

}  // namespace standalone
