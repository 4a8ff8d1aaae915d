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
  // What failed: "5:-77".
  static std::string Failures(const UpgradeRun& run) {
    std::string failures;
    for (const UpgradeFailure& failure : run.failures) {
      const std::string where = failure.work.feature == nullptr ? failure.work.upgrade->identifier
                                                                : std::to_string(failure.work.feature->id);
      failures += fmt::format("{}{}:{}{}", failures.empty() ? "" : " ", where, failure.code,
                              failure.IsIgnored() ? " ignored" : "");
    }
    return failures;
  }

  UpgradeLibrary plugIn_{testing_support::TestLibraryFile()};
  VersionManager manager_{{&plugIn_.Description()}};
};

TEST_F(VersionManagerTest, PendingAreTheKnownOnesThatTheDocumentHasNotBeenThrough) {
  Given(R"({"id":1,"type":"X"})");
  EXPECT_THAT(manager_.Pending(Doc()),
              ElementsAre("UpgradeTestScratchFolder", "ProbeElsewhere", "ProbeA", "ProbeB", "ProbeC",
                          "ProbeAssertion", "ProbeNullHandle", "ProbeDocument"));
  for (const char* const done : {"ProbeC", "UpgradeOfLater", "ProbeElsewhere"}) Doc().RecordUpgrade(done);
  EXPECT_THAT(manager_.Pending(Doc()), ElementsAre("UpgradeTestScratchFolder", "ProbeA", "ProbeB",
                                                   "ProbeAssertion", "ProbeNullHandle", "ProbeDocument"));
  EXPECT_THAT(manager_.Unknown(Doc()).Libraries().at(0).upgrades, ElementsAre("UpgradeOfLater"));
  EXPECT_EQ(manager_.Find("UpgradeOfLater"), nullptr);

  const VersionManager real({&testing_support::Library()});
  for (const VLMUnicodeString& identifier : testing_support::Library().identifiers) {
    Doc().RecordUpgrade(identifier.View());
  }
  EXPECT_THAT(real.Pending(Doc()), IsEmpty());
}

TEST_F(VersionManagerTest, OneIdentifierAfterTheOtherGoesThroughTheDocument) {
  Given(R"({"id":5,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeFirstLT"}
           {"id":3,"type":"ProbeGivesUpLT"}
           {"id":4,"type":"ProbeLastLT"})");
  const UpgradeRun run = RunUnder({"ProbeDocument", "ProbeElsewhere", "ProbeC", "ProbeA"}, "C");
  EXPECT_EQ(Ran(), "A5 A2 A4 C5");  // each in document order; nothing concerned the third
  EXPECT_EQ(Failures(run), "5:-77");
  EXPECT_THAT(run.identifiers, ElementsAre("ProbeElsewhere", "ProbeA", "ProbeC", "ProbeDocument"));
  EXPECT_EQ(Doc().Upgrades(), run.identifiers);
  std::vector<std::pair<std::string_view, std::size_t>> concerned;
  for (const auto& [type, count] : run.concerned) concerned.emplace_back(type->Name(), count);
  EXPECT_THAT(concerned,
              testing::UnorderedElementsAre(testing::Pair("ProbeStopLT", 1), testing::Pair("ProbeFirstLT", 1),
                                            testing::Pair("ProbeLastLT", 1)));
  // A class that would fail without a run is not asked when nothing concerns it.
  EXPECT_EQ(Failures(RunUnder({"ProbeC"}, "none")), "");
  EXPECT_EQ(Session::Current().CurrentDocument().Get(), nullptr);
}

TEST_F(VersionManagerTest, AnOrderThatALibraryDeclaresGoesBeforeTheAgeOfIdentifiers) {
  Given(R"({"id":1,"type":"ProbeStopLT"})");
  const UpgradeRun run = RunUnder({"ProbeA", "ProbeB", "ProbeC"}, "none");
  EXPECT_EQ(Ran(), "A1 C1 B1");
  EXPECT_THAT(run.identifiers, ElementsAre("ProbeA", "ProbeB", "ProbeC"));  // recorded by age all the same

  const std::vector<std::string> pending = {"ProbeA", "ProbeB", "ProbeC"};
  EXPECT_THAT(manager_.NeededBy({"ProbeA"}, pending), IsEmpty());
  const std::vector<VersionManager::Needed> needed = manager_.NeededBy({"ProbeB"}, pending);
  ASSERT_EQ(needed.size(), 1U);
  EXPECT_EQ(needed[0].identifier, "ProbeC");
  EXPECT_EQ(needed[0].by, "ProbeB");
  EXPECT_EQ(needed[0].reason, "B would take away what C reads.");
  EXPECT_THAT(manager_.NeededBy({"ProbeB"}, {"ProbeA", "ProbeB"}), IsEmpty());  // C was run before
}

