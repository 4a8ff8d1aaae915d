#include "session/Session.h"

#include <utility>

namespace standalone {

Session& Session::Current() {
  static thread_local Session session;
  return session;
}

void Session::SetCurrentDocument(DocumentPtr document) {
  modified_.clear();
  static_cast<void>(TakeForPropagation());
  document_ = std::move(document);
}

void Session::AppendForPropagation(Feature& feature) {
  if (feature.awaitsPropagation || feature.document != document_.Get()) return;
  feature.awaitsPropagation = true;
  forPropagation_.push_back(&feature);
}

std::vector<Feature*> Session::TakeForPropagation() {
  for (Feature* const feature : forPropagation_) feature->awaitsPropagation = false;
  return std::exchange(forPropagation_, {});
}

}  // namespace standalone
