#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "model/Feature.h"

namespace standalone {

/// A document's analysis sets (which cases and steps are too) by late type, so that asking for those of a
/// kind does not take a walk over the whole document.
class SetIndex {
 public:
  /// `feature`, of whatever late type, was added as the document's last.
  void NoteLast(Feature& feature) {
    if (feature.type->IsAnalysisSet()) byType_[feature.type].features.push_back(&feature);
  }
  /// A feature was moved or removed, or its late type is about to change or has changed.
  void NoteDisturbed(const Feature& feature);

  /// The sets of a late type or kind, in document order. `first` is the document's first feature.
  [[nodiscard]] std::vector<Feature*> OfKind(std::string_view lateTypeOrKind, Feature* first);

 private:
  struct Sets {
    std::vector<Feature*> features;  // in document order, unless they are stale
    bool areStale = false;
  };
  static void ListAnew(Sets& sets, const LateType& type, Feature* first);

  std::map<const LateType*, Sets> byType_;
};

}  // namespace standalone
