#include "session/Session.h"

#include <utility>

namespace standalone {

Session& Session::Current() {
  static Session session;
  return session;
}

void Session::SetCurrentDocument(DocumentPtr document) {
  modified_.clear();
  forPropagation_.clear();
  appended_.clear();
  document_ = std::move(document);
}

void Session::AppendForPropagation(Feature& feature) {
  if (appended_.insert(&feature).second) forPropagation_.push_back(&feature);
}

std::vector<Feature*> Session::TakeForPropagation() {
  appended_.clear();
  return std::exchange(forPropagation_, {});
}

}  // namespace standalone
