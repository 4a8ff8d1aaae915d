#pragma once

#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "sheet/Sheet.h"

namespace standalone::sheet {

/// What two sheets say is connected, by the two sides: the properties of connections in the old one, and the
/// contact pairs in the new one that upgrades put in their place; and the steps that pairs can stand in.
class Connections {
 public:
  Connections(const Sheet& before, const Sheet& after) : before_(before), after_(after) {}

  /// What a property or a pair connects; null for nothing.
  [[nodiscard]] static const Fact* SidesOf(const Sheet& sheet, const Subject& subject);
  using Sides = std::pair<FeatureId, FeatureId>;
  /// The sides by id, with what they are meant in; both 0 for nothing.
  [[nodiscard]] static Sides KeyOf(const Fact* sides);

  /// The first property between those sides, as it was; null without one.
  [[nodiscard]] const Subject* PropertyBetween(const Fact* sides);
  /// The pairs between those sides, as they are.
  [[nodiscard]] const std::vector<const Subject*>& PairsBetween(const Fact* sides);
  /// Those of them that stand in the pair's case, itself included.
  [[nodiscard]] const std::vector<const Subject*>& PairsBeside(const Subject& pair);
  /// Whether one of those stands in every case of this product, as they are.
  [[nodiscard]] bool HasPairInEveryCase(const Fact* sides);

  /// Whether the pair, or one beside it as they stand now, was a contact of the old kind.
  [[nodiscard]] bool IsWithOldContact(const Subject& pair);

  /// Steps of a case, as they are; null where there is none, or where it holds no interactions.
  struct Steps {
    const Subject* first = nullptr;
    /// The first one behind it in which a contact can begin, which no perturbation step is.
    const Subject* next = nullptr;
  };
  [[nodiscard]] Steps StepsFor(const Feature* analysisCase);

 private:
  void LookAtPair(const Subject& pair);
  void LookAtStep(const Subject& step);
  void Look();

  const Sheet& before_;
  const Sheet& after_;
  bool hasLooked_ = false;
  std::map<Sides, const Subject*> properties_;
  std::map<Sides, std::vector<const Subject*>> pairs_;
  std::map<std::pair<Sides, FeatureId>, std::vector<const Subject*>> pairsOfCase_;
  std::map<Sides, bool> inEveryCase_;  // of those that were asked for
  std::vector<const Subject*> cases_;
  std::unordered_set<FeatureId> withOldContact_;
  std::unordered_map<FeatureId, Steps> steps_;
};

[[nodiscard]] bool IsOldContact(const Subject& subject);
[[nodiscard]] bool IsPair(const Subject& subject);
[[nodiscard]] bool IsContactProperty(const Subject& subject);

}  // namespace standalone::sheet
