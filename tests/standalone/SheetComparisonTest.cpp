// Whether an upgraded document still says the same.

#include <fmt/format.h>

#include <random>
#include <set>

#include "check/Losses.h"
#include "support/RandomDocuments.h"
#include "support/UpgradedSheets.h"

namespace {

using namespace standalone;
using sheet::Difference;
using sheet::Meaning;
using sheet::Sheet;
using sheet::SheetComparison;
using testing_support::Compared;
using testing_support::Unaccounted;
using testing_support::Upgraded;

#ifdef HVX_SANITIZED
constexpr int kDocuments = 100;
#else
constexpr int kDocuments = 3000;
#endif

class SheetComparisonTest : public testing_support::UpgradedSheetTest {
 protected:
  // The features that something else than the sheet tells a person to look at, with what holds them.
  static std::set<FeatureId> ToldOtherwise(const Upgraded& upgraded) {
    std::set<FeatureId> told;
    std::vector<Finding> findings = CheckConformity(*upgraded.current.Get(), FindingScope::kOfResult);
    std::ranges::move(FindLosses(*upgraded.current.Get()), std::back_inserter(findings));
    for (const Finding& finding : findings) {
      told.insert(finding.feature->id);
      if (finding.feature->father != nullptr) told.insert(finding.feature->father->id);
    }
    for (const UpgradeFailure& failure : upgraded.run.failures) {
      if (failure.work.feature != nullptr) told.insert(failure.work.feature->id);
    }
    return told;
  }
};

TEST_F(SheetComparisonTest, EveryDifferenceOfTheExamplesIsAccountedFor) {
  for (const std::string example : {"bolted_bracket", "heated_pipe"}) {
    const Upgraded upgraded = Upgrade(Read("examples/" + example + ".hvxdoc"));
    const Compared compared = upgraded.Compare();
    const SheetComparison& comparison = compared.comparison;
    EXPECT_EQ(Unaccounted(comparison), std::vector<std::string>()) << example;
    EXPECT_GT(comparison.equal, 700U);
    EXPECT_GT(comparison.Count(Meaning::kSame), 50U);
    EXPECT_GT(comparison.Count(Meaning::kOnPurpose), 50U);
    // The same document differs in nothing.
    const Sheet before = sheet::ReadSheet(*upgraded.old.Get());
    EXPECT_TRUE(upgraded.Compare(before, before).differences.empty());
  }
}

// Each state on the way from the oldest release to the current one says the same.
TEST_F(SheetComparisonTest, EveryDifferenceIsAccountedForWhereverTheUpgradeStops) {
  for (const std::string example : {"bolted_bracket", "heated_pipe"}) {
    const std::string lines = Read("examples/" + example + ".hvxdoc");
    for (std::size_t count = 1; count < 66; ++count) {
      const Upgraded upgraded = Upgrade(lines, count);
      EXPECT_EQ(Unaccounted(upgraded.Compare()), std::vector<std::string>())
          << example << " up to " << upgraded.run.identifiers.back();
    }
  }
}

// An upgrade that did not run explains nothing.
TEST_F(SheetComparisonTest, OnlyUpgradesThatRanAccountForDifferences) {
  Upgraded upgraded = Upgrade(Read("examples/heated_pipe.hvxdoc"));
  std::erase(upgraded.run.identifiers, "UpgradeMatOrientAngleToRadians");
  std::erase(upgraded.run.identifiers, "UpgradeTempMidside");
  const std::vector<std::string> unaccounted = Unaccounted(upgraded.Compare());
  EXPECT_EQ(std::ranges::count_if(
                unaccounted, [](const std::string& text) { return text.find("angle") != std::string::npos; }),
            3);
  EXPECT_EQ(
      std::ranges::count_if(
          unaccounted, [](const std::string& text) { return text.find("midside") != std::string::npos; }),
      7);
}

TEST_F(SheetComparisonTest, DamagedDocumentsAreNamedWhereTheySayLess) {
  EXPECT_EQ(Unaccounted(Upgrade(Read("tests/damaged/heated_pipe.hvxdoc")).Compare()),
            std::vector<std::string>());
  EXPECT_EQ(Unaccounted(Upgrade(Read("tests/damaged/bolted_bracket.hvxdoc")).Compare()),
            (std::vector<std::string>{
                "contact pair Damaged: contact without a connection property: interaction property Dry Steel "
                "-> not set",
                "contact pair Damaged: contact without a connection property: constraint enforcement surface "
                "to surface -> node to surface",
                "contact pair Damaged: contact with a code that stands for nothing: constraint enforcement 7 "
                "-> node to surface",
                "contact property Damaged: clearance that no contact takes over: lost"}));
}

// What the sheets of damaged documents say differently, somebody else tells as well; but for a local element
// assignment whose second assignment was added and did not get the settings of the first, because a key was
// missing that a later upgrade replaces.
TEST_F(SheetComparisonTest, OfDocumentsThatLostFeaturesNothingIsLostUntold) {
  std::mt19937 random(20240304);
  for (int i = 0; i < kDocuments; ++i) {
    const Upgraded upgraded = Upgrade(testing_support::DamagedExample(random));
    const std::set<FeatureId> told = ToldOtherwise(upgraded);
    const Sheet before = sheet::ReadSheet(*upgraded.old.Get());
    const Sheet after = sheet::ReadSheet(*upgraded.current.Get());
    for (const Difference& difference : upgraded.Compare(before, after).differences) {
      if (difference.meaning != Meaning::kUnaccounted || told.contains(difference.About().id)) continue;
      if (difference.before != nullptr && told.contains(difference.before->id)) continue;
      if (difference.About().kind->name == "local element assignment") continue;
      ADD_FAILURE() << "document " << i << ": " << testing_support::TextOf(difference);
    }
  }
}

// With values that nobody expects the sheet may well know more than the rules; it must only hold.
TEST_F(SheetComparisonTest, OddValuesAreReadAndCompared) {
  std::mt19937 random(20240305);
  for (int i = 0; i < kDocuments / 4; ++i) {
    const Upgraded upgraded = Upgrade(testing_support::OddExample(random));
    EXPECT_GT(upgraded.Compare().comparison.equal, 500U) << "document " << i;
  }
}

}  // namespace
