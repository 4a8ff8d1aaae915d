#pragma once

#include <vector>

#include "model/Document.h"

namespace standalone {

/// What the host knows while a thread works on documents: which one, and what the library handed back about
/// it.
class Session {
 public:
  /// The calling thread's.
  static Session& Current();

  /// The document being opened or edited; null when there is none.
  [[nodiscard]] const DocumentPtr& CurrentDocument() const { return document_; }
  /// Makes `document` the current one and forgets what was noted about the one before.
  void SetCurrentDocument(DocumentPtr document);

  /// A modification notice was sent for the feature.
  void NoteModified(const Feature& feature) { modified_.push_back(feature.id); }
  /// The features that notices were sent for, in order, one entry a notice.
  [[nodiscard]] const std::vector<FeatureId>& Modified() const { return modified_; }

  /// Features of the current document that must be propagated once the upgrade at work has been through it;
  /// each is kept once.
  void AppendForPropagation(Feature& feature);
  /// What was kept, in the order of the handing over; nothing is kept afterwards.
  [[nodiscard]] std::vector<Feature*> TakeForPropagation();
  [[nodiscard]] const std::vector<Feature*>& ForPropagation() const { return forPropagation_; }

 private:
  DocumentPtr document_;
  std::vector<FeatureId> modified_;
  std::vector<Feature*> forPropagation_;
};

/// A document as the thread's current one for the life of this object.
class CurrentDocumentScope {
 public:
  explicit CurrentDocumentScope(DocumentPtr document) {
    Session::Current().SetCurrentDocument(std::move(document));
  }
  ~CurrentDocumentScope() { Session::Current().SetCurrentDocument(NULL_var); }
  CurrentDocumentScope(const CurrentDocumentScope&) = delete;
  CurrentDocumentScope& operator=(const CurrentDocumentScope&) = delete;
};

}  // namespace standalone
