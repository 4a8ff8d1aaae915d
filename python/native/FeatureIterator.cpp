#include "native/FeatureIterator.h"

namespace python {

std::optional<HeldFeature> FeatureIterator::Next() {
  hvxupgrade::Document& document = document_->Open();
  while (true) {
    // Only now, since the feature at hand may have been removed, and others created behind it.
    if (!at_) {
      at_ = document.All().begin();
    } else if (*at_ != Place()) {
      ++*at_;
    }
    if (*at_ == Place()) return std::nullopt;
    HeldFeature feature{document_, **at_};
    if (!condition_ || condition_(feature)) return feature;
  }
}

}  // namespace python