TEST_F(VersionManagerTest, EveryRoutinesResultIsKnownAlsoWhereItsClassIgnoresIt) {
  Given(R"({"id":1,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeSequentialLT"}
           {"id":3,"type":"ProbeLastLT"})");
  std::string told;
  UpgradeWatch watch;
  watch.onRoutine = [&](const Feature& feature, const HVXUpgradeBinding& row) {
    told += fmt::format("{}>{} ", row.identifier.View(), feature.id);
  };
  watch.onRoutineDone = [&](const Feature& feature, const HVXUpgradeBinding&, HRESULT result) {
    told += fmt::format("{}={} ", feature.id, result);
  };
  const CheckpointScope scope(testing_support::Failing("VLMISpecAttrAccess::AddAttribute", "B", -77));
  const UpgradeRun run = manager_.Run(DocumentPtr(&Doc()), {"ProbeA", "ProbeB"}, watch);
  EXPECT_EQ(told, "ProbeA>1 1=0 ProbeA>2 2=0 ProbeA>2 2=-77 ProbeA>3 3=0 ProbeB>1 1=-77 ProbeB>3 3=-77 ");
  EXPECT_EQ(Failures(run), "2:-77 ignored 1:-77 ignored 3:-77");
  EXPECT_THAT(run.harmless, IsEmpty());
  EXPECT_EQ(*plugIn_.Description().observer(), nullptr);  // nobody watches afterwards
}

TEST_F(VersionManagerTest, AFailureThatMeansNothingToDoIsCounted) {
  Given(R"({"id":1,"type":"ProbeFirstMatchLT"}
           {"id":2,"type":"ProbeFirstMatchLT"})");
  const UpgradeRun run = RunUnder({"ProbeC"}, "C");
  EXPECT_EQ(Failures(run), "");
  ASSERT_EQ(run.harmless.size(), 1U);
  EXPECT_STREQ(run.harmless[0].first->harmless, "There was nothing to show.");
  EXPECT_EQ(run.harmless[0].second, 2U);
}

// What an identifier makes or changes the late type of is current for it, and goes through the later ones, as
// it would in a later run.
TEST_F(VersionManagerTest, WhatIsMadeOnTheWayGoesThroughTheIdentifiersThatFollow) {
  Given(R"({"id":1,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeStopLT"}
           {"id":3,"type":"ProbeStopLT","father":{"ref":2}}
           {"id":4,"type":"ProbeStopLT"}
           {"id":5,"type":"ProbeStopLT"})");
  const UpgradeRun run = RunUnder({"ProbeA", "ProbeC", "ProbeDocument"}, "none",
                                  [this](const std::string& letter, FeatureId id) {
                                    if (letter == "A" && id == 1) {
                                      Doc().Remove(At(2));
                                      Doc().Create(LateType::Of("ProbeStopLT"), "", nullptr, nullptr);
                                      Doc().SetType(At(5), LateType::Of("ProbeLastLT"));
                                    }
                                    if (letter == "A" && id == 4) Doc().Remove(At(4));  // itself
                                  });
  EXPECT_EQ(Ran(), "A1 A4 C1 C6");
  EXPECT_EQ(Failures(run), "");
  EXPECT_THAT(Doc().Upgrades(), ElementsAre("ProbeA", "ProbeC", "ProbeDocument"));
}

TEST_F(VersionManagerTest, FeaturesThatAreMovedAreVisitedWhereTheyStandThen) {
  Given(R"({"id":1,"type":"X"}
           {"id":2,"type":"ProbeStopLT","father":{"ref":1}}
           {"id":3,"type":"ProbeStopTooLT","father":{"ref":1}}
           {"id":4,"type":"ProbeStopLT","father":{"ref":1}})");
  RunUnder({"ProbeA", "ProbeC"}, "none", [this](const std::string& letter, FeatureId id) {
    if (letter == "A" && id == 3) Doc().PlaceBeside(At(4), At(2), false);
  });
  EXPECT_EQ(Ran(), "A2 A3 A4 C4 C2 C3");
}

