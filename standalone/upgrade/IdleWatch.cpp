#include "upgrade/IdleWatch.h"

#include <fmt/format.h>

#include <algorithm>

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
                                     "probably never end; hvxupgrade check shows the cause",
                                     calls)) {}

IdleWatch::IdleWatch(const Document& document)
    : document_(document),
      calls_(kCallsOfSmallDocument + kCallsPerFeature * static_cast<std::int64_t>(document.FeatureCount()) +
             kCallsPerMeshObject * MeshObjectsOf(document)) {
  Checkpoint::SetLookout(calls_, [this] { Look(); });
  Restart();
}

IdleWatch::~IdleWatch() {
  Checkpoint::SetLookout(0, nullptr);
}

void IdleWatch::Restart() {
  changes_ = document_.ChangeCount();
  Checkpoint::RestartLookout();
}

void IdleWatch::Look() {
  if (document_.ChangeCount() == changes_) throw IdleRun(calls_);
  changes_ = document_.ChangeCount();
}

}  // namespace standalone
