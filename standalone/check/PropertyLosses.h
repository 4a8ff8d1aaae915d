#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "check/Rule.h"

namespace standalone {

/// What contact connection properties prescribed that no contact pair holds, once upgrades have replaced
/// them.
class PropertyLosses {
 public:
  explicit PropertyLosses(Document& document) : document_(document) {}

  /// `before` is the state in which the document was read. Empty for other features, and for properties that
  /// are still there.
  std::vector<Damage> Of(const Feature& feature, const FeatureState& before);

 private:
  struct Fit {
    std::int64_t type = 0;
    std::int64_t definition = 0;
    double value = 0.0;
    friend bool operator==(const Fit&, const Fit&) = default;
  };
  // What a pair, or a property, connects.
  using Sides = std::pair<const Feature*, const Feature*>;

  static Fit FitIn(const FeatureState& fit);
  [[nodiscard]] Sides SidesOf(const FeatureState& property) const;
  bool IsHeld(const Sides& sides, const Fit& fit);
  void ListFitsOfPairs();

  Document& document_;
  std::optional<std::multimap<Sides, Fit>> fits_;  // of the pairs, once they were asked for
};

}  // namespace standalone