TEST_F(VersionManagerTest, RunningAgainConcernsTheGivenFeaturesOnly) {
  Given(R"({"id":1,"type":"ProbeStopLT"}
           {"id":2,"type":"ProbeStopLT"}
           {"id":3,"type":"ProbeLastLT"})");
  Doc().RecordUpgrade("ProbeA");
  Doc().RecordUpgrade("ProbeC");
  const CheckpointScope scope(testing_support::Recording());
  std::vector<std::vector<VersionManager::Again>> rounds{
      {}, {{"ProbeA", {&At(1)}}}, {{"ProbeC", {&At(2)}}, {"ProbeA", {&At(2), &At(3)}}}};
  const UpgradeRun run = manager_.RunAgain(DocumentPtr(&Doc()),
                                           [&rounds] {
                                             std::vector<VersionManager::Again> round =
                                                 std::move(rounds.back());
                                             rounds.pop_back();
                                             return round;
                                           },
                                           {"ProbeB"});
  EXPECT_EQ(Ran(), "A2 A3 C2 A1 B1 B2 B3");
  EXPECT_THAT(run.identifiers, ElementsAre("ProbeA", "ProbeC", "ProbeB"));
  EXPECT_THAT(Doc().Upgrades(), ElementsAre("ProbeA", "ProbeC", "ProbeB"));  // once
}

TEST_F(VersionManagerTest, AFeatureThatWithholdsItsExtensionHasFailed) {
  Given(R"({"id":1,"type":"ProbeStopLT"})");
  const CheckpointScope scope(testing_support::Withholding("HVXIUpgrade"));
  EXPECT_EQ(Failures(Run({"ProbeA"})), fmt::format("1:{}", E_NOINTERFACE));
}

TEST_F(VersionManagerTest, ABrokenAssumptionAbortsTheRunAndSaysWhere) {
  for (const auto& [identifier, message] :
       {std::pair{"ProbeAssertion",
                  "ProbeGivesUpLT (id 2), ProbeAssertion (ProbeGivesUp of TestUpgradeLibrary 1.2): "
                  "AssertionFailed:NULL_var != spProbe in tests/plugin/Probe"},
        std::pair{"ProbeNullHandle",
                  "ProbeGivesUpLT (id 2), ProbeNullHandle (ProbeGivesUp of TestUpgradeLibrary 1.2): call "
                  "through a null handle"}}) {
    Given(R"({"id":1,"type":"ProbeStopLT"}
             {"id":2,"type":"ProbeGivesUpLT"})");
    try {
      Run({"ProbeA", identifier});
      FAIL() << identifier;
    } catch (const UpgradeAborted& aborted) {
      EXPECT_EQ(aborted.Problem(), message);
      EXPECT_THAT(aborted.Advice(), testing::EndsWith("those who make TestUpgradeLibrary 1.2"));
    }
    EXPECT_THAT(Doc().Upgrades(), IsEmpty());
    EXPECT_EQ(Session::Current().CurrentDocument().Get(), nullptr);
  }
}

TEST_F(VersionManagerTest, ProgressGoesFromNothingToAll) {
  std::string lines;
  for (int id = 1; id <= 5000; ++id) lines += fmt::format("{{\"id\":{},\"type\":\"ProbeStopLT\"}}\n", id);
  Given(lines);
  std::vector<std::pair<std::size_t, std::size_t>> told;
  UpgradeWatch watch;
  watch.onProgress = [&told](std::size_t done, std::size_t total) { told.emplace_back(done, total); };
  manager_.Run(DocumentPtr(&Doc()), {"ProbeA", "ProbeB"}, watch);
  ASSERT_GE(told.size(), 3U);
  EXPECT_TRUE(std::ranges::is_sorted(told));
  EXPECT_EQ(told.front(), std::pair(std::size_t{0}, std::size_t{10000}));
  EXPECT_EQ(told.back(), std::pair(std::size_t{10000}, std::size_t{10000}));
}

}  // namespace
