#include "HVXConnectionContainer.h"
#include "session/Messages.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A step (#3) with restraints (#4), loads (#5) and output requests (#6).
class HVXConnectionContainerTest : public testing_support::UpgradeTest {
 protected:
  void GivenStep(const std::string& lateType = "HVXRiksStepLT", const std::string& more = "") {
    Given(R"({"id":1,"type":"AnalysisModel"}
             {"id":2,"type":"AnalysisCase","father":{"ref":1}}
             {"id":3,"type":")" +
          lateType + R"(","father":{"ref":2}}
             {"id":4,"type":"HVXRestraintContainerLT","alias":"Restraints","father":{"ref":3}}
             )" +
          more);
  }
  void GivenStepWithLoads(const std::string& lateType = "HVXRiksStepLT") {
    GivenStep(lateType, R"({"id":5,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":3}}
                           {"id":6,"type":"HVXFieldOutputRequestContainerLT","father":{"ref":3}})");
  }

  std::vector<standalone::FeatureId> SonsOfStep() {
    std::vector<standalone::FeatureId> ids;
    for (const standalone::Feature* son = At(3).firstSon; son != nullptr; son = son->nextSibling)
      ids.push_back(son->id);
    return ids;
  }
  using Ids = std::vector<standalone::FeatureId>;
};

TEST_F(HVXConnectionContainerTest, EveryKindOfStepGetsAContainerBehindItsLoads) {
  for (const char* const lateType :
       {"HVXGeneralStaticStepLT", "HVXHeatTransferStepLT", "HVXRiksStepLT", "HVXStaticLPStepLT"}) {
    GivenStepWithLoads(lateType);
    EXPECT_EQ(UpgradeUnder(Recording(), 3, {"AddConnectionContainer"}), S_OK) << lateType;
    ASSERT_NE(Doc().Find(7), nullptr);
    EXPECT_EQ(
        Line(7),
        R"({"id":7,"type":"HVXInteractionContainerLT","name":"HVXInteractionContainerLT.7","alias":"Connections","father":{"ref":3}})");
    EXPECT_EQ(SonsOfStep(), (Ids{4, 5, 7, 6}));
    EXPECT_EQ(Calls(),
              (CallList{"HVXAnalysisDocUtils::GetDocument #3",
                        "HVXAnalysisDocUtils::LoadCatalog #0 HVXAnalysisStepCatalog.VLMfct",
                        "HVXAnalysisDocUtils::GetAnalysisModel #0", "HVXAnalysisDocUtils::GetFactory #0",
                        "VLMMsgCatalog::BuildMessage #0 HVXInteractionContainerLT",
                        "VLMISamAnalysisScan::ListSetsOfName #3 Connections",
                        "VLMISamAnalysisModelFactory::CreateSet #1 HVXInteractionContainerLT",
                        "VLMISamAnalysisScan::AddSet #3 Connections",
                        "VLMISamAnalysisScan::ListSetsOfName #3 Loads",
                        "VLMISamAnalysisScan::OrderSet #3 Connections"}));
    const std::string once = Lines();
    EXPECT_EQ(Upgrade(3, {"AddConnectionContainer"}), S_OK);
    EXPECT_EQ(Lines(), once);
  }
}

TEST_F(HVXConnectionContainerTest, OfSeveralLoadsTheFirstCounts) {
  GivenStep("HVXRiksStepLT", R"({"id":5,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":3}}
                                {"id":6,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":3}})");
  EXPECT_EQ(Upgrade(3, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(SonsOfStep(), (Ids{4, 5, 7, 6}));
}

TEST_F(HVXConnectionContainerTest, AContainerIsKnownByItsFixedNameAtAnyDepth) {
  GivenStep("HVXRiksStepLT",
            R"({"id":5,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":3}}
               {"id":6,"type":"HVXInteractionContainerLT","alias":"Connections","father":{"ref":4}})");
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(3, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXConnectionContainerTest, AContainerOfAnotherNameOrWithoutTextIsNoContainer) {
  GivenStepWithLoads();
  // Without a text the new container has an empty name, and so is not found the next time.
  EXPECT_EQ(UpgradeUnder(Failing("VLMMsgCatalog::BuildMessage"), 3, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(
      Line(7),
      R"({"id":7,"type":"HVXInteractionContainerLT","name":"HVXInteractionContainerLT.7","father":{"ref":3}})");
  EXPECT_EQ(Upgrade(3, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(SonsOfStep(), (Ids{4, 5, 8, 7, 6}));
}

TEST_F(HVXConnectionContainerTest, WithoutLoadsTheContainerStaysLast) {
  GivenStep();
  EXPECT_EQ(UpgradeUnder(Recording(), 3, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(SonsOfStep(), (Ids{4, 5}));
  EXPECT_EQ(Calls("VLMISamAnalysisScan::OrderSet"), CallList{});
}

TEST_F(HVXConnectionContainerTest, FailuresArePassedOnAndEndTheUpgrade) {
  struct Case {
    const char* operation;
    const char* detail;
    HRESULT result;
    bool created;
  };
  for (const Case& each : {Case{"HVXAnalysisDocUtils::GetDocument", "", E_FAIL, false},
                           Case{"HVXAnalysisDocUtils::LoadCatalog", "", -77, false},
                           Case{"HVXAnalysisDocUtils::GetAnalysisModel", "", -77, false},
                           Case{"HVXAnalysisDocUtils::GetFactory", "", -77, false},
                           Case{"VLMISamAnalysisScan::ListSetsOfName", "Connections", -77, false},
                           Case{"VLMISamAnalysisModelFactory::CreateSet", "", E_FAIL, false},
                           Case{"VLMISamAnalysisScan::AddSet", "", -77, true},
                           Case{"VLMISamAnalysisScan::ListSetsOfName", "Loads", -77, true},
                           Case{"VLMISamAnalysisScan::OrderSet", "", -77, true}}) {
    GivenStepWithLoads("HVXGeneralStaticStepLT");
    EXPECT_EQ(UpgradeUnder(Failing(each.operation, each.detail, -77), 3,
                           {"AddConnectionContainer", "UpgFromSpecToComp"}),
              each.result)
        << each.operation;
    EXPECT_EQ(Doc().FeatureCount(), each.created ? 7U : 6U) << each.operation;
    EXPECT_EQ(Calls("VLMISpecAttrAccess::"), CallList{})
        << each.operation;  // the second identifier does not run
  }
}

TEST_F(HVXConnectionContainerTest, AStepThatCannotBeScannedFailsOnceTheFactoryIsThere) {
  GivenStepWithLoads();
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisScan", 3), 3, {"AddConnectionContainer"}), E_FAIL);
  EXPECT_EQ(Calls("HVXAnalysisDocUtils::GetFactory").size(), 1U);
  EXPECT_EQ(Calls("VLMISamAnalysisModelFactory::"), CallList{});
}

TEST_F(HVXConnectionContainerTest, TheRoutineItselfTakesTheCurrentDocument) {
  GivenStepWithLoads();
  {
    const standalone::CheckpointScope scope(Failing("HVXAnalysisDocUtils::GetCurrentDocument", "", -77));
    EXPECT_EQ(HVXAddConnectionContainer(As<VLMBaseUnknown>(3), NULL_var), -77);
  }
  EXPECT_EQ(HVXAddConnectionContainer(As<VLMBaseUnknown>(3), NULL_var), S_OK);
  EXPECT_EQ(SonsOfStep(), (Ids{4, 5, 7, 6}));
}

}  // namespace
