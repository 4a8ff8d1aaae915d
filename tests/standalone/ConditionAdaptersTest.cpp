#include <array>
#include <limits>

#include "analysis/VLMISamUpgrade.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIGravity.h"
#include "workbench/HVXIHeatFlux.h"
#include "workbench/HVXIMotionBC.h"
#include "workbench/HVXIRotationalBodyForce.h"
#include "workbench/HVXITemperature.h"
#include "workbench/HVXITemperatureHistory.h"

namespace {

class ConditionAdaptersTest : public testing_support::UpgradeTest {};

TEST_F(ConditionAdaptersTest, MotionIsReadFromOldComponentsAndWrittenToCurrentOnes) {
  Given(R"({"id":1,"type":"HVXVelocityBCLT"}
           {"id":2,"type":"SAMBasicComponent","name":"HVXRotationalVelocity_1","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":0.5,"IsActive":7}}
           {"id":3,"type":"HVXDisplacementBC"}
           {"id":4,"type":"SAMBasicComponent","name":"HVXRotationalVelocity_1","father":{"ref":3},"attributes":{"Type":"SAMDouble","Values":0.5,"IsActive":7}})");
  const auto spVelocity = As<HVXIMotionBC>(1);
  double value = 0.0;
  unsigned char active = 0;
  EXPECT_EQ(spVelocity->GetValue(4, value), S_OK);
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(spVelocity->GetActivity(4, active), S_OK);
  EXPECT_EQ(active, 1);
  EXPECT_EQ(spVelocity->SetValue(4, 1.0), E_FAIL);  // not current yet
  EXPECT_EQ(spVelocity->SetActivity(4, 0), E_FAIL);
  for (const int number : {-1, 0, 1, 7}) {
    EXPECT_EQ(spVelocity->GetValue(number, value), E_FAIL) << number;
    EXPECT_EQ(spVelocity->GetActivity(number, active), E_FAIL) << number;
  }
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(As<HVXIMotionBC>(3)->GetValue(4, value), E_FAIL);  // displacements have no old names
}

TEST_F(ConditionAdaptersTest, CurrentMotionComesBeforeOld) {
  Given(R"({"id":1,"type":"HVXAccelerationBCLT"}
           {"id":2,"type":"SAMBasicComponent","name":"HVXTranslationalVelocity_2","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":0.5,"IsActive":1}}
           {"id":3,"type":"SAMBasicComponent","name":"HVXAcceleration_2","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":0.0,"IsActive":0}})");
  const auto spMotion = As<HVXIMotionBC>(1);
  EXPECT_EQ(spMotion->SetValue(2, -2.0), S_OK);
  EXPECT_EQ(spMotion->SetActivity(2, 5), S_OK);
  double value = 0.0;
  EXPECT_EQ(spMotion->GetValue(2, value), S_OK);
  EXPECT_EQ(value, -2.0);
  EXPECT_NE(Line(3).find(R"("Values":-2.0,"IsActive":1)"), std::string::npos);
  EXPECT_NE(Line(2).find(R"("Values":0.5,"IsActive":1)"), std::string::npos);
}

TEST_F(ConditionAdaptersTest, AValueGoesOnlyIntoAComponentOfItsType) {
  Given(R"({"id":1,"type":"HVXTemperatureLT"}
           {"id":2,"type":"SAMBasicComponent","name":"Temperature","father":{"ref":1},"attributes":{"Type":"SAMInteger","Values":3}}
           {"id":3,"type":"HVXTemperatureLT"})");
  for (const standalone::FeatureId id : {1, 3}) {
    double value = 7.0;
    EXPECT_EQ(As<HVXITemperature>(id)->SetMagnitude(300.0), E_FAIL);
    EXPECT_EQ(As<HVXITemperature>(id)->GetMagnitude(value), E_FAIL);
    EXPECT_EQ(value, 7.0);
  }
}

