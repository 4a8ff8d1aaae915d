#include "analysis/CaseMemo.h"

#include <vector>

#include "analysis/Frame.h"

namespace standalone {
namespace {

constinit thread_local CaseMemo* current = nullptr;

// Above so many the case of a feature is looked for in vain, but for documents that were made for it.
constexpr int kUsualLevels = 32;

}  // namespace

CaseMemo::CaseMemo() {
  current = this;
}

CaseMemo::~CaseMemo() {
  current = nullptr;
}

CaseMemo* CaseMemo::Current() {
  return current;
}

Feature* CaseMemo::CaseAbove(Feature& feature) {
  Feature* above = &feature;
  for (int level = 0; level < kUsualLevels; ++level, above = above->father) {
    if (above == nullptr || IsOfKind(*above, kind::kAnalysisCase)) return above;
  }
  std::vector<const Feature*> way;
  Feature* found = nullptr;
  for (; above != nullptr; above = above->father) {
    if (const auto known = found_.find(above); known != found_.end()) {
      found = known->second;
      break;
    }
    way.push_back(above);
    if (IsOfKind(*above, kind::kAnalysisCase)) {
      found = above;
      break;
    }
  }
  for (const Feature* const each : way) found_.emplace(each, found);
  return found;
}

}  // namespace standalone
