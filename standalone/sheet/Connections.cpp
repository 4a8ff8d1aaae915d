#include "sheet/Connections.h"

#include "sheet/Explaining.h"

namespace standalone::sheet {

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

bool Connections::AreSameSides(const Fact* left, const Fact* right) {
  return left == nullptr || right == nullptr ? left == right : SayTheSame(*left, *right);
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
    if (IsPair(subject)) pairs_[KeyOf(SidesOf(after_, subject))].push_back(&subject);
    if (subject.kind->chapter != Chapter::kCase) continue;
    const Fact* const solver = after_.Find(subject, "solver");
    if (solver != nullptr && IsText(*solver, "Halvex")) cases_.push_back(&subject);
  }
}

const Subject* Connections::PropertyBetween(const Fact* sides) {
  Look();
  const auto found = properties_.find(KeyOf(sides));
  return found == properties_.end() ? nullptr : found->second;
}

const std::vector<const Subject*>& Connections::PairsBetween(const Fact* sides) {
  Look();
  return pairs_[KeyOf(sides)];
}

const std::vector<const Subject*>& Connections::Cases() {
  Look();
  return cases_;
}

}  // namespace standalone::sheet
