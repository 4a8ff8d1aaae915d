#include <gmock/gmock.h>

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisModel.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "compare/FeatureDifference.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIPressureLoad.h"

namespace {

using testing::HasSubstr;

// Pressure #1 lists its connectors #4 and #5, connector #6 of pressure #2, connector #7 that pressure #2
// lists as well, the container #8, and an entry that holds nothing.
class SupportHostTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(
        R"({"id":1,"type":"HVXPressure","attributes":{"Supports":[{"ref":4},null,{"ref":6},{"ref":8},{"ref":7},{"ref":5}],"A":1},"modes":{"Supports":2}}
           {"id":2,"type":"HVXPressure","attributes":{"Supports":[{"ref":6},{"ref":7}]}}
           {"id":3,"type":"Surface"}
           {"id":4,"type":"GeometrySmartConnector","father":{"ref":1},"attributes":{"FirstObject":{"ref":3}}}
           {"id":5,"type":"GeometrySmartConnector","father":{"ref":1},"attributes":{"FirstObject":{"ref":3}}}
           {"id":6,"type":"GeometrySmartConnector","father":{"ref":2},"attributes":{"FirstObject":{"ref":3}}}
           {"id":7,"type":"GeometrySmartConnector","father":{"ref":1},"attributes":{"FirstObject":{"ref":3}}}
           {"id":8,"type":"SAMContainer"}
           {"id":9,"type":"HVXPressure","attributes":{"Supports":"odd"}})");
    supports_ = As<VLMISamAnalysisSupport>(1);
  }

  [[nodiscard]] int Count() {
    VLMListValVLMBaseUnknown_var listed;
    EXPECT_EQ(supports_->ListSupports(listed), S_OK);
    return static_cast<int>(
        std::ranges::count_if(listed, [](const VLMBaseUnknown_var& each) { return !(each == NULL_var); }));
  }
  [[nodiscard]] HRESULT Add(VLMISamAnalysisSupport_var to, standalone::FeatureId object) {
    return to->AddSupport(object == 0 ? VLMILinkableObject_var() : As<VLMILinkableObject>(object), NULL_var,
                          "");
  }

  VLMISamAnalysisSupport_var supports_;
};

TEST_F(SupportHostTest, PreparedSupportsComeBackWhenNoneCome) {
  const std::string before = Lines();
  EXPECT_EQ(supports_->PrepareSupports(), S_OK);
  EXPECT_EQ(supports_->PrepareSupports(), S_OK);
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(supports_->RemoveSupport(As<VLMBaseUnknown>(4), ""), E_FAIL);
  EXPECT_EQ(Add(supports_, 0), E_FAIL);
  Doc().RestoreListsSetAside();
  EXPECT_EQ(Lines(), before);
  EXPECT_FALSE(standalone::Differ(*Doc().Before(At(1)), At(1)));

  EXPECT_EQ(supports_->PrepareSupports(), S_OK);
  Doc().Remove(At(5));
  EXPECT_THAT(Line(1), HasSubstr(R"("Supports":[{"ref":4},null,{"ref":6},{"ref":8},{"ref":7}],"A":1)"));
}

TEST_F(SupportHostTest, ASupportReplacesPreparedOnes) {
  EXPECT_EQ(supports_->PrepareSupports(), S_OK);
  EXPECT_EQ(Add(supports_, 3), S_OK);
  EXPECT_THAT(Line(1), HasSubstr(R"("Supports":[null,{"ref":10}],"A":1)"));
  for (const standalone::FeatureId id : {4, 5}) EXPECT_EQ(Line(id), "removed");
  // What is no connector, or another feature's, stays where it is.
  for (const standalone::FeatureId id : {6, 7, 8}) EXPECT_NE(Line(id), "removed");
  EXPECT_THAT(Line(2), HasSubstr(R"("Supports":[{"ref":6},{"ref":7}])"));

  // Those that are entered again are no longer what is replaced.
  EXPECT_EQ(supports_->PrepareSupports(), S_OK);
  EXPECT_EQ(supports_->AddSupports({As<VLMBaseUnknown>(10)}, 2), S_OK);
  EXPECT_THAT(Line(1), HasSubstr(R"("Supports":[null,{"ref":10}],"A":1)"));
}

