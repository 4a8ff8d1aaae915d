#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// What a rule says about one feature.
struct Verdict {
  bool conforms = true;
  std::string_view damage = {};  ///< Why no upgrade can bring the feature up to date; empty when one can.
};
inline constexpr Verdict kConforms{};
inline constexpr Verdict kOutdated{false};
inline constexpr Verdict Damaged(std::string_view why) {
  return {false, why};
}
inline constexpr Verdict OutdatedIf(bool outdated) {
  return {!outdated};
}

/// What rules need to know about the document as a whole.
class Survey {
 public:
  explicit Survey(Document& document);

  /// Whether the analysis model has the list in which conditions are registered.
  [[nodiscard]] bool CanRegister() const { return canRegister_; }
  [[nodiscard]] bool IsRegistered(const Feature& feature) const { return registered_.contains(&feature); }
  /// Whether there are analysis cases, all of them of this product.
  [[nodiscard]] bool HasCasesOfThisProductOnly() const { return casesOfThisProductOnly_; }

 private:
  std::unordered_set<const Feature*> registered_;
  bool canRegister_ = false;
  bool casesOfThisProductOnly_ = false;
};

/// One thing that tells old storage from current storage.
struct ConformityRule {
  /// The late types that it concerns, separated by blanks; one that ends in "*" stands for all that begin so.
  std::string_view lateTypes;
  std::string_view identifier;  ///< The upgrade that would have changed the feature.
  std::string_view reason;
  Verdict (*judge)(Feature& feature, const Survey& survey);
};

// The rules, by subject.
std::span<const ConformityRule> ConditionRules();
std::span<const ConformityRule> InteractionRules();
std::span<const ConformityRule> ModelRules();

/// A feature that does not conform to the current model.
struct Finding {
  const Feature* feature;
  const ConformityRule* rule;
  std::string_view damage;  ///< As in `Verdict`.
};

/// All that does not conform, in document order, each feature's findings in the order of the rules.
[[nodiscard]] std::vector<Finding> CheckConformity(Document& document);

}  // namespace standalone
