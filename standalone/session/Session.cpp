#include "session/Session.h"

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

}  // namespace standalone
