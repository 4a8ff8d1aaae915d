#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A solution (#4) in a set (#3) beneath its case (#2), one (#5) that solves a case (#6) elsewhere, and one
// (#7) that stands beneath nothing.
class HVXESolCaseUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"AnalysisModel"}
             {"id":2,"type":"AnalysisCase","father":{"ref":1}}
             {"id":3,"type":"HVXSolutionSensorsLT","father":{"ref":2}}
             {"id":4,"type":"HVXHacSolutionLT","father":{"ref":3}}
             {"id":5,"type":"HVXHacSolutionLT","father":{"ref":2},"attributes":{"WorkingCase":{"ref":6}}}
             {"id":6,"type":"AnalysisCase","father":{"ref":1}}
             {"id":7,"type":"HVXHacSolutionLT"})");
  }
};

TEST_F(HVXESolCaseUpgradeTest, SolutionIsLinkedToItsCaseAndItsOwnerGetsThePhysicalType) {
  EXPECT_EQ(UpgradeUnder(Recording(), 4, {"UpgradeAnalysisCase"}), S_OK);
  EXPECT_EQ(Line(3), R"({"id":3,"type":"HVXSolutionSensorsLT","father":{"ref":2},)"
                     R"("physicalType":"MECHANICAL_STATIC_LINEAR"})");
  EXPECT_EQ(Line(4), R"({"id":4,"type":"HVXHacSolutionLT","father":{"ref":3},"upToDate":false,)"
                     R"("attributes":{"AnalysisCase":{"ref":2},"AttachedExplicit":{"ref":2}}})");
  EXPECT_EQ(Calls(),
            (CallList{"HVXAnalysisDocUtils::GetDocument #4", "HVXAnalysisDocUtils::GetWorkingCase #4",
                      "VLMISpecObject::GetFather #4",
                      "VLMSamCatalogFactory::SetPhysicalType #3 MECHANICAL_STATIC_LINEAR",
                      "HVXIAnalysisCaseSolution::SetAnalysisCase #4 AnalysisCase",
                      "VLMISamExplicit::Attach #4 AttachedExplicit", "VLMISpecObject::SetUpToDate #4"}));

  EXPECT_EQ(Upgrade(5, {"UpgradeAnalysisCase"}), S_OK);
  EXPECT_EQ(
      Line(5),
      R"({"id":5,"type":"HVXHacSolutionLT","father":{"ref":2},"upToDate":false,)"
      R"("attributes":{"WorkingCase":{"ref":6},"AnalysisCase":{"ref":6},"AttachedExplicit":{"ref":6}}})");
}

TEST_F(HVXESolCaseUpgradeTest, WhatIsMissingIsPassedOver) {
  EXPECT_EQ(Upgrade(7, {"UpgradeAnalysisCase"}), S_OK);
  EXPECT_EQ(Line(7), R"({"id":7,"type":"HVXHacSolutionLT","upToDate":false})");
  for (const char* const operation :
       {"HVXAnalysisDocUtils::GetDocument", "HVXAnalysisDocUtils::GetWorkingCase",
        "VLMISpecObject::GetFather", "VLMSamCatalogFactory::SetPhysicalType",
        "HVXIAnalysisCaseSolution::SetAnalysisCase", "VLMISamExplicit::Attach"}) {
    SetUp();
    EXPECT_EQ(UpgradeUnder(Failing(operation), 4, {"UpgradeAnalysisCase"}), S_OK) << operation;
    EXPECT_FALSE(At(4).upToDate) << operation;
  }
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamExplicit", 2), 4, {"UpgradeAnalysisCase"}), S_OK);
  EXPECT_EQ(Calls("VLMISamExplicit::Attach"), CallList{});
}

TEST_F(HVXESolCaseUpgradeTest, FailsWithoutAMatchAndOtherwiseGivesTheLastResult) {
  const std::string before = Lines();
  AlsoKnown("upgradeanalysiscase");
  AlsoKnown("Other");
  EXPECT_EQ(Upgrade(4, {}), E_FAIL);
  EXPECT_EQ(Upgrade(4, {"UpgradeThermalSolutionStep", "upgradeanalysiscase"}), E_FAIL);
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIAnalysisCaseSolution", 4), 4, {"UpgradeAnalysisCase"}), E_FAIL);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(UpgradeUnder(Recording(), 4, {"UpgradeAnalysisCase", "Other", "UpgradeAnalysisCase"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecObject::SetUpToDate").size(), 2U);
}

// Step solutions: a thermal one (#1), a static one (#2), and one without a type (#3).
class HVXESolStepUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"HVXHacAnaStepSolLT","attributes":{"ResultStepType":3}}
             {"id":2,"type":"HVXHacAnaStepSolLT","attributes":{"ResultStepType":1}}
             {"id":3,"type":"HVXHacAnaStepSolLT"})");
  }
};

TEST_F(HVXESolStepUpgradeTest, OnlyThermalResultsGetThePhysicalType) {
  for (const standalone::FeatureId id : {1, 2, 3})
    EXPECT_EQ(Upgrade(id, {"UpgradeThermalSolutionStep"}), S_OK);
  EXPECT_EQ(
      Lines(),
      R"({"id":1,"type":"HVXHacAnaStepSolLT","physicalType":"THERMAL_STATIC_LINEAR","attributes":{"ResultStepType":3}}
{"id":2,"type":"HVXHacAnaStepSolLT","attributes":{"ResultStepType":1}}
{"id":3,"type":"HVXHacAnaStepSolLT"}
)");
}

TEST_F(HVXESolStepUpgradeTest, GivesTheResultOfTheLastRun) {
  EXPECT_EQ(Upgrade(1, {}), E_FAIL);
  EXPECT_EQ(Upgrade(1, {"UpgradeAnalysisCase"}), E_FAIL);
  EXPECT_EQ(UpgradeUnder(Failing("HVXAnalysisEntityUtils::SetPhysicalTypeToSpecObject", "", -77), 1,
                         {"UpgradeThermalSolutionStep"}),
            -77);
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIHalvexResultStep", 1), 1, {"UpgradeThermalSolutionStep"}), S_OK);
  auto firstFails = Recording();
  firstFails.failNth = 2;  // of the two calls of each run, the one that sets the type
  firstFails.failure = -77;
  EXPECT_EQ(UpgradeUnder(firstFails, 1, {"UpgradeThermalSolutionStep", "UpgradeThermalSolutionStep"}), S_OK);
}

}  // namespace
