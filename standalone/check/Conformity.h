#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// What can become of a finding.
enum class FindingKind : std::uint8_t {
  kPending,         ///< An upgrade that the document has not been through yet would change it.
  kLeftBehind,      ///< Its upgrade ran, as the document records, and could not change it.
  kBeyondUpgrades,  ///< No upgrade changes it, or running its upgrade again would do harm.
  kUnknown,         ///< A late type that no part of the program knows; its features are kept as they are.
};

/// The word for programs: "pending", "leftBehind", "beyondUpgrades", "unknown".
[[nodiscard]] std::string_view NameOf(FindingKind kind);
/// The words for people: "pending", "left behind", "beyond upgrades", "unknown".
[[nodiscard]] std::string_view WordsFor(FindingKind kind);

/// Something in a document that does not conform to the current model, or that nobody knows.
struct Finding {
  Feature* feature;  ///< Of an unknown late type: the first one.
  FindingKind kind;
  /// The upgrade that changes the feature, or would have; empty when there is none. Unless the kind is
  /// `kPending`, the document records it.
  std::string_view identifier;
  std::string_view reason;  ///< What is wrong, in the words of the rule; the same for all that it finds.
  /// What keeps the upgrade from changing it, with the keys; empty when nothing does.
  std::string damage;
  /// The attribute keys, component names or supports that are missing or unreadable, separated by ", "; of an
  /// unknown late type, the known one that was probably meant. May be empty.
  std::string key;
  /// What a person can do before the upgrade, or instead of it, without the full stop; empty for nothing.
  std::string remedy;
  /// The feature that is handed the identifier when it is run (again): a contact for its contact control, a
  /// case for the names beneath it. Null for what a conversion of the whole document changes, and where no
  /// identifier is to be run.
  Feature* visited;
  std::size_t count = 1;  ///< How many features are of the unknown late type; 1 for all other findings.

  /// Reason and damage as one sentence, without the full stop.
  [[nodiscard]] std::string Explanation() const;
  /// What to do, as one sentence; it holds in the state that the document is in, whatever became of older
  /// states of its file. `upgrade` and `retry` are how a document is upgraded, and upgraded with retry.
  [[nodiscard]] std::string NextStep(
      std::string_view upgrade = "upgrade the document",
      std::string_view retry = "upgrade the document again with --retry") const;
  /// Whether nothing but a person helps: all that is not pending, and an unknown late type only when it is
  /// probably a known one misspelt.
  [[nodiscard]] bool NeedsPerson() const;
};

/// Which findings are asked for.
enum class FindingScope : std::uint8_t {
  kAll,
  kOfResult,  ///< Without pending ones, of which there can be as many as features: for who has just upgraded.
};

/// All that does not conform, in document order, each feature's findings in the order of the rules; then the
/// unknown late types, in the order of their first features. Of values that cannot be read, pending ones are
/// given in any scope.
[[nodiscard]] std::vector<Finding> CheckConformity(Document& document,
                                                   FindingScope scope = FindingScope::kAll);

}  // namespace standalone
