#include "analysis/ComponentLayouts.h"
#include "analysis/VLMISamUpgrade.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;

class HVXEBasicComponentUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenFeature(const std::string& lateType, const std::string& sons = "") {
    Given(R"({"id":1,"type":")" + lateType + "\"}\n" + sons);
  }

  static const HVXUpgradeClass& Class() {
    for (const HVXUpgradeClass* const each : testing_support::Library().classes)
      if (std::string_view(each->name) == "HVXEBasicComponentUpgrade") return *each;
    throw std::logic_error("not in the library");
  }
};

TEST_F(HVXEBasicComponentUpgradeTest, TheHostsUpgradeReachesEveryLateTypeOfTheTable) {
  EXPECT_EQ(Class().lateTypes.size(), 18U);
  for (const char* const lateType : Class().lateTypes) {
    GivenFeature(lateType);
    const auto spUpgrade = As<VLMISamUpgrade>(1);
    ASSERT_FALSE(spUpgrade == NULL_var) << lateType;
    EXPECT_EQ(spUpgrade->NeedToUpgrade(), 1) << lateType;
    EXPECT_EQ(spUpgrade->Upgrade(), S_OK) << lateType;
    EXPECT_EQ(spUpgrade->NeedToUpgrade(), 0) << lateType;
    const std::string once = Lines();
    EXPECT_EQ(spUpgrade->Upgrade(), S_OK);
    EXPECT_EQ(Lines(), once) << lateType;
  }
}

TEST_F(HVXEBasicComponentUpgradeTest, WhatLacksIsMadeInTheLayoutsOrderAndWhatIsThereStays) {
  GivenFeature(
      "HVXFilmCondition",
      R"({"id":2,"type":"SAMBasicComponent","name":"FilmCoefficient","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":25.0}})");
  EXPECT_EQ(As<VLMISamUpgrade>(1)->Upgrade(), S_OK);
  EXPECT_EQ(Lines(),
            R"({"id":1,"type":"HVXFilmCondition"}
{"id":2,"type":"SAMBasicComponent","name":"FilmCoefficient","father":{"ref":1},"attributes":{"Type":"SAMDouble","Values":25.0}}
{"id":3,"type":"SAMBasicComponent","name":"ReferenceTemperature","father":{"ref":1},"attributes":{"Type":"SAMDouble","Magnitude":"TEMPRTRE","Values":0.0}}
{"id":4,"type":"SAMBasicComponent","name":"InvertSurface","father":{"ref":1},"attributes":{"Type":"SAMBoolean","Values":false}}
)");
}

TEST_F(HVXEBasicComponentUpgradeTest, ResultsAreTheHosts) {
  GivenFeature("HVXPressure");
  {
    const standalone::CheckpointScope scope(Failing("VLMISamUpgrade::Upgrade", "", -77));
    EXPECT_EQ(As<VLMISamUpgrade>(1)->Upgrade(), -77);
  }
  const standalone::CheckpointScope scope(Failing("VLMISamUpgrade::NeedToUpgrade"));
  EXPECT_EQ(As<VLMISamUpgrade>(1)->NeedToUpgrade(), 0);
}

TEST_F(HVXEBasicComponentUpgradeTest, OtherLateTypesGetNoUpgradeFromHere) {
  GivenFeature("HVXClamp");
  EXPECT_TRUE(As<VLMISamUpgrade>(1) == NULL_var);
}

}  // namespace
