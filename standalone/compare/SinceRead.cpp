#include "compare/SinceRead.h"

#include "compare/FeatureDifference.h"

namespace standalone {

SinceRead SinceRead::Of(const Document& document) {
  SinceRead since;
  for (const Feature* const feature : document.Touched()) {
    const FeatureState* const before = document.Before(*feature);
    if (before == nullptr) {
      if (!feature->removed) since.created.push_back(feature);
    } else if (feature->removed) {
      since.removed.push_back(feature);
    } else if (Differ(*before, *feature)) {
      since.changed.push_back(feature);
    }
  }
  return since;
}

}  // namespace standalone