TEST_F(SupportHostTest, TakingOutLeavesWhatOthersHave) {
  EXPECT_EQ(supports_->RemoveSupport(As<VLMBaseUnknown>(8), ""), S_OK);
  EXPECT_EQ(supports_->RemoveSupport(As<VLMBaseUnknown>(7), "GeometrySmartConnector"), S_OK);
  EXPECT_EQ(supports_->TakeOut(As<VLMBaseUnknown>(3), NULL_var, ""), S_OK);
  EXPECT_EQ(supports_->TakeOut(As<VLMBaseUnknown>(3), NULL_var, ""), S_OK);
  EXPECT_THAT(Line(1), HasSubstr(R"("Supports":[null,{"ref":5}],"A":1)"));
  EXPECT_EQ(Line(4), "removed");
  for (const standalone::FeatureId id : {6, 7, 8}) EXPECT_NE(Line(id), "removed");
}

TEST_F(SupportHostTest, WhatIsNoListIsNotReplacedByOne) {
  const std::string before = Lines();
  const VLMISamAnalysisSupport_var odd = As<VLMISamAnalysisSupport>(9);
  EXPECT_EQ(odd->PrepareSupports(), S_OK);
  EXPECT_EQ(Add(odd, 3), E_FAIL);
  EXPECT_EQ(odd->AddSupports({As<VLMBaseUnknown>(4)}, 2), E_FAIL);
  EXPECT_EQ(Lines(), before);
}

TEST_F(SupportHostTest, ATieThatRestsOnTheContainerDoesNotTakeItAway) {
  Given(R"({"id":1,"type":"SAMContainer"}
           {"id":64,"type":"SAMFaceFaceFastened"}
           {"id":92,"type":"AnalysisCase"}
           {"id":191,"type":"HVXInteractionContainerLT","father":{"ref":92}}
           {"id":202,"type":"HVXTiedContactLT","attributes":{"connectionProperty":{"ref":64},"Supports":[{"ref":1}]}}
           {"id":192,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":191},"container":{"ref":1}})");
  const standalone::VersionManager manager({&testing_support::Library()});
  const standalone::DocumentPtr document(&Doc());
  static_cast<void>(manager.Run(document, manager.Pending(Doc())));
  EXPECT_NE(Line(1), "removed");
  EXPECT_EQ(testing_support::LinesOf(*testing_support::DocumentOf(Lines()).Get()), Lines());
}

TEST_F(SupportHostTest, AParameterThatTwoConditionsShareIsReadByBoth) {
  Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
           {"id":2,"type":"HVXPressure","father":{"ref":1},"attributes":{"pressure_param":{"ref":4}}}
           {"id":3,"type":"HVXPressure","father":{"ref":1},"attributes":{"pressure_param":{"ref":4}}}
           {"id":4,"type":"Parameter","father":{"ref":2},"attributes":{"Magnitude":"PRESSURE","Value":2500.0}}
           {"id":5,"type":"SAMContainer"})");
  for (const standalone::FeatureId id : {2, 3}) {
    EXPECT_EQ(Upgrade(id, {"UpgradePressureBasicComponents"}), S_OK);
    double magnitude = 0.0;
    EXPECT_EQ(As<HVXIPressureLoad>(id)->GetMagnitude(magnitude), S_OK);
    EXPECT_EQ(magnitude, 2500.0);
  }
  const VLMISamAnalysisModel_var model = As<VLMISamAnalysisModel>(1);
  for (const standalone::FeatureId id : {1, 5})
    EXPECT_EQ(model->RemoveObject(As<VLMBaseUnknown>(id), 0), E_FAIL);
}

TEST_F(SupportHostTest, SonsThatAreOnlyListedStayWithTheirFather) {
  Given(R"({"id":1,"type":"HVXConcentratedForce","attributes":{"SonsList":[{"ref":2},{"ref":3}]}}
           {"id":2,"type":"SAMBasicComponent","father":{"ref":1}}
           {"id":3,"type":"SAMBasicComponent","father":{"ref":4}}
           {"id":4,"type":"HVXConcentratedForce"})");
  const VLMISpecObject_var force = As<VLMISpecObject>(1);
  for (const standalone::FeatureId id : {2, 3}) EXPECT_EQ(force->RemoveSon(As<VLMISpecObject>(id), 0), S_OK);
  EXPECT_EQ(force->RemoveSon(As<VLMISpecObject>(3), 0), E_FAIL);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"HVXConcentratedForce","attributes":{"SonsList":[]}})");
  EXPECT_EQ(Line(2), "removed");
  EXPECT_EQ(Line(3), R"({"id":3,"type":"SAMBasicComponent","father":{"ref":4}})");
}

}  // namespace
