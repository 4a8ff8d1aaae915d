#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "hvxupgrade/Document.h"

namespace hvxupgrade {

/// Something in a document that does not conform to the current data model, or that nobody knows.
struct Finding {
  /// What can become of it.
  enum class Kind {
    kPending,         ///< An upgrade that the document has not been through yet would change it.
    kLeftBehind,      ///< Its upgrade ran, as the document records, and could not change it.
    kBeyondUpgrades,  ///< No upgrade changes it, or running its upgrade again would do harm.
    kUnknown,         ///< A late type that no part of the program knows; its features are kept as they are.
  };

  FeatureId feature = 0;  ///< Of an unknown late type: the first one.
  std::string lateType;
  Kind kind = Kind::kPending;
  std::string identifier;   ///< The upgrade that changes the feature, or would have; empty for none.
  std::string reason;       ///< What is wrong; the same for all that one rule finds.
  std::string damage;       ///< What keeps the upgrade from changing it, with the keys; may be empty.
  std::string key;          ///< The attributes, components or supports concerned, by ", "; may be empty.
  std::string remedy;       ///< What a person can do instead of the upgrade; may be empty.
  std::string explanation;  ///< Reason and damage as one sentence, without the full stop.
  std::string nextStep;     ///< What to do, as one sentence.
  bool needsPerson = false;
  std::size_t count = 1;  ///< How many features are of the unknown late type; 1 for all others.
};

/// The word that JSON output has for it: "pending", "leftBehind", "beyondUpgrades", "unknown".
[[nodiscard]] HVXUPGRADE_API std::string_view NameOf(Finding::Kind kind);

/// All that does not conform, in document order; then the late types that nobody knows. An upgrader need
/// not exist; where one is loaded, the late types that its libraries extend are known. The rules are
/// about upgrades of the built-in library: what others would still do is not found, and
/// `Upgrader::Pending` tells of it.
[[nodiscard]] HVXUPGRADE_API std::vector<Finding> Check(Document& document);

}  // namespace hvxupgrade
