#include "hvxupgrade/Feature.h"

#include <fmt/format.h>

#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {
namespace {

standalone::Attribute* FindAttribute(Feature handle, std::string_view key) {
  standalone::Feature& feature = Inside::AliveOf(handle);
  return feature.document->FindAttribute(feature, standalone::NameTable::Find(key));
}

standalone::Feature& ToBeChanged(Feature handle) {
  standalone::Feature& feature = Inside::AliveOf(handle);
  Busy::RequireIdle(*feature.document);
  return feature;
}

}  // namespace

standalone::Feature& Inside::AliveOf(Feature handle) {
  standalone::Feature& feature = Of(handle);
  if (feature.removed)
    RefuseUse(fmt::format("feature {} was removed", feature.id),
              "Ask whether a feature was removed before using it");
  return feature;
}

std::optional<Feature> Inside::MakeIfAlive(standalone::Feature* feature) {
  if (feature == nullptr || feature->removed) return std::nullopt;
  return Make(*feature);
}

FeatureId Feature::Id() const {
  return feature_->id;
}

bool Feature::IsRemoved() const {
  return feature_->removed;
}

std::string_view Feature::LateType() const {
  return Inside::AliveOf(*this).TypeName();
}

std::string_view Feature::Name() const {
  return Inside::AliveOf(*this).name;
}

std::string_view Feature::Alias() const {
  return Inside::AliveOf(*this).externalName;
}

std::string_view Feature::PhysicalType() const {
  return standalone::NameTable::Text(Inside::AliveOf(*this).physicalType);
}

bool Feature::IsUpToDate() const {
  return Inside::AliveOf(*this).upToDate;
}

std::optional<Feature> Feature::Father() const {
  return Inside::MakeIfAlive(Inside::AliveOf(*this).father);
}

std::optional<Feature> Feature::Container() const {
  return Inside::MakeIfAlive(Inside::AliveOf(*this).container);
}

std::vector<Feature> Feature::Sons() const {
  std::vector<Feature> sons;
  for (standalone::Feature* son = Inside::AliveOf(*this).firstSon; son != nullptr; son = son->nextSibling)
    sons.push_back(Inside::Make(*son));
  return sons;
}

std::vector<std::string_view> Feature::Keys() const {
  standalone::Feature& feature = Inside::AliveOf(*this);
  std::vector<std::string_view> keys;
  for (const standalone::Attribute& attribute : feature.document->AttributesOf(feature))
    keys.push_back(standalone::NameTable::Text(attribute.key));
  return keys;
}

bool Feature::Has(std::string_view key) const {
  return FindAttribute(*this, key) != nullptr;
}

std::optional<Value> Feature::Get(std::string_view key) const {
  const standalone::Attribute* const found = FindAttribute(*this, key);
  if (found == nullptr) return std::nullopt;
  return ValueOf(found->value);
}

std::int32_t Feature::Mode(std::string_view key) const {
  const standalone::Attribute* const found = FindAttribute(*this, key);
  return found == nullptr ? 0 : found->mode;
}

void Feature::SetAlias(std::string_view alias) {
  standalone::Feature& feature = ToBeChanged(*this);
  RequireText(alias, "alias");
  feature.document->SetExternalName(feature, alias);
}

void Feature::SetUpToDate(bool upToDate) {
  standalone::Feature& feature = ToBeChanged(*this);
  feature.document->SetUpToDate(feature, upToDate);
}

void Feature::Set(std::string_view key, const Value& value) {
  standalone::Feature& feature = ToBeChanged(*this);
  if (key.empty()) RefuseUse("the key of an attribute is empty");
  RequireText(key, "key of an attribute");
  standalone::Document& document = *feature.document;
  document.SetAttribute(feature, document.NameFor(key), Keep(value, document));
}

bool Feature::Remove(std::string_view key) {
  const standalone::Attribute* const found = FindAttribute(*this, key);
  if (found == nullptr) return false;
  Busy::RequireIdle(*feature_->document);
  feature_->document->RemoveAttribute(*feature_, found->key);
  return true;
}

}  // namespace hvxupgrade
