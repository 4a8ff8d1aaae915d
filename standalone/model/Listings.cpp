#include "model/Listings.h"

#include <algorithm>

namespace standalone {
namespace {

constexpr std::size_t kShort = 8;

}  // namespace

void Listings::NoteRetyped(const LateType& before, const LateType& after) {
  // Some reach further beneath sets than beneath others.
  if (before.IsAnalysisSet() != after.IsAnalysisSet()) queries_.clear();
  NoteChanged(before);
  NoteChanged(after);
}

void Listings::NoteMoved(const Feature& feature) {
  if (queries_.empty()) return;
  for (const Feature* each = &feature; each != nullptr; each = NextBeneath(feature, *each))
    NoteChanged(*each->type);
}

Listings::Query& Listings::QueryOf(std::string_view lateTypeOrKind) {
  const auto known = std::ranges::find(queries_, lateTypeOrKind, &Query::LateTypeOrKind);
  return known == queries_.end() ? queries_.emplace_back(lateTypeOrKind) : *known;
}

bool Listings::Query::LookUp(const LateType& type) {
  if (type.Id() >= includes_.size()) includes_.resize(type.Id() + 1, kUnknown);
  const bool includes = type.MetaClass().IsAKindOf(lateTypeOrKind_);
  includes_[type.Id()] = includes ? kYes : kNo;
  return includes;
}

const std::vector<Feature*>* Listings::Query::Find(const Wanted& wanted) const {
  const Place place(&wanted.top, wanted.reach);
  if (place == longPlace_) return long_.changes == changes_ ? &long_.features : nullptr;
  const auto known = short_.find(place);
  return known != short_.end() && known->second.changes == changes_ ? &known->second.features : nullptr;
}

const std::vector<Feature*>& Listings::Query::Keep(const Wanted& wanted, std::vector<Feature*> features) {
  const Place place(&wanted.top, wanted.reach);
  if (features.size() > kShort) {
    short_.erase(place);
    longPlace_ = place;
    long_ = {std::move(features), changes_};
    return long_.features;
  }
  if (place == longPlace_) longPlace_ = {nullptr, 0};
  Listing& kept = short_[place];
  kept = {std::move(features), changes_};
  return kept.features;
}

}  // namespace standalone
