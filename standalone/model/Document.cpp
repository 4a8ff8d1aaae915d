#include "model/Document.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <new>
#include <utility>

namespace standalone {
namespace {

// Stands in `Feature::referrer` for more than one feature.
Feature severalReferrers;
Feature* const kSeveral = &severalReferrers;

// The room that a list of `size` entries has. A function of the size alone, so that it need not be stored.
std::size_t RoomFor(std::size_t size) {
  return size == 0 ? 0 : std::bit_ceil(size);
}

bool IsDeadLink(const Value& value) {
  return value.Kind() == ValueKind::kLink && value.Target() != nullptr && value.Target()->removed;
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

const Feature* NextBeneath(const Feature& top, const Feature& current) {
  if (current.firstSon != nullptr) return current.firstSon;
  const Feature* feature = &current;
  while (feature != &top && feature->nextSibling == nullptr) feature = feature->father;
  return feature == &top ? nullptr : feature->nextSibling;
}

DocumentPtr Document::Create(std::string displayName) {
  return DocumentPtr::Adopt(new Document(std::move(displayName)));
}

HRESULT Document::QueryInterface(const VLMInterfaceId& id, void** out) {
  *out = nullptr;
  if (!(id == VLMDocument::kId || id == VLMBaseUnknown::kId)) return E_NOINTERFACE;
  AddRef();
  *out = static_cast<VLMDocument*>(this);
  return S_OK;
}

void Document::LoadCatalog(const FeatureCatalog& catalog) {
  if (std::ranges::find(catalogs_, &catalog) == catalogs_.end()) catalogs_.push_back(&catalog);
}

Feature* Document::Find(FeatureId id) const {
  if (!idsAscend_) {
    const auto found = byScatteredId_.find(id);
    return found == byScatteredId_.end() ? nullptr : found->second;
  }
  if (idsAreDense_) return id >= 1 && id <= highestId_ ? byId_[static_cast<std::size_t>(id) - 1] : nullptr;
  const auto found = std::ranges::lower_bound(byId_, id, {}, &Feature::id);
  return found != byId_.end() && (*found)->id == id ? *found : nullptr;
}

Attribute* Document::FindAttribute(Feature& feature, NameId key) {
  if (feature.hasDeadLinks || feature.isBehind) Settle(feature);
  for (Attribute& attribute : feature.Attributes()) {
    if (attribute.key == key) return &attribute;
  }
  return nullptr;
}

Feature* Document::AnalysisModel() const {
  return analysisModel_ == nullptr || analysisModel_->removed ? nullptr : analysisModel_;
}

std::int64_t Document::HighestNumberAfter(std::string_view prefix) {
  if (numberedNames_.Watch(prefix)) {
    for (const Feature* feature = first_; feature != nullptr; feature = feature->next)
      numberedNames_.NoteAfter(prefix, feature->externalName);
  }
  return numberedNames_.HighestAfter(prefix);
}

std::span<const Attribute> Document::AttributesOf(Feature& feature) {
  if (feature.hasDeadLinks || feature.isBehind) Settle(feature);
  return feature.Attributes();
}

bool Document::IsLinkedFromElsewhere(const Feature& target, const Feature& feature) {
  const auto links = [&target, &feature](const Feature* referrer) {
    return referrer != &feature && !referrer->removed &&
           std::ranges::any_of(referrer->Attributes(), [&target](const Attribute& attribute) {
             return LinksTo(attribute.value, target);
           });
  };
  if (target.referrer == nullptr) return false;
  if (target.referrer != kSeveral) return links(target.referrer);
  if (!sharedReferrersIndexed_) IndexSharedReferrers();
  return std::ranges::any_of(sharedReferrers_[&target], links);
}

std::size_t Document::CountBeneath(const Feature& feature) {
  std::size_t count = 0;
  for (const Feature* each = NextBeneath(feature, feature); each != nullptr;
       each = NextBeneath(feature, *each))
    ++count;
  return count;
}

void Document::DropAllDeadLinks() {
  if (companion_ != nullptr) companion_->WriteBack();
  RestoreListsSetAside();
  for (Feature* const feature : withDeadLinks_) {
    if (feature->hasDeadLinks && !feature->removed) DropDeadLinks(*feature);
  }
  withDeadLinks_.clear();
}

Feature* Document::Create(const LateType& type, std::string_view name, Feature* father, Feature* container) {
  if (father != nullptr && father->removed) return nullptr;
  Feature& feature = AppendRead(NextId(), type);
  feature.name = Keep(name);
  feature.created = true;
  if (container != nullptr && !container->removed) {
    feature.container = container;
    NoteLink(feature, *container);
  }
  if (father != nullptr) LinkLastSon(feature, *father);
  touched_.push_back(&feature);
  return &feature;
}

void Document::Remove(Feature& feature) {
  if (feature.removed) return;
  // Without recursion, since nothing bounds how deep features stand beneath each other.
  std::vector<Feature*> doomed{&feature};
  for (std::size_t i = 0; i < doomed.size(); ++i) {
    for (Feature* son = doomed[i]->firstSon; son != nullptr; son = son->nextSibling) doomed.push_back(son);
  }
  for (Feature* const each : doomed) {
    Touch(*each);
    each->removed = true;
    sets_.NoteDisturbed(*each);
    numberedNames_.Forget(each->externalName);
    MarkReferrers(*each);
    Unlink(*each);
  }
  UnlinkSon(feature);
}

void Document::SetType(Feature& feature, const LateType& type) {
  if (feature.type == &type) return;
  Touch(feature);
  sets_.NoteDisturbed(feature);
  feature.type = &type;
  sets_.NoteDisturbed(feature);
}

void Document::SetExternalName(Feature& feature, std::string_view name) {
  if (feature.externalName == name) return;
  Touch(feature);
  numberedNames_.Forget(feature.externalName);
  feature.externalName = Keep(name);
  numberedNames_.Note(feature.externalName);
}

void Document::SetPhysicalType(Feature& feature, std::string_view physicalType) {
  const NameId name = NameTable::Intern(physicalType);
  if (feature.physicalType == name) return;
  Touch(feature);
  feature.physicalType = name;
}

void Document::SetUpToDate(Feature& feature, bool upToDate) {
  if (feature.upToDate == upToDate) return;
  Touch(feature);
  feature.upToDate = upToDate;
}

void Document::SetAttribute(Feature& feature, NameId key, const Value& value) {
  Attribute* attribute = FindAttribute(feature, key);
  if (attribute != nullptr && attribute->value == value) return;
  Touch(feature);
  attribute = FindAttribute(feature, key);
  if (attribute == nullptr) attribute = &AddAttribute(feature, key);
  attribute->value = value;
  NoteLinks(feature, value);
}

void Document::ReserveAttributes(Feature& feature, std::uint32_t count) {
  if (count <= feature.attributeCapacity) return;
  auto* const room = static_cast<Attribute*>(arena_.allocate(count * sizeof(Attribute), alignof(Attribute)));
  std::uninitialized_copy_n(feature.attributes, feature.attributeCount, room);
  feature.HoldAttributes(room, feature.attributeCount, count);
}

void Document::SetAttributeMode(Feature& feature, NameId key, int mode) {
  const Attribute* const attribute = FindAttribute(feature, key);
  if (attribute == nullptr || attribute->mode == mode) return;
  Touch(feature);
  FindAttribute(feature, key)->mode = mode;
}

void Document::RemoveAttribute(Feature& feature, NameId key) {
  if (FindAttribute(feature, key) == nullptr) return;
  Touch(feature);
  Attribute* const gone = FindAttribute(feature, key);
  std::move(gone + 1, feature.attributes + feature.attributeCount, gone);
  --feature.attributeCount;
}

void Document::AppendToList(Feature& feature, NameId key, const Value& entry) {
  Touch(feature);
  Attribute& attribute = *FindAttribute(feature, key);
  const bool isList = attribute.value.Kind() == ValueKind::kList;
  const std::span<Value> entries = isList ? attribute.value.Entries() : std::span<Value>();
  const std::size_t size = entries.size();
  Value* room = entries.data();
  if (size == RoomFor(size)) {
    room = static_cast<Value*>(arena_.allocate(RoomFor(size + 1) * sizeof(Value), alignof(Value)));
    std::uninitialized_copy(entries.begin(), entries.end(), room);
  }
  // The state before the change shares the room but not the size, so a new last entry leaves it as it was.
  new (room + size) Value(entry);
  attribute.value = Value::List({room, size + 1});
  NoteLinks(feature, entry);
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

void Document::PlaceBeside(Feature& feature, Feature& other, bool after) {
  Feature* const anchor = after ? &other : other.previousSibling;
  if (&feature == &other || anchor == &feature || feature.previousSibling == anchor) return;
  Touch(feature);

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
  Touch(feature);
  UnlinkSon(feature);
  Feature* const last = father.lastSon;
  LinkLastSon(feature, father);
  feature.nextSibling = nullptr;
  if (last != nullptr) MoveBeside(feature, *last, true);
  return true;
}

std::string_view Document::Keep(std::string_view text) {
  if (text.empty()) return {};
  std::string_view& place = recentTexts_.PlaceOf(text);
  if (place != text) {
    char* const kept = static_cast<char*>(arena_.allocate(text.size(), 1));
    std::ranges::copy(text, kept);
    place = {kept, text.size()};
  }
  return place;
}

std::span<Value> Document::Keep(std::span<const Value> entries) {
  if (entries.empty()) return {};
  auto* const kept =
      static_cast<Value*>(arena_.allocate(RoomFor(entries.size()) * sizeof(Value), alignof(Value)));
  std::uninitialized_copy(entries.begin(), entries.end(), kept);
  return {kept, entries.size()};
}

const FeatureState* Document::Before(const Feature& feature) const {
  if (feature.created) return nullptr;
  return feature.journalEntry == 0 ? &feature : &before_[feature.journalEntry];
}

Feature& Document::AppendRead(FeatureId id, const LateType& type) {
  auto* const feature = new (featureArena_.allocate(sizeof(Feature), alignof(Feature))) Feature;
  feature->id = id;
  feature->document = this;
  feature->type = &type;
  idsAreDense_ = idsAreDense_ && id == highestId_ + 1;
  idsAscend_ = idsAscend_ && id > highestId_;
  if (type.IsAnalysisModel() && AnalysisModel() == nullptr) analysisModel_ = feature;
  sets_.NoteLast(*feature);
  highestId_ = std::max(highestId_, id);
  if (idsAscend_) {
    byId_.push_back(feature);
  } else {
    for (Feature* const known : byId_) byScatteredId_.emplace(known->id, known);
    byId_.clear();
    byScatteredId_.emplace(id, feature);
  }
  LinkLast(*feature);
  return *feature;
}

void Document::SetFatherRead(Feature& feature, Feature& father) {
  LinkLastSon(feature, father);
}

void Document::SetAttributesRead(Feature& feature, std::span<const Attribute> attributes) {
  const auto size = static_cast<std::uint32_t>(attributes.size());
  if (size == 0) return;
  auto* const room = static_cast<Attribute*>(arena_.allocate(size * sizeof(Attribute), alignof(Attribute)));
  std::uninitialized_copy(attributes.begin(), attributes.end(), room);
  feature.HoldAttributes(room, size, size);
}

void Document::RelinkSonsRead() {
  for (Feature* feature = first_; feature != nullptr; feature = feature->next) {
    feature->firstSon = feature->lastSon = feature->previousSibling = feature->nextSibling = nullptr;
  }
  for (Feature* feature = first_; feature != nullptr; feature = feature->next) {
    if (feature->father != nullptr) LinkLastSon(*feature, *feature->father);
  }
}

void Document::Touch(Feature& feature) {
  if (feature.created || feature.journalEntry != 0) return;
  feature.journalEntry = static_cast<std::uint32_t>(before_.size());
  FeatureState& before = before_.emplace_back(feature);
  touched_.push_back(&feature);
  if (feature.attributeCount == 0) return;
  // The old state keeps the old array; the feature goes on with a copy.
  const std::uint32_t room = feature.attributeCount + 2;
  auto* const copy = static_cast<Attribute*>(arena_.allocate(room * sizeof(Attribute), alignof(Attribute)));
  std::uninitialized_copy_n(before.attributes, before.attributeCount, copy);
  feature.HoldAttributes(copy, before.attributeCount, room);
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
  Unlink(feature);
  feature.previous = after ? &other : other.previous;
  feature.next = after ? other.next : &other;
  (feature.previous != nullptr ? feature.previous->next : first_) = &feature;
  (feature.next != nullptr ? feature.next->previous : last_) = &feature;
  ++count_;
}

Attribute& Document::AddAttribute(Feature& feature, NameId key) {
  if (feature.attributeCount == feature.attributeCapacity) {
    ReserveAttributes(feature, std::max<std::uint32_t>(4, feature.attributeCapacity * 2));
  }
  auto* const added = new (feature.attributes + feature.attributeCount) Attribute;
  ++feature.attributeCount;
  added->key = key;
  return *added;
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
    MarkDeadLinks(*target.referrer);
    return;
  }
  if (!sharedReferrersIndexed_) IndexSharedReferrers();
  for (Feature* const referrer : sharedReferrers_[&target]) MarkDeadLinks(*referrer);
}

void Document::MarkDeadLinks(Feature& referrer) {
  if (!referrer.hasDeadLinks) withDeadLinks_.push_back(&referrer);
  referrer.hasDeadLinks = true;
}

void Document::IndexSharedReferrers() {
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

void Document::Settle(Feature& feature) {
  if (feature.isBehind) companion_->WriteBack();
  if (feature.hasDeadLinks) DropDeadLinks(feature);
}

void Document::DropDeadLinks(Feature& feature) {
  feature.hasDeadLinks = false;
  Touch(feature);
  if (feature.container != nullptr && feature.container->removed) feature.container = nullptr;
  std::uint32_t kept = 0;
  for (const Attribute& attribute : feature.Attributes()) {
    if (IsDeadLink(attribute.value)) continue;  // the attribute goes with its link
    feature.attributes[kept] = attribute;
    feature.attributes[kept++].value = WithoutDeadLinks(attribute.value);
  }
  feature.attributeCount = kept;
}

Value Document::WithoutDeadLinks(const Value& value) {
  if (value.Kind() != ValueKind::kList) return value;
  std::vector<Value> alive;
  for (const Value& entry : value.Entries()) {
    if (!IsDeadLink(entry)) alive.push_back(WithoutDeadLinks(entry));
  }
  const bool same = std::ranges::equal(alive, value.Entries());
  return same ? value : Value::List(Keep(alive));
}

}  // namespace standalone