TEST_F(ConditionAdaptersTest, AComponentOfAnotherTypeDiffersFromTheLayoutAndStays) {
  Given(R"({"id":1,"type":"HVXPressure"}
           {"id":2,"type":"SAMBasicComponent","name":"Pressure","father":{"ref":1},"attributes":{"Type":"SAMInteger","Values":3}})");
  const std::string before = Lines();
  EXPECT_EQ(As<VLMISamUpgrade>(1)->NeedToUpgrade(), 1);
  EXPECT_EQ(As<VLMISamUpgrade>(1)->Upgrade(), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(ConditionAdaptersTest, GravityIsSetWholeOrNotAtAll) {
  Given(R"({"id":1,"type":"HVXGravity"}
           {"id":2,"type":"SAMBasicComponent","name":"HVXGravity_1","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":1.0}}
           {"id":3,"type":"SAMBasicComponent","name":"HVXGravity_2","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":2.0}})");
  const std::string before = Lines();
  EXPECT_EQ(As<HVXIGravity>(1)->SetComponents({7.0, 8.0, 9.0}), E_FAIL);
  EXPECT_EQ(Lines(), before);
  Doc().SetAttribute(At(2), standalone::NameTable::Intern("Type"), standalone::Value::String("SAMDouble"));
  Given(
      before +
      R"({"id":4,"type":"SAMBasicComponent","name":"HVXGravity_3","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":3.0}})");
  EXPECT_EQ(As<HVXIGravity>(1)->SetComponents({7.0, 8.0, std::numeric_limits<double>::infinity()}), E_FAIL);
  std::array<double, 3> components{};
  EXPECT_EQ(As<HVXIGravity>(1)->GetComponents(components), S_OK);
  EXPECT_EQ(components, (std::array<double, 3>{1.0, 2.0, 3.0}));
  EXPECT_EQ(As<HVXIGravity>(1)->SetComponents({7.0, 8.0, 9.0}), S_OK);
  EXPECT_EQ(As<HVXIGravity>(1)->GetComponents(components), S_OK);
  EXPECT_EQ(components, (std::array<double, 3>{7.0, 8.0, 9.0}));
}

TEST_F(ConditionAdaptersTest, BodyHeatFluxIsInItsParameter) {
  Given(R"({"id":1,"type":"HVXBodyHeatFlux","attributes":{"magnitude_param":{"ref":2}}}
           {"id":2,"type":"Parameter","father":{"ref":1},"attributes":{"Value":4.0}}
           {"id":3,"type":"HVXBodyHeatFlux"})");
  double flux = 0.0;
  EXPECT_EQ(As<HVXIHeatFlux>(1)->SetMagnitude(5.0), S_OK);
  EXPECT_EQ(As<HVXIHeatFlux>(1)->GetMagnitude(flux), S_OK);
  EXPECT_EQ(flux, 5.0);
  EXPECT_EQ(Line(2), R"({"id":2,"type":"Parameter","father":{"ref":1},"attributes":{"Value":5.0}})");
  EXPECT_EQ(As<HVXIHeatFlux>(3)->SetMagnitude(5.0), E_FAIL);
}

TEST_F(ConditionAdaptersTest, ANegativeEndIncrementIsCorrectedForTheCallerToo) {
  Given(R"({"id":1,"type":"HVXTemperatureHistoryLT"}
           {"id":2,"type":"SAMBasicComponent","name":"EndIncrement","father":{"ref":1},"attributes":{"Type":"SAMInteger","Values":9}}
           {"id":3,"type":"HVXTemperatureHistoryLT"})");
  std::int32_t increment = -4;
  EXPECT_EQ(As<HVXITemperatureHistory>(3)->SetEndIncrement(increment), E_FAIL);
  EXPECT_EQ(increment, -4);
  EXPECT_EQ(As<HVXITemperatureHistory>(1)->SetEndIncrement(increment), S_OK);
  EXPECT_EQ(increment, 0);
  EXPECT_NE(Line(2).find(R"("Values":0)"), std::string::npos);
}

TEST_F(ConditionAdaptersTest, AnAxisMustBeThere) {
  Given(R"({"id":1,"type":"HVXRotationalBodyForce"}
           {"id":2,"type":"Axis"}
           {"id":3,"type":"Part"})");
  const auto spForce = As<HVXIRotationalBodyForce>(1);
  EXPECT_EQ(spForce->SetAxisData(NULL_var, As<VLMISpecObject>(3)), E_FAIL);
  EXPECT_EQ(spForce->SetAxisData(As<VLMILinkableObject>(2), As<VLMISpecObject>(3)), S_OK);
  VLMILinkableObject_var spAxis;
  EXPECT_EQ(spForce->GetAxis(spAxis), S_OK);
  EXPECT_TRUE(spAxis == As<VLMILinkableObject>(2));
}

}  // namespace
