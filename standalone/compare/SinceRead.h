#pragma once

#include <vector>

#include "model/Document.h"

namespace standalone {

/// What became of a document's features since it was read, told by its journal: in the order of their first
/// changes.
struct SinceRead {
  std::vector<const Feature*> changed;
  std::vector<const Feature*> created;
  std::vector<const Feature*> removed;

  /// The document must have no dead links. A feature that was changed and changed back counts as unchanged,
  /// one that was created and removed again is left out.
  [[nodiscard]] static SinceRead Of(const Document& document);
};

}  // namespace standalone
