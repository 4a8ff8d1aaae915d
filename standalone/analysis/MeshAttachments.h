#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "adapters/Attributes.h"

namespace standalone {

/// Which mesh parts are attached at which point of which product, as a connection mesher lists them: three
/// lists side by side, one row for each attachment. Asking for the points one after the other costs no more
/// than one walk over the rows.
class MeshAttachments {
 public:
  /// The mesh parts of the rows with that point and product, in order. A row that lacks one of the three
  /// tells nothing.
  [[nodiscard]] std::vector<Feature*> At(Feature& mesher, const Feature* point, const Feature* product);

 private:
  void Read(Feature& mesher);

  const Feature* mesher_ = nullptr;  // whose rows were read last, ...
  std::uint64_t changes_ = 0;        // ... and at which state of its document
  std::map<std::pair<const Feature*, const Feature*>, std::vector<Feature*>> rows_;
};

}  // namespace standalone
