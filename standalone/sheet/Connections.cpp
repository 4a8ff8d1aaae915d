#include "sheet/Connections.h"

#include <algorithm>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

FeatureId IdOf(const Feature* feature) {
  return feature == nullptr ? 0 : feature->id;
}

bool HoldsInteractions(const Feature& step) {
  const Feature* feature = step.firstSon;
  while (feature != nullptr && feature->TypeName() != "HVXInteractionContainerLT") {
    const Feature* next = feature->firstSon;
    while (next == nullptr && feature != &step) {
      next = feature->nextSibling;
      feature = feature->father;
    }
    feature = next;
  }
  return feature != nullptr;
}

std::int64_t PositionOf(const Subject& step) {
  const Fact* const position = Sheet::Find(step, "position in the history");
  return position == nullptr ? 0 : position->value.AsInteger();
}

}  // namespace

bool IsOldContact(const Subject& subject) {
  return subject.lateType == "HVXSurfaceToSurfaceContactLT";
}

bool IsPair(const Subject& subject) {
  return subject.kind->name == "contact pair" || subject.kind->name == "explicit contact pair";
}

bool IsContactProperty(const Subject& subject) {
  return subject.kind->name == "contact property";
}

const Fact* Connections::SidesOf(const Sheet& sheet, const Subject& subject) {
  const Fact* const sides = sheet.Find(subject, IsPair(subject) ? "between" : "support");
  return sides == nullptr || sides->standing == Standing::kNotSet ? nullptr : sides;
}

Connections::Sides Connections::KeyOf(const Fact* sides) {
  if (sides == nullptr) return {0, 0};
  const Feature* const first = TargetOf(*sides);
  return {first == nullptr ? -1 : first->id, sides->context == nullptr ? 0 : sides->context->id};
}

void Connections::Look() {
  if (hasLooked_) return;
  hasLooked_ = true;
  for (const Subject& subject : before_.Subjects()) {
    if (IsContactProperty(subject)) properties_.emplace(KeyOf(SidesOf(before_, subject)), &subject);
  }
  for (const Subject& subject : after_.Subjects()) {
    if (IsPair(subject)) LookAtPair(subject);
    if (subject.kind->chapter == Chapter::kStep && subject.analysisCase != nullptr) LookAtStep(subject);
    if (subject.kind->chapter != Chapter::kCase) continue;
    const Fact* const solver = after_.Find(subject, "solver");
    if (solver != nullptr && IsText(*solver, "Halvex")) cases_.push_back(&subject);
  }
  for (auto& [analysisCase, steps] : steps_) {
    for (const Subject** const step : {&steps.first, &steps.next}) {
      if (*step != nullptr && !HoldsInteractions(*(*step)->feature)) *step = nullptr;
    }
  }
}

void Connections::LookAtStep(const Subject& step) {
  Steps& steps = steps_[step.analysisCase->id];
  const bool isFirst = PositionOf(step) == 1;
  if (!isFirst && step.kind->name == "linear perturbation step") return;
  const Subject*& place = isFirst ? steps.first : steps.next;
  if (place == nullptr || PositionOf(step) < PositionOf(*place)) place = &step;
}

void Connections::LookAtPair(const Subject& pair) {
  const Sides sides = KeyOf(SidesOf(after_, pair));
  pairs_[sides].push_back(&pair);
  pairsOfCase_[{sides, IdOf(pair.analysisCase)}].push_back(&pair);
  const Subject* const was = before_.Find(pair.id);
  if (was != nullptr && IsOldContact(*was) && pair.father != nullptr) withOldContact_.insert(pair.father->id);
}

bool Connections::IsWithOldContact(const Subject& pair) {
  Look();
  return pair.father != nullptr && withOldContact_.contains(pair.father->id);
}

Connections::Steps Connections::StepsFor(const Feature* analysisCase) {
  Look();
  const auto found = analysisCase == nullptr ? steps_.end() : steps_.find(analysisCase->id);
  return found == steps_.end() ? Steps() : found->second;
}

const Subject* Connections::PropertyBetween(const Fact* sides) {
  Look();
  const auto found = properties_.find(KeyOf(sides));
  return found == properties_.end() ? nullptr : found->second;
}

const std::vector<const Subject*>& Connections::PairsBeside(const Subject& pair) {
  Look();
  return pairsOfCase_[{KeyOf(SidesOf(after_, pair)), IdOf(pair.analysisCase)}];
}

const std::vector<const Subject*>& Connections::PairsBetween(const Fact* sides) {
  Look();
  return pairs_[KeyOf(sides)];
}

bool Connections::HasPairInEveryCase(const Fact* sides) {
  const auto [place, isNew] = inEveryCase_.try_emplace(KeyOf(sides));
  if (!isNew) return place->second;
  std::unordered_set<FeatureId> withPair;
  for (const Subject* const pair : PairsBetween(sides)) {
    if (pair->analysisCase != nullptr) withPair.insert(pair->analysisCase->id);
  }
  place->second = std::ranges::all_of(
      cases_, [&](const Subject* each) { return withPair.contains(each->analysisCase->id); });
  return place->second;
}

}  // namespace standalone::sheet
