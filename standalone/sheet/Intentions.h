#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "sheet/Comparison.h"
#include "sheet/Connections.h"

/// \file
/// What upgrades are there to change in an analysis; for the sources of the comparison only.

namespace standalone::sheet {

/// A difference that is to be explained, and what an explanation can look at.
struct Change {
  const Sheet& before;
  const Sheet& after;
  Connections& connections;
  const Subject* was;  ///< Null for a subject that is new.
  const Subject* is;   ///< Null for one that is lost.
  std::vector<Fact> lost;
  std::vector<Fact> gained;

  // What an explanation took out of the two; filled by it.
  std::vector<Fact> explainedLost = {};
  std::vector<Fact> explainedGained = {};

  /// Explains everything. Gives true.
  bool All();
  /// Explains each lost fact in whose place those came that `become` gives for it; it gives nullopt for one
  /// that is not concerned. False when nothing is explained.
  bool Replace(const std::function<std::optional<std::vector<Fact>>(const Fact&)>& become);
  /// The only lost and the only gained fact; null where there is none, or more than one.
  [[nodiscard]] const Fact* OnlyLost() const { return lost.size() == 1 ? lost.data() : nullptr; }
  [[nodiscard]] const Fact* OnlyGained() const { return gained.size() == 1 ? gained.data() : nullptr; }
};

/// What one upgrade is there to do to one quantity. It is checked by value: what differs otherwise is not
/// explained by it.
struct Intention {
  std::string_view identifier;
  std::string_view kinds;     ///< The names of kinds, separated by ", "; empty for all.
  std::string_view quantity;  ///< Empty for all of the kinds; "*" for subjects that are lost or new.
  Meaning meaning;
  std::string_view sentence;
  /// Whether it explains something of the change, which it then takes out.
  bool (*explains)(Change& change);

  [[nodiscard]] bool Concerns(const Kind& kind) const;
};

/// The intentions of those upgrades.
[[nodiscard]] std::vector<const Intention*> IntentionsOf(std::span<const std::string> mayHaveRun);

// The tables, by subject.
std::span<const Intention> NameIntentions();
std::span<const Intention> ConditionIntentions();
std::span<const Intention> SupportIntentions();
std::span<const Intention> InteractionIntentions();
std::span<const Intention> PropertyIntentions();
std::span<const Intention> SettingIntentions();
std::span<const Intention> ElementIntentions();

// The quantities of a subject that no reader reads: the comparison makes their facts.
inline constexpr Quantity kNameQuantity{"name"};
inline constexpr Quantity kPlaceQuantity{"place"};

}  // namespace standalone::sheet
