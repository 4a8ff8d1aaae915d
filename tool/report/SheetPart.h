#pragma once

#include <string>
#include <vector>

#include "sheet/Comparison.h"

namespace tool {

/// Which part of a sheet is told: what belongs to these cases and stands in these steps, by id. Where there
/// are none, all does.
struct SheetPart {
  std::vector<standalone::FeatureId> cases;
  std::vector<standalone::FeatureId> steps;

  [[nodiscard]] bool IsAll() const { return cases.empty() && steps.empty(); }
  [[nodiscard]] bool Holds(const standalone::sheet::Subject& subject) const;
  /// Before or after.
  [[nodiscard]] bool Holds(const standalone::sheet::Difference& difference) const {
    return (difference.before != nullptr && Holds(*difference.before)) ||
           (difference.after != nullptr && Holds(*difference.after));
  }
};

/// How many of the differences are of that part and that meaning.
[[nodiscard]] std::size_t CountOf(const standalone::sheet::SheetComparison& comparison, const SheetPart& part,
                                  standalone::sheet::Meaning meaning);

/// The names of two documents that are compared.
struct ComparedFiles {
  std::string before;
  std::string after;
};

}  // namespace tool
