#include "file/ForwardLinks.h"

#include <fmt/format.h>

#include <unordered_map>
#include <unordered_set>

namespace standalone {

std::optional<ForwardLinks::Fault> ForwardLinks::Resolve(Document& document) const {
  const ForwardLink* const unresolved = Connect(document);
  const ForwardLink* const circular = fatherFollowsSon_ ? RelinkSons(document) : nullptr;
  if (circular != nullptr && (unresolved == nullptr || circular->line < unresolved->line)) {
    return Fault{circular->line, fmt::format("feature {} is an ancestor of itself", circular->from->id),
                 "Correct \"father\" in the line, or in that of a feature above it in the tree"};
  }
  if (unresolved == nullptr) return std::nullopt;
  return Fault{unresolved->line,
               fmt::format("feature {} links to feature {}, which does not exist", unresolved->from->id,
                           unresolved->to),
               "Restore that feature's line or remove the link"};
}

// Gives the first that leads nowhere; null when all lead somewhere.
const ForwardLink* ForwardLinks::Connect(Document& document) const {
  const ForwardLink* unresolved = nullptr;
  for (const ForwardLink& link : links_) {
    Feature* const target = document.Find(link.to);
    if (target == nullptr) {
      if (unresolved == nullptr) unresolved = &link;
      continue;
    }
    if (link.place != nullptr) {
      *link.place = target;
    } else {
      *link.value = Value::Link(target);
    }
    if (!link.IsFather()) document.NoteLinkRead(*link.from, *target);
  }
  return unresolved;
}

// Sons stand beneath their father in the order of their lines. Only where a father follows a son can the
// links lead in a circle: gives the first such link in one, null without.
const ForwardLink* ForwardLinks::RelinkSons(Document& document) const {
  document.RelinkSonsRead();
  std::size_t reached = 0;
  for (const Feature* root = document.First(); root != nullptr; root = root->next) {
    if (root->father == nullptr) reached += Document::CountBeneath(*root) + 1;
  }
  if (reached == document.FeatureCount()) return nullptr;
  std::unordered_map<const Feature*, const ForwardLink*> met;  // from where each was reached first
  std::unordered_set<const Feature*> inCircle;
  for (const ForwardLink& link : links_) {
    if (!link.IsFather()) continue;
    const Feature* above = link.from;
    while (above != nullptr && met.try_emplace(above, &link).second) above = above->father;
    // Back where this way has been: a circle that no other way has come to.
    if (above != nullptr && met[above] == &link) {
      while (inCircle.insert(above).second) above = above->father;
    }
    if (inCircle.contains(link.from)) return &link;
  }
  return nullptr;
}

}  // namespace standalone
