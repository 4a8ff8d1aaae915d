#pragma once

#include <string>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// What two documents differ in. Features are matched by id; their order in the document and among their
/// brothers counts nothing.
struct DocumentDifference {
  struct Change {
    const Feature* before;
    const Feature* after;
  };

  std::vector<std::string> upgradesBefore;  ///< Recorded in the first document only.
  std::vector<std::string> upgradesAfter;   ///< Recorded in the second only.
  std::vector<Change> changed;
  std::vector<const Feature*> created;  ///< Only in the second document, in its order.
  std::vector<const Feature*> removed;  ///< Only in the first document, in its order.

  [[nodiscard]] bool IsEmpty() const {
    return upgradesBefore.empty() && upgradesAfter.empty() && changed.empty() && created.empty() &&
           removed.empty();
  }
};

/// Compares; neither document may have dead links. The result refers to both.
[[nodiscard]] DocumentDifference Compare(const Document& before, const Document& after);

}  // namespace standalone
