#pragma once

#include <map>
#include <string>
#include <vector>

#include "compare/SinceRead.h"
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
struct Comparison : standalone::SinceRead {
  std::map<std::string, Totals> byType;  ///< By the late type before; by the new one for created features.
  Totals all;
};

/// Compares; the document must have no dead links.
[[nodiscard]] Comparison Compare(const standalone::Document& document, const standalone::UpgradeRun& run);

}  // namespace tool
