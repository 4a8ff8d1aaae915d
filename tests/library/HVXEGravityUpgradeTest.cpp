#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

class HVXEGravityUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenGravity(const std::string& third = R"({"ref":5})") {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":"HVXGravity","father":{"ref":1},"attributes":{"component1_param":{"ref":3},"component2_param":{"ref":4},"component3_param":)" +
          third + R"(}}
             {"id":3,"type":"Parameter","name":"P1","father":{"ref":2},"attributes":{"Value":0.1}}
             {"id":4,"type":"Parameter","name":"P2","father":{"ref":2},"attributes":{"Value":-0.0}}
             {"id":5,"type":"Parameter","name":"P3","father":{"ref":2},"attributes":{"Value":-9.81}})");
  }
  HRESULT Migrate(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeGravityBasicComponents"});
  }
};

TEST_F(HVXEGravityUpgradeTest, ThreeParametersBecomeThreeComponents) {
  GivenGravity();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Lines(),
            R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":2}]}}
{"id":2,"type":"HVXGravity","father":{"ref":1}}
{"id":6,"type":"SAMBasicComponent","name":"HVXGravity_1","father":{"ref":2},"attributes":{"Type":"SAMDouble","Magnitude":"ACCELERATION","Values":0.1}}
{"id":7,"type":"SAMBasicComponent","name":"HVXGravity_2","father":{"ref":2},"attributes":{"Type":"SAMDouble","Magnitude":"ACCELERATION","Values":-0.0}}
{"id":8,"type":"SAMBasicComponent","name":"HVXGravity_3","father":{"ref":2},"attributes":{"Type":"SAMDouble","Magnitude":"ACCELERATION","Values":-9.81}}
)");
  EXPECT_EQ(Calls("VLMISamAnalysisModel::RemoveObject"),
            (CallList{"VLMISamAnalysisModel::RemoveObject #1 P1", "VLMISamAnalysisModel::RemoveObject #1 P2",
                      "VLMISamAnalysisModel::RemoveObject #1 P3"}));
  EXPECT_EQ(Calls().back(), "VLMIModelEvents::Dispatch #2 VLMBaseUnknown");
  EXPECT_EQ(standalone::Session::Current().Modified(), std::vector<standalone::FeatureId>{2});
}

TEST_F(HVXEGravityUpgradeTest, NothingIsSetUnlessAllThreeAreRead) {
  GivenGravity("null");
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Calls("VLMIKpeValue::AsReal").size(), 2U);
  EXPECT_EQ(Calls("HVXIGravity::"), CallList{});
  EXPECT_EQ(Calls("VLMIModelEvents::Dispatch").size(), 1U);  // the notice comes whatever the result
}

TEST_F(HVXEGravityUpgradeTest, AFailedSetterLeavesTheParametersButAFailedRemovalStopsNothing) {
  GivenGravity();
  EXPECT_EQ(Migrate(Failing("HVXIGravity::SetComponents")), S_OK);
  EXPECT_EQ(Calls("VLMISamAnalysisModel::RemoveObject"), CallList{});
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})");

  EXPECT_EQ(Migrate(Failing("VLMISamAnalysisModel::RemoveObject", "P1")), S_OK);
  EXPECT_EQ(Line(2),
            R"({"id":2,"type":"HVXGravity","father":{"ref":1},"attributes":{"component1_param":{"ref":3}}})");
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":2}]}})");
}

TEST_F(HVXEGravityUpgradeTest, InterfacesAreAskedForBeforeTheFirstRead) {
  for (const char* const interfaceName : {"VLMISpecAttrAccess", "HVXIGravity"}) {
    GivenGravity();
    EXPECT_EQ(Migrate(Withholding(interfaceName, 2)), S_OK);
    EXPECT_EQ(Calls("VLMIKpeParm::GetValue"), CallList{}) << interfaceName;
  }
}

}  // namespace
