#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "native/HeldDocument.h"

namespace python {

/// Walks over the features of a document that fulfil a condition, in document order. What is created
/// meanwhile is met too; the feature at hand may be removed.
class FeatureIterator {
 public:
  using Condition = std::function<bool(const HeldFeature&)>;

  explicit FeatureIterator(std::shared_ptr<HeldDocument> document, Condition condition = nullptr)
      : document_(std::move(document)), condition_(std::move(condition)) {}

  /// None after the last one.
  [[nodiscard]] std::optional<HeldFeature> Next();

 private:
  using Place = hvxupgrade::Document::Features::Iterator;

  std::shared_ptr<HeldDocument> document_;
  Condition condition_;
  std::optional<Place> at_;  // the feature that was given last
};

}  // namespace python
