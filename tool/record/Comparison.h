#pragma once

#include <map>
#include <string>
#include <vector>

#include "model/Document.h"
#include "upgrade/UpgradeRun.h"

namespace tool {

/// How many features something happened to.
struct Totals {
  std::size_t concerned = 0;  ///< Some identifier of the run concerned their late type.
  std::size_t changed = 0;
  std::size_t created = 0;
  std::size_t removed = 0;
  std::size_t failed = 0;  ///< Some routine failed on them, also where its class ignores that.

  Totals& operator+=(const Totals& other);
};

/// What a run did to a document, told from the document before and after.
struct Comparison {
  std::vector<const standalone::Feature*> changed;  ///< In the order of their first change.
  std::vector<const standalone::Feature*> created;
  std::vector<const standalone::Feature*> removed;
  std::map<std::string, Totals> byType;  ///< By the late type before; by the new one for created features.
  Totals all;
};

/// Compares; the document must have no dead links. A feature that was changed and changed back counts as
/// unchanged, one that was created and removed again is left out.
[[nodiscard]] Comparison Compare(const standalone::Document& document, const standalone::UpgradeRun& run);

}  // namespace tool
