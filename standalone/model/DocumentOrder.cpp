// The order of the document, and of the sons beneath a father.

#include "model/Document.h"

namespace standalone {

void Document::PlaceBeside(Feature& feature, Feature& other, bool after) {
  Feature* const anchor = after ? &other : other.previousSibling;
  if (&feature == &other || anchor == &feature || feature.previousSibling == anchor) return;
  Touch(feature, ChangedPart::kFather);
  listings_.NoteMoved(feature);

  Feature* const father = feature.father;
  UnlinkSon(feature);
  feature.father = father;
  feature.previousSibling = after ? &other : other.previousSibling;
  feature.nextSibling = after ? other.nextSibling : &other;
  (feature.previousSibling != nullptr ? feature.previousSibling->nextSibling : father->firstSon) = &feature;
  (feature.nextSibling != nullptr ? feature.nextSibling->previousSibling : father->lastSon) = &feature;

  MoveBeside(feature, other, after);
}

bool Document::PlaceBeneath(Feature& feature, Feature& father) {
  if (feature.removed || father.removed) return false;
  for (const Feature* above = &father; above != nullptr; above = above->father) {
    if (above == &feature) return false;
  }
  if (father.lastSon == &feature) return true;
  Touch(feature, ChangedPart::kFather);
  listings_.NoteMoved(feature);
  UnlinkSon(feature);
  Feature* const last = father.lastSon;
  LinkLastSon(feature, father);
  feature.nextSibling = nullptr;
  if (last != nullptr) MoveBeside(feature, *last, true);
  return true;
}

void Document::LinkLast(Feature& feature) {
  feature.previous = last_;
  feature.next = nullptr;
  (last_ != nullptr ? last_->next : first_) = &feature;
  last_ = &feature;
  ++count_;
}

void Document::LinkLastSon(Feature& feature, Feature& father) {
  feature.father = &father;
  feature.previousSibling = father.lastSon;
  (father.lastSon != nullptr ? father.lastSon->nextSibling : father.firstSon) = &feature;
  father.lastSon = &feature;
}

void Document::Unlink(Feature& feature) {
  (feature.previous != nullptr ? feature.previous->next : first_) = feature.next;
  (feature.next != nullptr ? feature.next->previous : last_) = feature.previous;
  --count_;
}

void Document::UnlinkSon(Feature& feature) {
  if (feature.father == nullptr) return;
  (feature.previousSibling != nullptr ? feature.previousSibling->nextSibling : feature.father->firstSon) =
      feature.nextSibling;
  (feature.nextSibling != nullptr ? feature.nextSibling->previousSibling : feature.father->lastSon) =
      feature.previousSibling;
}

// The document's order follows that of the sons, because a reader takes the sons in the order of their lines.
void Document::MoveBeside(Feature& feature, Feature& other, bool after) {
  sets_.NoteDisturbed(feature);
  rearranged_.push_back(&feature);
  Unlink(feature);
  feature.previous = after ? &other : other.previous;
  feature.next = after ? other.next : &other;
  (feature.previous != nullptr ? feature.previous->next : first_) = &feature;
  (feature.next != nullptr ? feature.next->previous : last_) = &feature;
  ++count_;
}

}  // namespace standalone
