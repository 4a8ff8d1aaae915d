#pragma once

#include <memory>
#include <utility>

#include "hvxupgrade/Document.h"

namespace python {

/// A document as Python holds it: features share it, so that it lives as long as any of them. All of it is
/// for threads that have the interpreter's lock.
class HeldDocument {
 public:
  explicit HeldDocument(hvxupgrade::Document document) : document_(std::move(document)) {}
  HeldDocument(const HeldDocument&) = delete;
  HeldDocument& operator=(const HeldDocument&) = delete;

  /// Throws `hvxupgrade::Error` (`kUsage`) while a call works on the document without the interpreter's lock.
  [[nodiscard]] hvxupgrade::Document& Open();
  void RequireOpen() const;
  [[nodiscard]] bool IsWorkedOn() const { return isWorkedOn_; }

  /// Keeps everyone else away from the document as long as it lives.
  class Work {
   public:
    explicit Work(HeldDocument& held) : document(held.Open()), held_(held) { held_.isWorkedOn_ = true; }
    ~Work() { held_.isWorkedOn_ = false; }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    hvxupgrade::Document& document;

   private:
    HeldDocument& held_;
  };

 private:
  hvxupgrade::Document document_;
  bool isWorkedOn_ = false;
};

/// A feature as Python holds it.
struct HeldFeature {
  std::shared_ptr<HeldDocument> document;
  hvxupgrade::Feature feature;

  /// See `HeldDocument::Open`.
  [[nodiscard]] hvxupgrade::Feature& Open() {
    document->RequireOpen();
    return feature;
  }
  [[nodiscard]] HeldFeature Beside(const hvxupgrade::Feature& other) const { return {document, other}; }
};

}  // namespace python
