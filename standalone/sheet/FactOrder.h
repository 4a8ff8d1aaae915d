#pragma once

#include <set>
#include <vector>

#include "sheet/Sheet.h"

namespace standalone::sheet {

/// An order of facts in which those that say the same are equal: below 0, 0 or above 0.
[[nodiscard]] int Order(const Fact& left, const Fact& right);

/// For ordered containers.
struct FactLess {
  [[nodiscard]] bool operator()(const Fact& left, const Fact& right) const { return Order(left, right) < 0; }
};

/// Facts, each as often as it was said, wherever it stood.
using FactBag = std::multiset<Fact, FactLess>;

/// Those of `facts` that are not in `others`, each taken out of it at most once, in their order. What holds
/// nothing is left out.
[[nodiscard]] std::vector<Fact> WithoutThose(std::span<const Fact> facts, std::span<const Fact> others);

}  // namespace standalone::sheet
