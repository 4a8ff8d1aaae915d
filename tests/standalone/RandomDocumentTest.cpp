// Documents as archives really hold them: the examples with pieces missing, upgraded and judged.

#include <fmt/ranges.h>

#include <cstdlib>
#include <fstream>
#include <random>

#include "check/Conformity.h"
#include "check/Integrity.h"
#include "support/RandomDocuments.h"
#include "support/References.h"
#include "support/UpgradeFixture.h"
#include "upgrade/LeftBehind.h"

namespace {

using namespace standalone;

#ifdef HVX_SANITIZED
constexpr int kDocuments = 100;  // a run takes several times as long
#else
constexpr int kDocuments = 2400;
#endif

class RandomDocumentTest : public testing_support::UpgradeTest {
 protected:
  // Links into the void. A support that connects nothing may well become several: a group's last member is
  // taken once for each of its members.
  static std::vector<std::string> DeadLinks(Document& document) {
    std::vector<std::string> broken = testing_support::BrokenReferences(document);
    std::erase_if(broken, [](const std::string& fault) { return fault.ends_with("connects nothing"); });
    return broken;
  }

  static std::size_t Findings(Document& document) { return CheckConformity(document).size(); }

  // Split after any identifier, with a file in between.
  void ExpectTheSameInTwoRuns(const std::string& old, Document& atOnce, std::mt19937& random) {
    DocumentPtr document = testing_support::DocumentOf(old);
    const FeatureId made = document->NextId();
    std::vector<std::string> first = manager_.Pending(*document.Get());
    first.resize(random() % first.size());
    document = testing_support::RunAndSave(manager_, document, first);
    static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get())));
    EXPECT_TRUE(testing_support::LinesNumberedAnew(*document.Get(), made) ==
                testing_support::LinesNumberedAnew(atOnce, made))
        << "in two runs, the first up to " << (first.empty() ? "none" : first.back());
  }

  VersionManager manager_{{&testing_support::Library()}};
};

TEST_F(RandomDocumentTest, DamagedDocumentsComeOutSoundAndMoreCurrentThanTheyWere) {
  std::mt19937 random(20240229);
  for (int i = 0; i < kDocuments; ++i) {
    SCOPED_TRACE(fmt::format("document {}", i));
    const std::string old = testing_support::DamagedExample(random);
    const DocumentPtr document = testing_support::DocumentOf(old);
    const std::size_t findingsBefore = Findings(*document.Get());

    static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get())));

    EXPECT_EQ(DeadLinks(*document.Get()), std::vector<std::string>());
    EXPECT_EQ(FindFaults(*document.Get()), std::vector<std::string>());
    EXPECT_LT(Findings(*document.Get()), findingsBefore / 2);
    const std::string current = testing_support::LinesOf(*document.Get());
    const DocumentPtr again = testing_support::DocumentOf(current);
    EXPECT_EQ(testing_support::LinesOf(*again.Get()), current);
    ExpectTheSameInTwoRuns(old, *document.Get(), random);
  }
}

TEST_F(RandomDocumentTest, DocumentsWithOddValuesComeOutReadable) {
  std::mt19937 random(20240301);
  for (int i = 0; i < kDocuments / 4; ++i) {
    SCOPED_TRACE(fmt::format("document {}", i));
    const std::string old = testing_support::OddExample(random);
    const DocumentPtr document = testing_support::DocumentOf(old);
    static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get())));
    EXPECT_EQ(FindFaults(*document.Get()), std::vector<std::string>());
    const std::string current = testing_support::LinesOf(*document.Get());
    const DocumentPtr again = testing_support::DocumentOf(current);
    EXPECT_EQ(testing_support::LinesOf(*again.Get()), current);
    EXPECT_EQ(document->FeatureCount(), again->FeatureCount());
    ExpectTheSameInTwoRuns(old, *document.Get(), random);
  }
}

// What damage does not explain was kept from its turn by another upgrade that failed, and has its turn then.
TEST_F(RandomDocumentTest, WhatIsLeftBehindUndamagedGoesWhenItsUpgradeRunsAgain) {
  std::mt19937 random(20240302);
  for (int i = 0; i < kDocuments / 8; ++i) {
    SCOPED_TRACE(fmt::format("document {}", i));
    const DocumentPtr document = testing_support::DocumentOf(
        i % 2 == 0 ? testing_support::DamagedExample(random) : testing_support::OddExample(random));
    static_cast<void>(manager_.Run(document, manager_.Pending(*document.Get())));
    LeftBehind again(*document.Get());
    static_cast<void>(manager_.RunAgain(document, [&again] { return again.Next(); }, {}));
    for (const Finding& finding : CheckConformity(*document.Get())) {
      if (finding.kind != FindingKind::kLeftBehind || !finding.damage.empty()) continue;
      ADD_FAILURE() << "#" << finding.feature->id << " " << finding.identifier << ": " << finding.reason;
    }
    // What nobody corrected comes to the same once more.
    const std::string once = testing_support::LinesOf(*document.Get());
    LeftBehind still(*document.Get());
    const UpgradeRun run = manager_.RunAgain(document, [&still] { return still.Next(); }, {});
    EXPECT_TRUE(testing_support::LinesOf(*document.Get()) == once)
        << fmt::format("{}", fmt::join(run.identifiers, " "));
  }
}

// What scripts/mutate compares: a sum of each result, and what failed on the way.
TEST_F(RandomDocumentTest, DISABLED_Account) {
  ASSERT_NE(std::getenv("HVX_ACCOUNT"), nullptr);
  std::ofstream account(std::getenv("HVX_ACCOUNT"), std::ios::app);
  std::mt19937 random(20240303);
  for (int i = 0; i < 40; ++i) {
    const DocumentPtr document = testing_support::DocumentOf(
        i % 2 == 0 ? testing_support::DamagedExample(random) : testing_support::OddExample(random));
    const UpgradeRun run = manager_.Run(document, manager_.Pending(*document.Get()));
    account << std::hash<std::string>()(testing_support::LinesOf(*document.Get()));
    for (const UpgradeFailure& failure : run.failures)
      account << ' ' << (failure.work.feature == nullptr ? 0 : failure.work.feature->id) << ':'
              << failure.code;
    account << '\n';
  }
}

}  // namespace
