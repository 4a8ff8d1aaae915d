#pragma once

#include <string>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// What two documents differ in. Features are matched by id. Their order counts among brothers, such as the
/// steps of a case, and not in the document as a whole, which follows from it.
struct DocumentDifference {
  struct Change {
    const Feature* before;
    const Feature* after;
  };

  /// An upgrade that did not come from the same library, or not from the same version of it, as the documents
  /// tell. Null: from the built-in library, or the document does not tell, or has not been through it.
  struct Source {
    std::string upgrade;
    const UpgradeSource* before;
    const UpgradeSource* after;
  };

  std::vector<std::string> upgradesBefore;  ///< Recorded in the first document only.
  std::vector<std::string> upgradesAfter;   ///< Recorded in the second only.
  std::vector<Source> sources;              ///< Those of the first document first.
  std::vector<Change> changed;
  /// As few as explain the new order of those sons that a father has in both documents; the second's, by
  /// father.
  std::vector<const Feature*> moved;
  std::vector<const Feature*> created;  ///< Only in the second document, in its order.
  std::vector<const Feature*> removed;  ///< Only in the first document, in its order.

  [[nodiscard]] bool IsEmpty() const {
    return upgradesBefore.empty() && upgradesAfter.empty() && sources.empty() && changed.empty() &&
           moved.empty() && created.empty() && removed.empty();
  }
};

/// Compares; neither document may have dead links. The result refers to both.
[[nodiscard]] DocumentDifference Compare(const Document& before, const Document& after);

}  // namespace standalone
