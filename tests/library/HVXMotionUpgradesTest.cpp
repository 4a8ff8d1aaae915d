// Velocity and acceleration boundary conditions: both begin with six components under velocity names.

#include <fmt/format.h>

#include "analysis/VLMISamBasicComponent.h"
#include "base/VLMFatalError.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

constexpr const char* kOldNames[] = {"HVXTranslationalVelocity_1", "HVXTranslationalVelocity_2",
                                     "HVXTranslationalVelocity_3", "HVXRotationalVelocity_1",
                                     "HVXRotationalVelocity_2",    "HVXRotationalVelocity_3"};

class MotionTest : public testing_support::UpgradeTest {
 protected:
  // Condition #2 with old components #3 to #8, which hold 0.1 to 0.6; the odd ones are active. `more` are
  // further lines.
  void GivenCondition(const std::string& lateType, const std::string& more = "", int count = 6) {
    std::string lines = R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
                           {"id":2,"type":")" +
                        lateType + R"(","father":{"ref":1}})" + "\n";
    for (int i = 0; i < count; ++i) {
      lines += fmt::format(
          R"({{"id":{},"type":"SAMBasicComponent","name":"{}","father":{{"ref":2}},"attributes":{{"Type":"SAMDouble","Values":0.{},"IsActive":{}}}}})"
          "\n",
          3 + i, kOldNames[i], i + 1, i % 2 == 0 ? 5 : 0);
    }
    Given(lines + more);
  }

  // The sons of the condition, as "name value activity".
  CallList Components() {
    CallList components;
    for (standalone::Feature* son = At(2).firstSon; son != nullptr; son = son->nextSibling) {
      double value = 0.0;
      std::int32_t active = -1;
      const auto spComponent = As<VLMISamBasicComponent>(son->id);
      static_cast<void>(spComponent->GetReal("Values", value));
      static_cast<void>(spComponent->GetInteger("IsActive", active));
      components.push_back(fmt::format("{} {} {}", son->name, value, active));
    }
    return components;
  }

  static CallList Migrated(const std::string& prefix) {
    CallList components;
    for (int i = 1; i <= 6; ++i) components.push_back(fmt::format("{}{} 0.{} {}", prefix, i, i, i % 2));
    return components;
  }

  HRESULT MigrateAcceleration(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeAcclnBCBasicComponents"});
  }
  HRESULT MigrateVelocity(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeVelocityBCBasicComponents"});
  }
};

TEST_F(MotionTest, AccelerationMovesEachDegreeOfFreedomOnItsOwn) {
  GivenCondition(
      "HVXAccelerationBCLT",
      R"({"id":9,"type":"SAMBasicComponent","name":"HVXRotationalVelocity_2","father":{"ref":2},"attributes":{"Type":"SAMDouble","Values":9.0,"IsActive":1}})");
  EXPECT_EQ(MigrateAcceleration(Recording()), S_OK);
  EXPECT_EQ(Components(), Migrated("HVXAcceleration_"));  // the repeated component is gone too
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":2}]}})");
  const CallList calls = Calls();
  EXPECT_EQ(calls.front(), "VLMISamUpgrade::Upgrade #2");
  EXPECT_EQ(
      CallList(calls.begin() + 1, calls.begin() + 8),
      (CallList{"VLMISamAnalysisEntity::GetBasicComponent #2 HVXTranslationalVelocity_1",
                "VLMISamBasicComponent::GetReal #3 Values", "VLMISamBasicComponent::GetInteger #3 IsActive",
                "VLMISamAnalysisEntity::ListBasicComponents #2 HVXTranslationalVelocity_1",
                "VLMISamAnalysisEntity::RemoveBasicComponent #2 HVXTranslationalVelocity_1",
                "HVXIMotionBC::SetValue #2 HVXAcceleration_1",
                "HVXIMotionBC::SetActivity #2 HVXAcceleration_1"}));
  EXPECT_EQ(Calls("VLMISamAnalysisEntity::RemoveBasicComponent").size(), 7U);
  EXPECT_EQ(Calls("VLMIModelEvents::").size(), 1U);
}

TEST_F(MotionTest, AnAccelerationThatFailsPartWayKeepsWhatItDidAndGivesItsCode) {
  GivenCondition("HVXAccelerationBCLT", "", 3);  // the rotations lack
  EXPECT_EQ(MigrateAcceleration(Recording()), E_FAIL);
  EXPECT_EQ(Components(),
            (CallList{"HVXAcceleration_1 0.1 1", "HVXAcceleration_2 0.2 0", "HVXAcceleration_3 0.3 1",
                      "HVXAcceleration_4 0 0", "HVXAcceleration_5 0 0", "HVXAcceleration_6 0 0"}));
  EXPECT_EQ(Calls("VLMIModelEvents::"), CallList{});
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})");
}

