#include <gmock/gmock.h>

#include <numbers>

#include "base/VLMFatalError.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A shell section (#1) with its material orientation (#2).
class HVXEShellSectionEnhUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenAngle(const std::string& attributes) {
    Given(R"({"id":1,"type":"HVXShellSectionEnhLT","attributes":{"MaterialOrientation":{"ref":2}}}
             {"id":2,"type":"HVXMatOrientationLT","father":{"ref":1},"attributes":{)" +
          attributes + "}}");
  }
  double Angle() {
    double angle = -1.0;
    static_cast<void>(standalone::ReadAttribute(At(2), standalone::Key("Angle"), angle));
    return angle;
  }
};

TEST_F(HVXEShellSectionEnhUpgradeTest, DegreesBecomeRadiansAtEachOccurrence) {
  GivenAngle(R"("Angle":90.0)");
  EXPECT_EQ(Upgrade(1, {"UpgradeMatOrientAngleToRadians"}), S_OK);
  EXPECT_DOUBLE_EQ(Angle(), std::numbers::pi / 2);
  GivenAngle(R"("Angle":90.0)");
  EXPECT_EQ(Upgrade(1, {"UpgradeMatOrientAngleToRadians", "UpgradeMatOrientAngleToRadians"}), S_OK);
  EXPECT_DOUBLE_EQ(Angle(), std::numbers::pi / 2 * std::numbers::pi / 180);
  GivenAngle(R"("Angle":0.0)");
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(1, {"UpgradeMatOrientAngleToRadians"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEShellSectionEnhUpgradeTest, OnlyAFeatureThatIsNoShellSectionFails) {
  Given(R"({"id":1,"type":"HVXShellSectionEnhLT","attributes":{"MaterialOrientation":null}})");
  EXPECT_EQ(Upgrade(1, {"UpgradeMatOrientAngleToRadians"}), S_OK);
  GivenAngle(R"("Angle":90.0)");
  EXPECT_EQ(UpgradeUnder(Failing("HVXIMatOrientation::SetAngle"), 1, {"UpgradeMatOrientAngleToRadians"}),
            S_OK);
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIShellSection", 1), 1, {"UpgradeMatOrientAngleToRadians"}), E_FAIL);
  EXPECT_EQ(Angle(), 90.0);
}

// A gasket property (#1) with its old component (#2).
class HVXEGasketPropertyUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenGasket(const std::string& component = R"("Type":"SAMDouble","Values":1250.0)") {
    Given(R"({"id":1,"type":"HVXGaskPropertyLT"}
             {"id":2,"type":"SAMBasicComponent","name":"StabilisationStiffnessValue","father":{"ref":1},"attributes":{)" +
          component + "}}");
  }
  HRESULT MoveStiffness(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 1, {"UpgradeGasketStabilizationStiffnessUnit"});
  }
};

TEST_F(HVXEGasketPropertyUpgradeTest, StiffnessMovesUnchangedAndTheOldComponentGoes) {
  GivenGasket();
  EXPECT_EQ(MoveStiffness(Recording()), S_OK);
  EXPECT_EQ(Line(2), "removed");
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("name":"StabilizationStiffness")"));
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("Values":1250.0)"));
  EXPECT_THAT(Line(4), testing::HasSubstr(R"("name":"InitialGap")"));
  EXPECT_EQ(Calls(), (CallList{"VLMISamUpgrade::Upgrade #1",
                               "HVXISpecObjectExt::GetBasicComponent #1 StabilisationStiffnessValue",
                               "VLMISamBasicComponent::GetValueAsReal #2",
                               "HVXIGasketSection::SetStabilizationStiffness #1",
                               "HVXISpecObjectExt::GetBasicComponent #1 StabilisationStiffnessValue",
                               "VLMISpecObject::RemoveSon #1 StabilisationStiffnessValue"}));
}

TEST_F(HVXEGasketPropertyUpgradeTest, EachStepNeedsTheOneBefore) {
  struct Fault {
    const char* operation;
    bool reachesLookup;
  };
  for (const auto& [operation, reachesLookup] :
       {Fault{"VLMISamUpgrade::Upgrade", false}, Fault{"HVXISpecObjectExt::GetBasicComponent", true},
        Fault{"VLMISamBasicComponent::GetValueAsReal", true},
        Fault{"HVXIGasketSection::SetStabilizationStiffness", true}}) {
    GivenGasket();
    EXPECT_EQ(MoveStiffness(Failing(operation)), S_OK) << operation;  // the routine's result is not looked at
    EXPECT_EQ(Calls("HVXISpecObjectExt::").size(), reachesLookup ? 1U : 0U) << operation;
    EXPECT_FALSE(At(2).removed) << operation;
  }
  GivenGasket(R"("Type":"SAMString","Values":"soft")");
  EXPECT_EQ(MoveStiffness({}), S_OK);
  EXPECT_FALSE(At(2).removed);
  EXPECT_EQ(MoveStiffness(Withholding("HVXIGasketSection", 1)), S_OK);
  EXPECT_EQ(Calls("HVXISpecObjectExt::"), CallList{});
}

TEST_F(HVXEGasketPropertyUpgradeTest, ReExplicitationStopsOnFailureAndAssertsOnANullFeature) {
  GivenGasket();
  EXPECT_EQ(Upgrade(1, {"ReExplicitateFeature"}), S_OK);
  EXPECT_FALSE(At(1).upToDate);
  try {
    static_cast<void>(UpgradeUnder(Withholding("VLMISpecObject", 1), 1, {"ReExplicitateFeature"}));
    ADD_FAILURE() << "no assertion";
  } catch (const VLMFatalAssertion& assertion) {
    EXPECT_STREQ(assertion.what(), "AssertionFailed:NULL_var != spSpecOnFeat");
    EXPECT_EQ(assertion.SourcePath(), "HVXUpgradeComponents.m/src/HVXEGasketPropertyUpgrade");
  }
  try {
    static_cast<void>(MoveStiffness(Withholding("VLMISpecObject", 1)));
    ADD_FAILURE() << "no assertion";
  } catch (const VLMFatalAssertion& assertion) {
    EXPECT_STREQ(assertion.what(), "AssertionFailed:NULL_var != spSpecOnSelf");
  }
}

class HVXEPretensionPropUpgradeTest : public testing_support::UpgradeTest {};

TEST_F(HVXEPretensionPropUpgradeTest, HostCompletesTheComponentsAndItsFailureIsGiven) {
  Given(R"({"id":1,"type":"HVXPreTensionPropertyLT"}
           {"id":2,"type":"SAMBasicComponent","name":"Magnitude","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":5000.0}})");
  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade", "", -77), 1, {"UpgradeBasicComponents"}), -77);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamUpgrade", 1), 1, {"UpgradeBasicComponents"}), E_FAIL);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(Upgrade(1, {"UpgradeBasicComponents"}), S_OK);
  EXPECT_THAT(Line(2), testing::HasSubstr(R"("Values":5000.0)"));
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("name":"PreTensionType")"));
  EXPECT_THAT(Line(4), testing::HasSubstr(R"("name":"FixAtCurrentLength")"));
}

}  // namespace
