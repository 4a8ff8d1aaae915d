#include "model/AttributeIndex.h"

#include <algorithm>

namespace standalone {
namespace {

template <class Places>
void NoteAll(std::span<const Attribute> attributes, Places& places) {
  places.reserve(attributes.size());
  for (std::size_t i = 0; i < attributes.size(); ++i)
    places.emplace(attributes[i].key, static_cast<std::uint32_t>(i));
}

}  // namespace

Attribute* AttributeIndex::Find(Feature& feature, NameId key) {
  const auto [entry, isNew] = byFeature_.try_emplace(&feature);
  Places& places = entry->second;
  if (isNew) NoteAll(feature.Attributes(), places);
  const auto found = places.find(key);
  return found == places.end() ? nullptr : &feature.attributes[found->second];
}

void AttributeIndex::NoteAdded(const Feature& feature) {
  const auto known = byFeature_.find(&feature);
  if (known == byFeature_.end()) return;
  const std::uint32_t place = feature.attributeCount - 1;
  known->second.emplace(feature.attributes[place].key, place);
}

const Attribute* AttributeLookUp::Find(NameId key, std::size_t likely) {
  if (likely < attributes_.size() && attributes_[likely].key == key) return &attributes_[likely];
  if (attributes_.size() <= AttributeIndex::kFew) {
    const auto found = std::ranges::find(attributes_, key, &Attribute::key);
    return found == attributes_.end() ? nullptr : &*found;
  }
  if (places_.empty()) NoteAll(attributes_, places_);
  const auto found = places_.find(key);
  return found == places_.end() ? nullptr : &attributes_[found->second];
}

}  // namespace standalone
