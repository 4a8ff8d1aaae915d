#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A job (#3) of an explicit dynamics case (#1) and one (#4) of a structural case (#2).
class HVXEJobUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenJobs(const std::string& attributes) {
    Given(R"({"id":1,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":3}}
             {"id":2,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":1}}
             {"id":3,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},)" +
          attributes + R"(}}
             {"id":4,"type":"HVXJobContainerLT","attributes":{"AnalysisCase":{"ref":2},)" +
          attributes + "}}");
  }
};

TEST_F(HVXEJobUpgradeTest, FrequencyAboveOneBecomesIntervalAndMode) {
  GivenJobs(R"("RestartFrequency":5)");
  EXPECT_EQ(UpgradeUnder(Recording(), 3, {"UpgradeJobRestartData"}), S_OK);
  EXPECT_EQ(Line(3),
            R"({"id":3,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},"RestartFrequency":5,)"
            R"("RestartInterval":5,"RestartMode":4}})");
  EXPECT_EQ(Calls("HVXIJob::Set"), (CallList{"HVXIJob::SetRestartInterval #3 RestartInterval",
                                             "HVXIJob::SetRestartMode #3 RestartMode"}));
}

TEST_F(HVXEJobUpgradeTest, ExplicitJobWithoutRestartWritesFlagThenMode) {
  GivenJobs(R"("RestartFrequency":0)");
  EXPECT_EQ(UpgradeUnder(Recording(), 3, {"UpgradeJobRestartData"}), S_OK);
  EXPECT_EQ(Calls("HVXIJob::Set"),
            (CallList{"HVXIJob::SetRestartFlag #3 RestartFlag", "HVXIJob::SetRestartMode #3 RestartMode"}));
  EXPECT_EQ(Line(3),
            R"({"id":3,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},"RestartFrequency":0,)"
            R"("RestartFlag":1,"RestartMode":3}})");
  EXPECT_EQ(Upgrade(4, {"UpgradeJobRestartData"}), S_OK);
  EXPECT_EQ(Line(4), R"({"id":4,"type":"HVXJobContainerLT","attributes":{"AnalysisCase":{"ref":2},)"
                     R"("RestartFrequency":0}})");
}

TEST_F(HVXEJobUpgradeTest, FrequencyOfOneIsLeftAlone) {
  for (const char* const frequency : {"1", "-2"}) {
    GivenJobs(R"("RestartFrequency":)" + std::string(frequency));
    const std::string before = Lines();
    EXPECT_EQ(Upgrade(3, {"UpgradeJobRestartData"}), S_OK);
    EXPECT_EQ(Lines(), before);
  }
}

TEST_F(HVXEJobUpgradeTest, FailedIntervalStopsButFailedModeDoesNot) {
  GivenJobs(R"("RestartFrequency":5)");
  EXPECT_EQ(UpgradeUnder(Failing("HVXIJob::SetRestartInterval", "", -77), 3,
                         {"UpgradeJobRestartData", "UpgradeJobMemoryUnit"}),
            -77);
  EXPECT_EQ(Calls("HVXIJob::SetRestartMode"), CallList{});
  EXPECT_EQ(Calls("HVXIJob::SetMemoryUnit"), CallList{});  // a failure ends the whole upgrade
  EXPECT_EQ(UpgradeUnder(Failing("HVXIJob::SetRestartMode"), 3, {"UpgradeJobRestartData"}), S_OK);
}

TEST_F(HVXEJobUpgradeTest, RestartNeedsAnAnalysisCaseOfThisWorkbench) {
  Given(R"({"id":1,"type":"AnalysisCase"}
           {"id":2,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},"RestartFrequency":0}}
           {"id":3,"type":"HVXJobLT","attributes":{"RestartFrequency":0}})");
  EXPECT_EQ(Upgrade(2, {"UpgradeJobRestartData"}), E_FAIL);
  EXPECT_EQ(Upgrade(3, {"UpgradeJobRestartData"}), E_FAIL);
}

TEST_F(HVXEJobUpgradeTest, RunFromInputFileBecomesFullAnalysis) {
  GivenJobs(R"("RunType":"From InputFile","InputFileFlag":1)");
  EXPECT_EQ(UpgradeUnder(Recording(), 3, {"UpgradeJobForFromInputFile"}), S_OK);
  EXPECT_EQ(Line(3),
            R"({"id":3,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},"RunType":"Full Analysis",)"
            R"("InputFileFlag":0}})");
  EXPECT_EQ(Calls("HVXIJob::Set"),
            (CallList{"HVXIJob::SetInputFileFlag #3 InputFileFlag", "HVXIJob::SetRunType #3 RunType"}));

  GivenJobs(R"("RunType":"Data Check","InputFileFlag":1)");
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(3, {"UpgradeJobForFromInputFile"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEJobUpgradeTest, MemoryUnitIsSetWhateverItWasAndItsResultIsNotLookedAt) {
  GivenJobs(R"("MemoryUnit":2)");
  EXPECT_EQ(Upgrade(3, {"UpgradeJobMemoryUnit"}), S_OK);
  EXPECT_EQ(Line(3), R"({"id":3,"type":"HVXJobLT","attributes":{"AnalysisCase":{"ref":1},"MemoryUnit":1}})");
  EXPECT_EQ(UpgradeUnder(Failing("HVXIJob::SetMemoryUnit"), 3, {"UpgradeJobMemoryUnit"}), S_OK);
}

TEST_F(HVXEJobUpgradeTest, EveryRoutineNeedsTheJobInterface) {
  GivenJobs(R"("RestartFrequency":5)");
  for (const char* const identifier :
       {"UpgradeJobRestartData", "UpgradeJobForFromInputFile", "UpgradeJobMemoryUnit"}) {
    EXPECT_EQ(UpgradeUnder(Withholding("HVXIJob", 3), 3, {identifier}), E_NOINTERFACE) << identifier;
  }
}

}  // namespace