TEST_F(MotionTest, AccelerationFailuresHaveTheirCodes) {
  for (const char* const operation :
       {"VLMISamUpgrade::Upgrade", "VLMISamAnalysisEntity::GetBasicComponent",
        "VLMISamBasicComponent::GetReal", "VLMISamBasicComponent::GetInteger",
        "VLMISamAnalysisEntity::ListBasicComponents", "VLMISamAnalysisEntity::RemoveBasicComponent",
        "HVXIMotionBC::SetValue", "HVXIMotionBC::SetActivity"}) {
    GivenCondition("HVXAccelerationBCLT");
    EXPECT_EQ(MigrateAcceleration(Failing(operation, "", -77)), -77) << operation;
  }
  GivenCondition("HVXAccelerationBCLT");
  EXPECT_EQ(MigrateAcceleration(Withholding("VLMISamUpgrade", 2)), E_FAIL);
  EXPECT_EQ(MigrateAcceleration(Withholding("VLMISpecAttrAccess", 2)), E_NOINTERFACE);
  EXPECT_EQ(MigrateAcceleration(Withholding("HVXIMotionBC", 2)), E_FAIL);
  try {
    static_cast<void>(MigrateAcceleration(Withholding("VLMISamAnalysisEntity", 2)));
    FAIL();
  } catch (const VLMFatalAssertion& assertion) {
    EXPECT_STREQ(assertion.what(), "AssertionFailed:NULL_var != spThisSamEntity");
    EXPECT_EQ(assertion.SourcePath(), "HVXUpgradeComponents.m/src/HVXEAcclnBCUpgrade");
  }
}

TEST_F(MotionTest, ASecondAccelerationRunFailsInItsFirstReadAndThatIsTheResult) {
  GivenCondition("HVXAccelerationBCLT");
  EXPECT_EQ(Upgrade(2, {"UpgradeAcclnBCBasicComponents", "UpgradeAcclnBCBasicComponents"}), E_FAIL);
  EXPECT_EQ(Components(), Migrated("HVXAcceleration_"));
}

TEST_F(MotionTest, VelocityIsReadStrippedUpgradedAndWritten) {
  GivenCondition(
      "HVXVelocityBCLT",
      R"({"id":9,"type":"SAMBasicComponent","name":"Other","father":{"ref":2},"attributes":{"Type":"SAMDouble","Values":9.0}})");
  EXPECT_EQ(MigrateVelocity(Recording()), S_OK);
  EXPECT_EQ(Components(), Migrated("HVXVelocity_"));
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":2}]}})");
  const CallList calls = Calls();
  EXPECT_EQ(CallList(calls.begin(), calls.begin() + 3),
            (CallList{"HVXIMotionBC::GetValue #2 HVXVelocity_1", "HVXIMotionBC::GetActivity #2 HVXVelocity_1",
                      "HVXIMotionBC::GetValue #2 HVXVelocity_2"}));
  // 12 reads, the list, a name and a removal for each of seven, and then the upgrade.
  EXPECT_EQ(calls[12], "VLMISamAnalysisEntity::ListBasicComponents #2");
  EXPECT_EQ(calls[14], "VLMISamAnalysisEntity::RemoveBasicComponent #2 HVXTranslationalVelocity_1");
  EXPECT_EQ(calls[26], "VLMISamAnalysisEntity::RemoveBasicComponent #2 Other");
  EXPECT_EQ(calls[27], "VLMISamUpgrade::Upgrade #2");
  EXPECT_EQ(calls[28], "HVXIMotionBC::SetValue #2 HVXVelocity_1");
  EXPECT_EQ(calls[29], "HVXIMotionBC::SetActivity #2 HVXVelocity_1");
  EXPECT_EQ(Calls("VLMIModelEvents::"), CallList{});
}

TEST_F(MotionTest, VelocityFailuresHaveTheirCodes) {
  for (const char* const operation :
       {"HVXIMotionBC::GetValue", "HVXIMotionBC::GetActivity", "VLMISamAnalysisEntity::ListBasicComponents",
        "VLMISamAnalysisEntity::RemoveBasicComponent", "VLMISamUpgrade::Upgrade", "HVXIMotionBC::SetValue",
        "HVXIMotionBC::SetActivity"}) {
    GivenCondition("HVXVelocityBCLT");
    EXPECT_EQ(MigrateVelocity(Failing(operation, "", -77)), -77) << operation;
    EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})") << operation;
  }
  GivenCondition("HVXVelocityBCLT");
  const std::string before = Lines();
  EXPECT_EQ(MigrateVelocity(Withholding("HVXIMotionBC", 2)), E_FAIL);
  EXPECT_EQ(MigrateVelocity(Withholding("VLMISamAnalysisEntity", 2)), E_FAIL);
  EXPECT_EQ(Lines(), before);
  // The values are read before what holds the components is asked for.
  standalone::CheckpointPlan plan = Failing("HVXIMotionBC::GetValue", "", -77);
  plan.withholdInterface = "VLMISamAnalysisEntity";
  EXPECT_EQ(MigrateVelocity(plan), -77);
}

}  // namespace
