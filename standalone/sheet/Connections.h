#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "sheet/Sheet.h"

namespace standalone::sheet {

/// What two sheets say is connected, by the two sides: the properties of connections in the old one, and the
/// contact pairs in the new one that upgrades put in their place.
class Connections {
 public:
  Connections(const Sheet& before, const Sheet& after) : before_(before), after_(after) {}

  /// What a property or a pair connects; null for nothing.
  [[nodiscard]] static const Fact* SidesOf(const Sheet& sheet, const Subject& subject);
  [[nodiscard]] static bool AreSameSides(const Fact* left, const Fact* right);

  /// The first property between those sides, as it was; null without one.
  [[nodiscard]] const Subject* PropertyBetween(const Fact* sides);
  /// The pairs between those sides, as they are.
  [[nodiscard]] const std::vector<const Subject*>& PairsBetween(const Fact* sides);
  /// The cases of this product, as they are.
  [[nodiscard]] const std::vector<const Subject*>& Cases();

 private:
  using Sides = std::pair<FeatureId, FeatureId>;

  static Sides KeyOf(const Fact* sides);
  void Look();

  const Sheet& before_;
  const Sheet& after_;
  bool hasLooked_ = false;
  std::map<Sides, const Subject*> properties_;
  std::map<Sides, std::vector<const Subject*>> pairs_;
  std::vector<const Subject*> cases_;
};

[[nodiscard]] bool IsPair(const Subject& subject);
[[nodiscard]] bool IsContactProperty(const Subject& subject);

}  // namespace standalone::sheet
