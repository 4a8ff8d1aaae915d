#include <fmt/format.h>
#include <gmock/gmock.h>

#include "support/UpgradeFixture.h"
#include "upgrade/VersionManager.h"

namespace {

using namespace standalone;
using testing::ElementsAre;
using testing::IsEmpty;

// Runs on extensions whose routines A, B, C add an attribute of that name (tests/plugin/Probe.h).
class VersionManagerTest : public testing_support::UpgradeTest {
 protected:
  UpgradeRun Run(const std::vector<std::string>& identifiers) {
    return manager_.Run(DocumentPtr(&Doc()), identifiers);
  }
  // The same while `onCall` follows the routines: told of the letter and the feature.
  UpgradeRun RunUnder(const std::vector<std::string>& identifiers, const char* failing,
                      std::function<void(const std::string&, FeatureId)> onCall = {}) {
    CheckpointPlan plan = testing_support::Failing("VLMISpecAttrAccess::AddAttribute", failing, -77);
    if (onCall)
      plan.onCall = [onCall](const HostCall& call, const Feature*) { onCall(call.detail, call.feature); };
    const CheckpointScope scope(plan);
    return Run(identifiers);
  }
  // The routines that ran, with their features: "A1 B1 A2".
  static std::string Ran() {
    std::string routines;
    for (const HostCall& call : Checkpoint::Recorded()) {
      routines += fmt::format("{}{}{}", routines.empty() ? "" : " ", call.detail, call.feature);
    }
    return routines;
  }
  static std::string Outcomes(const UpgradeRun& run) {
    std::string outcomes;
    for (const FeatureOutcome& outcome : run.features)
      outcomes += fmt::format("{}:{} ", outcome.feature->id, outcome.code);
    for (const DocumentOutcome& outcome : run.documentUpgrades) {
      outcomes += fmt::format("{}:{} ", outcome.identifier, outcome.code);
    }
    return outcomes;
  }

  UpgradeLibrary plugIn_{testing_support::TestLibraryFile()};
  VersionManager manager_{{&plugIn_.Description()}};
};

TEST_F(VersionManagerTest, PendingAreTheKnownOnesThatTheDocumentHasNotBeenThrough) {
  Given(R"({"id":1,"type":"X"})");
  EXPECT_THAT(manager_.Pending(Doc()),
              ElementsAre("UpgradeTestScratchFolder", "ProbeOfNobody", "ProbeA", "ProbeB", "ProbeC",
                          "ProbeAssertion", "ProbeNullHandle", "ProbeDocument"));
  for (const char* const done : {"ProbeC", "UpgradeOfLater", "ProbeOfNobody"}) Doc().RecordUpgrade(done);
  EXPECT_THAT(manager_.Pending(Doc()), ElementsAre("UpgradeTestScratchFolder", "ProbeA", "ProbeB",
                                                   "ProbeAssertion", "ProbeNullHandle", "ProbeDocument"));
  EXPECT_THAT(manager_.Unknown(Doc()), ElementsAre("UpgradeOfLater"));
  EXPECT_EQ(manager_.Find("UpgradeOfLater"), nullptr);

  const VersionManager real({&testing_support::Library()});
  for (const VLMUnicodeString& identifier : testing_support::Library().identifiers) {
    Doc().RecordUpgrade(identifier.View());
  }
  EXPECT_THAT(real.Pending(Doc()), IsEmpty());
}

TEST_F(VersionManagerTest, FeaturesAreVisitedInDocumentOrderWithWhatConcernsThem) {
  Given(R"({"id":5,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeFirstLT"}
           {"id":3,"type":"ProbeGivesUpLT"}
           {"id":4,"type":"ProbeLastLT"})");
  const UpgradeRun run = RunUnder({"ProbeOfNobody", "ProbeA", "ProbeC", "ProbeDocument"}, "C");
  EXPECT_EQ(Ran(), "A5 C5 A2 A4");
  EXPECT_EQ(Outcomes(run), "5:-77 2:0 4:0 ProbeDocument:4 ");  // the third had nothing to do
  EXPECT_EQ(run.FailureCount(), 1U);
  EXPECT_THAT(run.identifiers, ElementsAre("ProbeOfNobody", "ProbeA", "ProbeC", "ProbeDocument"));
  EXPECT_THAT(Doc().Upgrades(), ElementsAre("ProbeOfNobody", "ProbeA", "ProbeC", "ProbeDocument"));
  // A class that would fail without a run is not asked when nothing concerns it.
  EXPECT_EQ(Outcomes(RunUnder({"ProbeC"}, "none")), "5:0 ");
  EXPECT_EQ(Session::Current().CurrentDocument().Get(), nullptr);
}

