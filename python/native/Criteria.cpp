#include "native/Criteria.h"

#include <algorithm>

namespace python {
namespace {

using hvxupgrade::Value;

bool IsNumber(const Value& value) {
  return value.GetKind() == Value::Kind::kInteger || value.GetKind() == Value::Kind::kReal;
}

// A person who asks for 100 means 100.0 as well.
bool AreSame(const Value& one, const Value& other) {
  const bool areOfAKind = one.GetKind() == other.GetKind();
  if (!areOfAKind && IsNumber(one) && IsNumber(other)) return one.AsNumber() == other.AsNumber();
  if (areOfAKind && one.GetKind() == Value::Kind::kList)
    return std::ranges::equal(one.AsList(), other.AsList(), AreSame);
  return one == other;
}

}  // namespace

void Criteria::AddAttribute(std::string key, Value value) {
  attributes_.emplace_back(std::move(key), std::move(value));
}

bool Criteria::Fits(const hvxupgrade::Feature& feature) const {
  if (lateType && feature.LateType() != *lateType) return false;
  if (name && feature.Name() != *name) return false;
  if (alias && feature.Alias() != *alias) return false;
  if (father && feature.Father() != father->feature) return false;
  return std::ranges::all_of(attributes_, [&feature](const auto& each) {
    const auto held = feature.Get(each.first);
    return held && AreSame(*held, each.second);
  });
}

}  // namespace python
