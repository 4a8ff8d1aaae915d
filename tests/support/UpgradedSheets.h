#pragma once

#include <string>
#include <vector>

#include "sheet/Comparison.h"
#include "support/UpgradeFixture.h"

namespace testing_support {

/// "pressure Pressure.1: pressure 3000000 -> not set".
std::string TextOf(const standalone::sheet::Difference& difference);
/// Those that no upgrade accounts for.
std::vector<std::string> Unaccounted(const standalone::sheet::SheetComparison& comparison);

/// What differs, with the sheets that it refers to.
struct Compared {
  standalone::sheet::Sheet before;
  standalone::sheet::Sheet after;
  standalone::sheet::SheetComparison comparison;
};
std::vector<std::string> Unaccounted(const Compared& compared);

/// A document before and after its upgrade.
struct Upgraded {
  standalone::DocumentPtr old;
  standalone::DocumentPtr current;
  standalone::UpgradeRun run;

  [[nodiscard]] Compared Compare() const;
  [[nodiscard]] standalone::sheet::SheetComparison Compare(const standalone::sheet::Sheet& before,
                                                           const standalone::sheet::Sheet& after) const {
    return standalone::sheet::Compare(before, after, run.identifiers);
  }
};

/// Upgrades documents, to compare what they say.
class UpgradedSheetTest : public UpgradeTest {
 protected:
  /// The feature lines of a document of the project.
  static std::string Read(const std::string& file);
  /// By so many identifiers, the oldest first, and those that must come along.
  Upgraded Upgrade(const std::string& lines, std::size_t identifiers = 1000);

 private:
  standalone::VersionManager manager_{{&Library()}};
};

}  // namespace testing_support
