#include "model/Document.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <new>
#include <utility>

namespace standalone {
namespace {

// The room that a list of `size` entries has. A function of the size alone, so that it need not be stored.
std::size_t RoomFor(std::size_t size) {
  return size == 0 ? 0 : std::bit_ceil(size);
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

void Document::LoadCatalog(std::shared_ptr<const FeatureCatalog> catalog) {
  if (std::ranges::find(catalogs_, catalog) == catalogs_.end()) catalogs_.push_back(std::move(catalog));
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
  if (feature.hasDeadLinks || feature.isBehind || openFeature_ == &feature) Settle(feature, key);
  if (feature.attributeCount > AttributeIndex::kFew) return attributeIndex_.Find(feature, key);
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
  if (feature.hasDeadLinks || feature.isBehind || openFeature_ == &feature) Settle(feature);
  return feature.Attributes();
}

std::size_t Document::CountBeneath(const Feature& feature) {
  std::size_t count = 0;
  for (const Feature* each = NextBeneath(feature, feature); each != nullptr;
       each = NextBeneath(feature, *each))
    ++count;
  return count;
}

Feature* Document::Create(const LateType& type, std::string_view name, Feature* father, Feature* container) {
  if (father != nullptr && father->removed) return nullptr;
  if (createdCount_ >= mostCreated_) throw TooManyFeatures();
  ++createdCount_;
  ++changeCount_;
  Feature& feature = AppendRead(NextId(), type);
  feature.name = Keep(name);
  feature.created = true;
  if (container != nullptr && !container->removed) {
    feature.container = container;
    NoteLink(feature, *container);
  }
  if (father != nullptr) LinkLastSon(feature, *father);
  touched_.push_back(&feature);
  changes_.Note(feature, ChangedPart::kCreated);
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
    if (each == openFeature_) CloseList();
    if (each->isBehind) companion_->WriteBack();
    Touch(*each, ChangedPart::kRemoved);
    each->removed = true;
    sets_.NoteDisturbed(*each);
    listings_.NoteChanged(*each->type);
    numberedNames_.Forget(each->externalName);
    MarkReferrers(*each);
    Unlink(*each);
  }
  UnlinkSon(feature);
}

void Document::SetType(Feature& feature, const LateType& type) {
  if (feature.type == &type) return;
  names_.Hold(type);
  Touch(feature, ChangedPart::kType);
  sets_.NoteDisturbed(feature);
  listings_.NoteRetyped(*feature.type, type);
  feature.type = &type;
  sets_.NoteDisturbed(feature);
  rearranged_.push_back(&feature);
}

void Document::SetExternalName(Feature& feature, std::string_view name) {
  if (feature.externalName == name) return;
  Touch(feature, ChangedPart::kAlias);
  numberedNames_.Forget(feature.externalName);
  feature.externalName = Keep(name);
  numberedNames_.Note(feature.externalName);
}

void Document::SetPhysicalType(Feature& feature, std::string_view physicalType) {
  const NameId name = NameFor(physicalType);
  if (feature.physicalType == name) return;
  Touch(feature, ChangedPart::kPhysicalType);
  feature.physicalType = name;
}

void Document::SetUpToDate(Feature& feature, bool upToDate) {
  if (feature.upToDate == upToDate) return;
  Touch(feature, ChangedPart::kUpToDate);
  feature.upToDate = upToDate;
}

void Document::SetAttribute(Feature& feature, NameId key, const Value& value) {
  Attribute* attribute = FindAttribute(feature, key);
  if (attribute != nullptr && attribute->value == value) return;
  Touch(feature, ChangedPart::kAttribute, key);
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
  Touch(feature, ChangedPart::kAttribute, key);
  FindAttribute(feature, key)->mode = mode;
}

void Document::RemoveAttribute(Feature& feature, NameId key) {
  if (FindAttribute(feature, key) == nullptr) return;
  Touch(feature, ChangedPart::kAttribute, key);
  Attribute* const gone = FindAttribute(feature, key);
  std::move(gone + 1, feature.attributes + feature.attributeCount, gone);
  --feature.attributeCount;
  attributeIndex_.Forget(feature);
}

void Document::AppendToList(Feature& feature, NameId key, const Value& entry) {
  Touch(feature, ChangedPart::kAttribute, key);
  if (OpenListOf(feature, key) != nullptr) {
    openList_->Append(entry);
    NoteLinks(feature, entry);
    return;
  }
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
  names_.Hold(type);
  auto* const feature = new (featureArena_.allocate(sizeof(Feature), alignof(Feature))) Feature;
  feature->id = id;
  feature->document = this;
  feature->type = &type;
  idsAreDense_ = idsAreDense_ && id == highestId_ + 1;
  idsAscend_ = idsAscend_ && id > highestId_;
  if (type.IsAnalysisModel() && AnalysisModel() == nullptr) analysisModel_ = feature;
  sets_.NoteLast(*feature);
  listings_.NoteChanged(type);
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

void Document::Touch(Feature& feature, ChangedPart part, NameId key) {
  ++changeCount_;
  if (feature.created) return;
  changes_.Note(feature, part, key);
  if (feature.journalEntry == 0) {
    feature.journalEntry = static_cast<std::uint32_t>(before_.size());
    before_.emplace_back(feature);
    touched_.push_back(&feature);
  }
  // Until an attribute is changed, and of most features none is, both states share the array. The old one
  // keeps it then, and the feature goes on with a copy.
  const FeatureState& before = before_[feature.journalEntry];
  if (part != ChangedPart::kAttribute || feature.attributes != before.attributes ||
      before.attributeCount == 0)
    return;
  const std::uint32_t room = feature.attributeCount + 2;
  auto* const copy = static_cast<Attribute*>(arena_.allocate(room * sizeof(Attribute), alignof(Attribute)));
  std::uninitialized_copy_n(before.attributes, before.attributeCount, copy);
  feature.HoldAttributes(copy, before.attributeCount, room);
}

Attribute& Document::AddAttribute(Feature& feature, NameId key) {
  names_.Hold(key);
  if (feature.attributeCount == feature.attributeCapacity) {
    ReserveAttributes(feature, std::max<std::uint32_t>(4, feature.attributeCapacity * 2));
  }
  auto* const added = new (feature.attributes + feature.attributeCount) Attribute;
  ++feature.attributeCount;
  added->key = key;
  if (feature.attributeCount > AttributeIndex::kFew) attributeIndex_.NoteAdded(feature);
  return *added;
}

}  // namespace standalone
