// Which features link to which, links to what was removed, lists that are changed entry by entry, and lists
// that are set aside while others are awaited in their place.

#include <algorithm>
#include <iterator>
#include <utility>

#include "model/Document.h"

namespace standalone {
namespace {

// From how many entries on a list is opened to be changed. Under sanitizers each is, so that whatever is
// tried there goes through both forms.
#ifdef HVX_SANITIZED
constexpr std::size_t kLong = 0;
#else
constexpr std::size_t kLong = 64;
#endif

// Stands in `Feature::referrer` for more than one feature.
Feature severalReferrers;
Feature* const kSeveral = &severalReferrers;

bool IsDeadLink(const Value& value) {
  return value.Kind() == ValueKind::kLink && value.Target() != nullptr && value.Target()->removed;
}

// The link itself, or a list that holds such a one at any depth.
bool HoldsDeadLink(const Value& value) {
  if (value.Kind() != ValueKind::kList) return IsDeadLink(value);
  return std::ranges::any_of(value.Entries(), HoldsDeadLink);
}

bool IsLink(const Value& value) {
  return value.Kind() == ValueKind::kLink && value.Target() != nullptr;
}

bool LinksTo(const Value& value, const Feature& target) {
  if (value.Kind() != ValueKind::kList) return IsLink(value) && value.Target() == &target;
  return std::ranges::any_of(value.Entries(),
                             [&target](const Value& entry) { return LinksTo(entry, target); });
}

}  // namespace

bool Document::IsLinkedFromElsewhere(const Feature& target, const Feature& feature) {
  const auto links = [&target, &feature](const Feature* referrer) {
    return referrer != &feature && !referrer->removed &&
           std::ranges::any_of(referrer->Attributes(), [&target](const Attribute& attribute) {
             return LinksTo(attribute.value, target);
           });
  };
  if (target.referrer == nullptr) return false;
  if (openFeature_ != &feature) CloseList();
  if (target.referrer != kSeveral) return links(target.referrer);
  if (!sharedReferrersIndexed_) IndexSharedReferrers();
  const Feature*& known = knownLinks_[&target];
  if (known != nullptr && links(known)) return true;
  const std::vector<Feature*>& referrers = sharedReferrers_[&target];
  const auto found = std::ranges::find_if(referrers, links);
  if (found == referrers.end()) return false;
  known = *found;
  return true;
}

void Document::DropAllDeadLinks() {
  if (companion_ != nullptr) companion_->WriteBack();
  CloseList();
  RestoreListsSetAside();
  for (Feature* const feature : withDeadLinks_) {
    if (feature->hasDeadLinks && !feature->removed) DropDeadLinks(*feature);
  }
  withDeadLinks_.clear();
}

void Document::SetListAside(Feature& feature, NameId key) {
  const Attribute* const attribute = FindAttribute(feature, key);
  if (attribute == nullptr || attribute->value.Kind() != ValueKind::kList) return;
  const Value list = attribute->value;
  std::vector<Value> rest;
  std::ranges::remove_copy_if(list.Entries(), std::back_inserter(rest), IsLink);
  if (rest.size() == list.Entries().size()) return;
  listsSetAside_.push_back({&feature, key, list});
  SetAttribute(feature, key, Value::List(Keep(rest)));
}

std::vector<Feature*> Document::ReplaceListSetAside(const Feature& feature, NameId key) {
  std::vector<Feature*> targets;
  std::erase_if(listsSetAside_, [&](const ListSetAside& each) {
    if (each.feature != &feature || each.key != key) return false;
    for (const Value& entry : each.list.Entries()) {
      if (IsLink(entry)) targets.push_back(entry.Target());
    }
    return true;
  });
  return targets;
}

void Document::RestoreListsSetAside() {
  for (const auto& [feature, key, list] : std::exchange(listsSetAside_, {})) {
    const Attribute* const attribute = feature->removed ? nullptr : FindAttribute(*feature, key);
    if (attribute == nullptr || attribute->value.Kind() != ValueKind::kList) continue;
    if (std::ranges::none_of(attribute->value.Entries(), IsLink)) SetAttribute(*feature, key, list);
  }
}

void Document::NoteLinks(Feature& referrer, const Value& value) {
  if (value.Kind() == ValueKind::kList) {
    for (const Value& entry : value.Entries()) NoteLinks(referrer, entry);
    return;
  }
  if (value.Kind() == ValueKind::kLink && value.Target() != nullptr) NoteLink(referrer, *value.Target());
}

void Document::NoteLink(Feature& referrer, Feature& target) {
  if (target.removed) {
    MarkDeadLinks(referrer);
    return;
  }
  if (target.referrer == &referrer) return;
  if (target.referrer == nullptr) {
    target.referrer = &referrer;
    return;
  }
  if (sharedReferrersIndexed_) {
    std::vector<Feature*>& all = sharedReferrers_[&target];
    if (target.referrer != kSeveral) all.push_back(target.referrer);
    all.push_back(&referrer);
  }
  target.referrer = kSeveral;
}

void Document::MarkReferrers(Feature& target) {
  if (target.referrer == nullptr) return;
  if (target.referrer != kSeveral) {
    TellReferrer(*target.referrer, target);
    return;
  }
  if (!sharedReferrersIndexed_) IndexSharedReferrers();
  for (Feature* const referrer : sharedReferrers_[&target]) TellReferrer(*referrer, target);
}

// An open list is told at once, since nobody looks through it for what was removed.
void Document::TellReferrer(Feature& referrer, const Feature& removed) {
  if (&referrer == openFeature_ && openList_->Holds(removed)) {
    Touch(referrer, ChangedPart::kAttribute, openKey_);
    openList_->TakeOut(removed);
  }
  MarkDeadLinks(referrer);
}

void Document::MarkDeadLinks(Feature& referrer) {
  if (!referrer.hasDeadLinks) withDeadLinks_.push_back(&referrer);
  referrer.hasDeadLinks = true;
}

void Document::IndexSharedReferrers() {
  CloseList();
  sharedReferrersIndexed_ = true;
  const auto index = [this](Feature& referrer, const Value& value, const auto& self) -> void {
    if (value.Kind() == ValueKind::kList) {
      for (const Value& entry : value.Entries()) self(referrer, entry, self);
    } else if (value.Kind() == ValueKind::kLink && value.Target() != nullptr &&
               value.Target()->referrer == kSeveral) {
      sharedReferrers_[value.Target()].push_back(&referrer);
    }
  };
  // What was removed earlier is not reached: links out of it hold nobody any more.
  for (Feature* feature = first_; feature != nullptr; feature = feature->next) {
    for (const Attribute& attribute : feature->Attributes()) index(*feature, attribute.value, index);
    index(*feature, Value::Link(feature->container), index);
  }
}

void Document::DropFromList(Feature& feature, NameId key, const Feature& target) {
  if (OpenListOf(feature, key) == nullptr) {
    const Attribute* const attribute = FindAttribute(feature, key);
    if (attribute == nullptr || attribute->value.Kind() != ValueKind::kList) return;
    const std::span<const Value> entries = attribute->value.Entries();
    if (entries.size() < kLong) {
      std::vector<Value> rest;
      std::ranges::remove_copy_if(entries, std::back_inserter(rest), [&target](const Value& entry) {
        return IsLink(entry) && entry.Target() == &target;
      });
      SetAttribute(feature, key, Value::List(Keep(rest)));
      return;
    }
    Open(feature, key, entries);
  }
  if (!openList_->Holds(target)) return;
  Touch(feature, ChangedPart::kAttribute, key);
  openList_->TakeOut(target);
}

void Document::Open(Feature& feature, NameId key, std::span<const Value> entries) {
  CloseList();
  openList_.emplace(entries);
  openFeature_ = &feature;
  openKey_ = key;
}

// The changes were noted when they were made.
void Document::CloseList() {
  if (openFeature_ == nullptr) return;
  Feature& feature = *std::exchange(openFeature_, nullptr);
  const std::vector<Value> entries = openList_->Entries();
  openList_.reset();
  const auto attribute = std::ranges::find(feature.Attributes(), openKey_, &Attribute::key);
  if (attribute->value.Entries().size() != entries.size() ||
      !std::ranges::equal(attribute->value.Entries(), entries))
    attribute->value = Value::List(Keep(entries));
  if (std::ranges::any_of(entries, IsDeadLink)) MarkDeadLinks(feature);
}

void Document::Settle(Feature& feature, NameId key) {
  if (feature.isBehind) companion_->WriteBack();
  if (openFeature_ == &feature && (key == openKey_ || key == kNoName)) CloseList();
  if (feature.hasDeadLinks) DropDeadLinks(feature);
}

void Document::SettleEntries(Feature& feature, NameId key) {
  if (feature.isBehind) companion_->WriteBack();
  DropDeadLinks(feature, key);
}

void Document::DropDeadLinks(Feature& feature, NameId toOpen) {
  feature.hasDeadLinks = false;
  if (feature.container != nullptr && feature.container->removed) {
    Touch(feature, ChangedPart::kContainer);
    feature.container = nullptr;
  }
  const auto holdsDeadLink = [this, &feature](const Attribute& attribute) {
    return !IsOpen(feature, attribute.key) && HoldsDeadLink(attribute.value);
  };
  if (std::ranges::none_of(feature.Attributes(), holdsDeadLink)) return;
  for (const Attribute& attribute : feature.Attributes()) {
    if (holdsDeadLink(attribute)) Touch(feature, ChangedPart::kAttribute, attribute.key);
  }
  for (const Attribute& attribute : feature.Attributes()) {
    if (attribute.key != toOpen || attribute.value.Kind() != ValueKind::kList || !holdsDeadLink(attribute))
      continue;
    if (attribute.value.Entries().size() >= kLong) Open(feature, toOpen, AliveEntries(attribute.value));
  }
  std::uint32_t kept = 0;
  for (const Attribute& attribute : feature.Attributes()) {
    if (IsDeadLink(attribute.value)) continue;  // the attribute goes with its link
    const Value value = holdsDeadLink(attribute) ? WithoutDeadLinks(attribute.value) : attribute.value;
    feature.attributes[kept] = attribute;
    feature.attributes[kept++].value = value;
  }
  if (kept != feature.attributeCount) attributeIndex_.Forget(feature);
  feature.attributeCount = kept;
}

Value Document::WithoutDeadLinks(const Value& value) {
  return value.Kind() == ValueKind::kList ? Value::List(Keep(AliveEntries(value))) : value;
}

std::vector<Value> Document::AliveEntries(const Value& list) {
  std::vector<Value> alive;
  for (const Value& entry : list.Entries()) {
    if (!IsDeadLink(entry)) alive.push_back(WithoutDeadLinks(entry));
  }
  return alive;
}

}  // namespace standalone
