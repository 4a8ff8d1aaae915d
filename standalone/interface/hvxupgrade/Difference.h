#pragma once

#include <string>
#include <vector>

#include "hvxupgrade/Document.h"

namespace hvxupgrade {

/// What two states of a document differ in. Features are matched by id.
struct HVXUPGRADE_API Difference {
  /// A field in which two states of a feature differ.
  struct Field {
    std::string field;   ///< The document file's word for it: "type", "alias", "attributes", "modes", ...
    std::string key;     ///< The attribute's name, for "attributes" and "modes"; else empty.
    std::string before;  ///< The JSON text of the value; empty when the state had none.
    std::string after;
  };
  struct ChangedFeature {
    FeatureId id = 0;
    std::string lateType;  ///< Of the second state; of the first, for a removed feature.
    std::vector<Field> fields;
  };
  /// An upgrade that both states record, but not of the same library, or not of the same version of it.
  struct OtherSource {
    std::string identifier;
    std::string libraryBefore;  ///< Empty where the state does not say, as of the built-in library.
    std::string versionBefore;  ///< Empty likewise.
    std::string libraryAfter;
    std::string versionAfter;
  };

  std::vector<std::string> upgradesBefore;  ///< Recorded in the first only.
  std::vector<std::string> upgradesAfter;   ///< Recorded in the second only.
  std::vector<OtherSource> otherSources;    ///< In the order of the first.
  std::vector<ChangedFeature> changed;
  std::vector<ChangedFeature> created;  ///< Only in the second, in its order.
  std::vector<ChangedFeature> removed;  ///< Only in the first, in its order.
  std::vector<FeatureId> moved;         ///< As few as explain the new order of sons.

  [[nodiscard]] bool IsEmpty() const;
};

/// Compares two documents, which both stay as they are for whoever looks; none of them may be worked on by
/// another thread meanwhile.
[[nodiscard]] HVXUPGRADE_API Difference Compare(Document& before, Document& after);

/// What became of a document since it was read, or made: its features in the order of their first changes.
/// Upgrades that were recorded since are in `upgradesAfter`; of moved features nothing is told.
[[nodiscard]] HVXUPGRADE_API Difference ChangesSinceRead(Document& document);

}  // namespace hvxupgrade