TEST_F(VersionManagerTest, WhatIsRemovedOrMadeOnTheWayIsNotVisited) {
  Given(R"({"id":1,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeStopLT"}
           {"id":3,"type":"ProbeStopLT","father":{"ref":2}}
           {"id":4,"type":"ProbeStopLT"})");
  const UpgradeRun run =
      RunUnder({"ProbeA", "ProbeDocument"}, "none", [this](const std::string&, FeatureId id) {
        if (id == 1) {
          Doc().Remove(At(2));
          Doc().Create(LateType::Of("ProbeStopLT"), "", nullptr, nullptr);
        }
        if (id == 4) Doc().Remove(At(4));  // itself
      });
  EXPECT_EQ(Ran(), "A1 A4");
  EXPECT_EQ(Outcomes(run), "1:0 4:0 ProbeDocument:2 ");  // the document as it is by then
}

TEST_F(VersionManagerTest, AFeatureOfAnotherTypeOnTheWayIsVisitedOnceMore) {
  const auto runChanging = [this](const char* first, const char* second, const char* failing) {
    Given(R"({"id":1,"type":"ProbeStopLT"}
             {"id":2,"type":"ProbeStopTooLT"})");
    const UpgradeRun run =
        RunUnder({"ProbeA", "ProbeC"}, failing, [=, this](const std::string& letter, FeatureId id) {
          if (letter == "C" && id == 1)
            Doc().SetType(At(1), LateType::Of(At(1).TypeName() == first ? second : first));
        });
    return Ran() + " = " + Outcomes(run);
  };
  EXPECT_EQ(runChanging("ProbeStopLT", "ProbeLastLT", "none"), "A1 C1 A1 A2 C2 = 1:0 2:0 ");
  EXPECT_EQ(runChanging("ProbeStopLT", "X", "none"), "A1 C1 A2 C2 = 1:0 2:0 ");
  EXPECT_EQ(runChanging("ProbeStopLT", "ProbeStopTooLT", "none"),
            "A1 C1 A1 C1 A2 C2 = 1:0 2:0 ");  // not for ever
  EXPECT_EQ(runChanging("ProbeStopLT", "ProbeLastLT", "C"),
            "A1 C1 A2 C2 = 1:-77 2:-77 ");  // what failed is not
}

TEST_F(VersionManagerTest, AFeatureThatWithholdsItsExtensionHasFailed) {
  Given(R"({"id":1,"type":"ProbeStopLT"})");
  const CheckpointScope scope(testing_support::Withholding("HVXIUpgrade"));
  EXPECT_EQ(Outcomes(Run({"ProbeA"})), fmt::format("1:{} ", E_NOINTERFACE));
}

TEST_F(VersionManagerTest, ABrokenAssumptionAbortsTheRunAndSaysWhere) {
  for (const auto& [identifier, message] :
       {std::pair{"ProbeAssertion",
                  "feature 2 (ProbeGivesUpLT): AssertionFailed:NULL_var != spProbe in tests/plugin/Probe"},
        std::pair{"ProbeNullHandle", "feature 2 (ProbeGivesUpLT): call through a null handle"}}) {
    Given(R"({"id":1,"type":"ProbeStopLT"}
             {"id":2,"type":"ProbeGivesUpLT"})");
    try {
      Run({"ProbeA", identifier});
      FAIL() << identifier;
    } catch (const UpgradeAborted& aborted) {
      EXPECT_STREQ(aborted.what(), message);
    }
    EXPECT_THAT(Doc().Upgrades(), IsEmpty());
    EXPECT_EQ(Session::Current().CurrentDocument().Get(), nullptr);
  }
}

TEST_F(VersionManagerTest, ProgressGoesFromNothingToAll) {
  std::string lines;
  for (int id = 1; id <= 5000; ++id) lines += fmt::format("{{\"id\":{},\"type\":\"X\"}}\n", id);
  Given(lines);
  std::vector<std::pair<std::size_t, std::size_t>> told;
  manager_.Run(DocumentPtr(&Doc()), {"ProbeA"},
               [&told](std::size_t done, std::size_t total) { told.emplace_back(done, total); });
  ASSERT_GE(told.size(), 2U);
  EXPECT_TRUE(std::ranges::is_sorted(told));
  EXPECT_EQ(told.front(), std::pair(std::size_t{0}, std::size_t{5000}));
  EXPECT_EQ(told.back(), std::pair(std::size_t{5000}, std::size_t{5000}));
}

}  // namespace
