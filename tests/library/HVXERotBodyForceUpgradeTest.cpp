#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

class HVXERotBodyForceUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenForce(const std::string& attributes) {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":"HVXRotationalBodyForce","father":{"ref":1},"attributes":{)" +
          attributes + R"(}}
             {"id":3,"type":"Parameter","father":{"ref":2},"attributes":{"Value":104.72}}
             {"id":4,"type":"Parameter","father":{"ref":2},"attributes":{"Value":-0.1}}
             {"id":5,"type":"PrtContainer","attributes":{"Part":{"ref":6}}}
             {"id":6,"type":"Part"}
             {"id":7,"type":"Axis","container":{"ref":5}}
             {"id":8,"type":"Axis"})");
  }
  HRESULT MigrateRotation(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeRotationalBodyForceBasicComponents"});
  }
  static constexpr const char* kRotation = R"("velocity_param":{"ref":3},"acceleration_param":{"ref":4})";
};

TEST_F(HVXERotBodyForceUpgradeTest, VelocityAndAccelerationMoveAndTheirParametersStay) {
  GivenForce(kRotation);
  const std::string before = Line(2);
  EXPECT_EQ(MigrateRotation(Recording()), S_OK);
  EXPECT_EQ(Line(2), before);
  EXPECT_EQ(Line(3).find("removed"), std::string::npos);
  EXPECT_NE(Line(9).find(R"("name":"AngularVelocity")"), std::string::npos);
  EXPECT_NE(Line(9).find(R"("Values":104.72})"), std::string::npos) << Line(9);
  EXPECT_NE(Line(10).find(R"("name":"AngularAcceleration")"), std::string::npos);
  EXPECT_NE(Line(10).find(R"("Values":-0.1})"), std::string::npos) << Line(10);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":2}]}})");
  EXPECT_EQ(Calls("VLMIModelEvents::"), CallList{});
}

TEST_F(HVXERotBodyForceUpgradeTest, TheVelocityIsSetBeforeTheAccelerationIsRead) {
  GivenForce(R"("velocity_param":{"ref":3})");
  EXPECT_EQ(MigrateRotation(Recording()), S_OK);
  EXPECT_EQ(Calls("HVXIRotationalBodyForce::").size(), 1U);
  EXPECT_NE(Line(9).find(R"("Values":104.72})"), std::string::npos);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})");
}

TEST_F(HVXERotBodyForceUpgradeTest, AFailedSetterEndsTheTransfer) {
  GivenForce(kRotation);
  EXPECT_EQ(MigrateRotation(Failing("HVXIRotationalBodyForce::SetAngularVelocity")), S_OK);
  EXPECT_EQ(Calls("VLMIKpeValue::AsReal").size(), 1U);
  EXPECT_EQ(MigrateRotation(Failing("HVXIRotationalBodyForce::SetAngularAcceleration")), S_OK);
  EXPECT_EQ(MigrateRotation(Withholding("VLMISpecAttrAccess", 2)), S_OK);
  EXPECT_EQ(MigrateRotation(Withholding("HVXIRotationalBodyForce", 2)), S_OK);
  EXPECT_EQ(Calls("VLMIKpeValue::AsReal"), CallList{});
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})");
}

TEST_F(HVXERotBodyForceUpgradeTest, AxisIsStoredWithItsPartAndAnnounced) {
  GivenForce(R"("RotationAxis":{"ref":7})");
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeRBFAxisData"}), S_OK);
  EXPECT_EQ(Line(2), R"({"id":2,"type":"HVXRotationalBodyForce","father":{"ref":1},"attributes":)"
                     R"({"RotationAxis":{"ref":7},"RotationAxisPart":{"ref":6}}})");
  EXPECT_EQ(Calls().back(), "VLMIModelEvents::Dispatch #2 VLMBaseUnknown");

  GivenForce(R"("RotationAxis":{"ref":8})");  // an axis of no part
  EXPECT_EQ(Upgrade(2, {"UpgradeRBFAxisData"}), S_OK);
  EXPECT_EQ(Line(2), R"({"id":2,"type":"HVXRotationalBodyForce","father":{"ref":1},"attributes":)"
                     R"({"RotationAxis":{"ref":8},"RotationAxisPart":null}})");
}

TEST_F(HVXERotBodyForceUpgradeTest, WithoutAnAxisNothingChangesAndAFailureStopsWithoutNotice) {
  GivenForce("");
  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeRBFAxisData"}), S_OK);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(Calls("VLMIModelEvents::").size(), 1U);

  GivenForce(R"("RotationAxis":{"ref":7})");
  EXPECT_EQ(UpgradeUnder(Failing("HVXIRotationalBodyForce::SetAxisData", "", -77), 2,
                         {"UpgradeRBFAxisData", "ReExplicitateFeature"}),
            -77);
  EXPECT_EQ(Calls("VLMIModelEvents::"), CallList{});
  EXPECT_TRUE(At(2).upToDate);
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIRotationalBodyForce", 2), 2, {"UpgradeRBFAxisData"}), E_FAIL);
}

}  // namespace
