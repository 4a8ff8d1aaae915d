#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "check/Conformity.h"
#include "check/IdSet.h"
#include "model/Document.h"

/// \file
/// What rules are made of; for the sources of the check only.

namespace standalone {

/// A way in which a feature can be damaged. In both texts "{}" stands for the keys.
struct DamageKind {
  std::string_view text;  ///< Such as "{} is missing"; for one key. Empty where the rule's reason tells all.
  std::string_view remedy;      ///< What a person can do; for several keys as well. Empty for nothing.
  std::string_view place = {};  ///< The attribute to correct, where the texts name something else.
};

struct Damage {
  const DamageKind* kind;
  std::string key;  ///< Quoted in the texts.
};

/// Tells damage in a finding: its damage, key and remedy.
void Tell(const std::vector<Damage>& damage, Finding& finding);

/// What a rule says about one feature.
struct Verdict {
  enum class State : std::uint8_t {
    kConforms,
    kOutdated,  ///< The rule's upgrade changes it, if there is no damage.
    kOnce,      ///< The same, but an upgrade that did not do so must not run again.
    kBeyond,    ///< No upgrade changes it.
  };

  State state = State::kConforms;
  std::vector<Damage> damage = {};
  /// Why an upgrade that ran must not run again, if that is another damage.
  const DamageKind* onceItRan = nullptr;
};

inline Verdict Conforms() {
  return {};
}
inline Verdict Outdated() {
  return {Verdict::State::kOutdated};
}
inline Verdict OutdatedIf(bool outdated) {
  return outdated ? Outdated() : Conforms();
}
inline Verdict Damaged(const DamageKind& kind, std::string_view key = {}) {
  return {Verdict::State::kOutdated, {{&kind, std::string(key)}}};
}
inline Verdict Damaged(std::vector<Damage> damage) {
  return {Verdict::State::kOutdated, std::move(damage)};
}
inline Verdict Beyond(const DamageKind& kind, std::string_view key = {}) {
  return {Verdict::State::kBeyond, {{&kind, std::string(key)}}};
}

/// What rules need to know about the document as a whole.
class Survey {
 public:
  explicit Survey(Document& document);

  [[nodiscard]] Document& Of() const { return document_; }
  /// Whether the analysis model has the list in which conditions are registered.
  [[nodiscard]] bool CanRegister() const { return canRegister_; }
  [[nodiscard]] bool HasRegistered() const { return hasRegistered_; }
  [[nodiscard]] bool IsRegistered(const Feature& feature) const { return registered_.Contains(feature.id); }
  /// Whether steps can be given parameters: documents may do without.
  [[nodiscard]] bool CreatesParameters() const { return createsParameters_; }
  /// The analysis cases, in document order.
  [[nodiscard]] const std::vector<Feature*>& Cases() const { return cases_; }
  /// Whether the case, or the step, has a set in which contacts stand.
  [[nodiscard]] bool HasInteractionSet(const Feature& caseOrStep) const;
  /// Whether every case can be given a pair for a connection property, with or without a clearance.
  [[nodiscard]] bool CasesTakeContacts(bool withClearance) const;
  /// Whether there are analysis cases, all of them of this product.
  [[nodiscard]] bool HasCasesOfThisProductOnly() const { return casesOfThisProductOnly_; }

 private:
  [[nodiscard]] bool HasSetInFirstStep(const Feature& analysisCase) const;

  Document& document_;
  IdSet registered_;
  std::vector<Feature*> cases_;
  mutable std::unordered_map<const Feature*, bool> withInteractionSet_;  // as far as was asked
  bool casesTakeContacts_ = true;
  bool casesTakeClearances_ = true;
  bool canRegister_ = false;
  bool hasRegistered_ = false;
  bool createsParameters_ = true;
  bool casesOfThisProductOnly_ = false;
};

/// One thing that tells old storage from current storage, or sound storage from damaged.
struct ConformityRule {
  /// The late types that it concerns, separated by blanks: a late type or a kind. One that ends in "*"
  /// stands for all late types that begin so.
  std::string_view lateTypes;
  std::string_view identifier;  ///< The upgrade that would change the feature; empty for none.
  std::string_view reason;
  Verdict (*judge)(Feature& feature, const Survey& survey);
  /// As in `Finding`. May be null for the feature itself.
  Feature* (*visited)(Feature& feature) = nullptr;
  /// What a person can do when the upgrade ran and changed nothing, though nothing is damaged. May be empty.
  std::string_view remedy = {};
};

/// What of a feature's attributes is read as something else than a person meant, in one state of it: values
/// that cannot be read, codes that stand for nothing, and missing ones for which upgrades take 0.
[[nodiscard]] std::vector<Damage> MisreadIn(const FeatureState& state);
inline constexpr std::string_view kUnreadableReason = "a value cannot be read";

// The rules, by subject.
std::span<const ConformityRule> ConditionRules();
std::span<const ConformityRule> SupportRules();
std::span<const ConformityRule> ContactRules();
std::span<const ConformityRule> ConstraintRules();
std::span<const ConformityRule> StepRules();
std::span<const ConformityRule> PropertyRules();
std::span<const ConformityRule> ElementRules();
std::span<const ConformityRule> JobRules();
std::span<const ConformityRule> ValueRules();
// Of any feature that has an external name; their late types are not looked at.
std::span<const ConformityRule> NameRules();

}  // namespace standalone
