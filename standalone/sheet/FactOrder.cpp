#include "sheet/FactOrder.h"

#include <algorithm>
#include <string_view>

namespace standalone::sheet {
namespace {

template <class T>
int OrderOf(const T& left, const T& right) {
  return left < right ? -1 : right < left ? 1 : 0;
}

// Links of two documents are compared by id.
int Order(const Feature* left, const Feature* right) {
  return OrderOf(left == nullptr ? 0 : left->id, right == nullptr ? 0 : right->id);
}

int Order(const Value& left, const Value& right) {
  if (left.Kind() != right.Kind()) return OrderOf(left.Kind(), right.Kind());
  switch (left.Kind()) {
    case ValueKind::kString:
      return OrderOf(left.AsString(), right.AsString());
    case ValueKind::kInteger:
      return OrderOf(left.AsInteger(), right.AsInteger());
    case ValueKind::kReal:
      return OrderOf(left.AsReal(), right.AsReal());
    case ValueKind::kBoolean:
      return OrderOf(left.AsBoolean(), right.AsBoolean());
    case ValueKind::kLink:
      return Order(left.Target(), right.Target());
    case ValueKind::kList:
      break;
  }
  const auto entries = left.Entries();
  const auto others = right.Entries();
  for (std::size_t i = 0; i < std::min(entries.size(), others.size()); ++i) {
    if (const int order = Order(entries[i], others[i]); order != 0) return order;
  }
  return OrderOf(entries.size(), others.size());
}

// A default says what a stored value says.
Standing AsSaid(Standing standing) {
  return standing == Standing::kDefault ? Standing::kSet : standing;
}

}  // namespace

int Order(const Fact& left, const Fact& right) {
  const Standing standing = AsSaid(left.standing);
  if (const int order = OrderOf(standing, AsSaid(right.standing)); order != 0) return order;
  if (standing == Standing::kNotSet) return 0;
  if (const int order = Order(left.value, right.value); order != 0) return order;
  if (standing == Standing::kUnreadable) return 0;  // which has no unit
  if (left.dimension != right.dimension) return OrderOf(left.dimension, right.dimension);
  return Order(left.context, right.context);
}

std::vector<Fact> WithoutThose(std::span<const Fact> facts, std::span<const Fact> others) {
  FactBag bag(others.begin(), others.end());
  std::vector<Fact> left;
  for (const Fact& fact : facts) {
    if (fact.standing == Standing::kNotSet) continue;
    const auto found = bag.find(fact);
    if (found == bag.end()) {
      left.push_back(fact);
    } else {
      bag.erase(found);
    }
  }
  return left;
}

}  // namespace standalone::sheet
