// The conditions that move one parameter into their component, and what all conditions have in common.

#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::UpgradeTest;
using testing_support::Withholding;

enum class Parameter { kStays, kGoes, kGoesOrFails };

struct OneKeyCondition {
  const char* lateType;
  const char* identifier;
  const char* key;
  const char* interfaceName;
  const char* setter;
  const char* component;
  Parameter parameter;
};

constexpr OneKeyCondition kConditions[] = {
    {"HVXPressure", "UpgradePressureBasicComponents", "pressure_param", "HVXIPressureLoad",
     "HVXIPressureLoad::SetMagnitude", "Pressure", Parameter::kGoesOrFails},
    {"HVXFilmCondition", "UpgradeFilmConditionBasicComponents", "refTemperature_param", "HVXIFilmCondition",
     "HVXIFilmCondition::SetReferenceTemperature", "ReferenceTemperature", Parameter::kGoesOrFails},
    {"HVXTemperatureLT", "UpgradeTemperatureBCBasicComponents", "magnitude_param", "HVXITemperature",
     "HVXITemperature::SetMagnitude", "Temperature", Parameter::kGoes},
    {"HVXInitialTemperatureLT", "UpgradeInitialTemperatureBasicComponents", "magnitude_param",
     "HVXITemperature", "HVXITemperature::SetMagnitude", "Temperature", Parameter::kGoes},
    {"HVXTemperatureHistoryLT", "UpgradeTemperatureHistoryBasicComponents", "magnitude_param",
     "HVXITemperature", "HVXITemperature::SetMagnitude", "Temperature", Parameter::kStays},
    {"HVXConcHeatFlux", "UpgradeConcHeatFluxBasicComponents", "magnitude_param", "HVXIHeatFlux",
     "HVXIHeatFlux::SetMagnitude", "HeatFlux", Parameter::kStays},
    {"HVXSurfaceHeatFlux", "UpgradeSurfaceHeatFluxBasicComponents", "magnitude_param", "HVXIHeatFlux",
     "HVXIHeatFlux::SetMagnitude", "HeatFlux", Parameter::kStays},
};

/// The condition's `Upgrade` swallows the routine's code; what it did is told by its calls and the document.
class OneKeyConditionTest : public UpgradeTest, public testing::WithParamInterface<OneKeyCondition> {
 protected:
  void GivenCondition(const std::string& parameter = R"({"ref":3})") {
    Given(std::string(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
                         {"id":2,"type":")") +
          GetParam().lateType + R"(","father":{"ref":1},"attributes":{")" + GetParam().key +
          "\":" + parameter + R"(}}
                         {"id":3,"type":"Parameter","father":{"ref":2},"attributes":{"Value":0.1}})");
  }

  HRESULT Migrate(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {GetParam().identifier});
  }

  [[nodiscard]] bool IsRegistered() { return Line(1).find(R"([{"ref":2}])") != std::string::npos; }
  [[nodiscard]] bool KeepsParameter() {
    return Line(2).find("_param") != std::string::npos && !Doc().Find(3)->removed;
  }
  [[nodiscard]] bool HoldsValue(const char* value) {
    return Lines().find(std::string("\"name\":\"") + GetParam().component +
                        R"(","father":{"ref":2},"attributes":{"Type":"SAMDouble")") != std::string::npos &&
           Lines().find(std::string("\"Values\":") + value + "}") != std::string::npos;
  }
};
INSTANTIATE_TEST_SUITE_P(Conditions, OneKeyConditionTest, testing::ValuesIn(kConditions),
                         [](const auto& condition) { return std::string(condition.param.lateType); });

TEST_P(OneKeyConditionTest, ValueMovesIntoTheComponentAndTheFeatureIsRegistered) {
  GivenCondition();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  const CallList all = Calls();
  const auto position = [&all](const std::string& prefix) {
    for (std::size_t i = 0; i < all.size(); ++i)
      if (all[i].starts_with(prefix)) return i;
    return all.size();
  };
  EXPECT_LT(position("VLMISamUpgrade::Upgrade #2"), position("VLMISpecAttrAccess::GetAttrKey #2"));
  EXPECT_LT(position("VLMIKpeValue::AsReal #3"), position(GetParam().setter));
  EXPECT_LT(position(GetParam().setter), position("VLMISpecAttrAccess::GetAttrKey #1 FeatList"));
  EXPECT_TRUE(HoldsValue("0.1")) << Lines();
  EXPECT_TRUE(IsRegistered());
  EXPECT_EQ(KeepsParameter(), GetParam().parameter == Parameter::kStays);
  EXPECT_EQ(Calls("VLMIModelEvents::"), CallList{});  // none of these announces itself
}

TEST_P(OneKeyConditionTest, AFailedHostUpgradeEndsItBeforeTheRead) {
  GivenCondition();
  EXPECT_EQ(Migrate(Failing("VLMISamUpgrade::Upgrade")), S_OK);
  EXPECT_EQ(Calls("VLMISpecAttrAccess::"), CallList{});
  EXPECT_EQ(Migrate(Withholding("VLMISamUpgrade", 2)), S_OK);
  EXPECT_EQ(Calls("VLMISpecAttrAccess::"), CallList{});
}

TEST_P(OneKeyConditionTest, AMissingInterfaceIsFoundBeforeTheRead) {
  for (const char* const interfaceName : {"VLMISpecAttrAccess", GetParam().interfaceName}) {
    GivenCondition();
    EXPECT_EQ(Migrate(Withholding(interfaceName, 2)), S_OK);
    EXPECT_EQ(Calls("VLMIKpeParm::GetValue"), CallList{}) << interfaceName;
    EXPECT_FALSE(IsRegistered());
  }
}

TEST_P(OneKeyConditionTest, WithoutAReadableParameterOrWithAFailedSetterNothingElseHappens) {
  GivenCondition("null");
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Calls(GetParam().setter), CallList{});
  EXPECT_FALSE(IsRegistered());

  GivenCondition();
  EXPECT_EQ(Migrate(Failing(GetParam().setter)), S_OK);
  EXPECT_TRUE(KeepsParameter());
  EXPECT_FALSE(IsRegistered());
}

TEST_P(OneKeyConditionTest, OnlyWhereRemovalDecidesAFailedOneKeepsTheFeatureUnregistered) {
  GivenCondition();
  if (GetParam().parameter == Parameter::kStays) {
    EXPECT_EQ(Migrate(Recording()), S_OK);
    EXPECT_EQ(Calls("VLMISamAnalysisModel::RemoveObject"), CallList{});
    return;
  }
  EXPECT_EQ(Migrate(Failing("VLMISamAnalysisModel::RemoveObject")), S_OK);
  EXPECT_TRUE(HoldsValue("0.1"));
  EXPECT_TRUE(KeepsParameter());
  EXPECT_EQ(IsRegistered(), GetParam().parameter == Parameter::kGoes);
}

class ConditionTest : public UpgradeTest {
 protected:
  void GivenFeature(const std::string& lateType) {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":")" +
          lateType + R"(","father":{"ref":1}})");
  }
};

TEST_F(ConditionTest, SharedStepsOfEveryConditionStopTheUpgrade) {
  for (const char* const lateType : {"HVXDisplacementBC", "HVXClamp", "HVXConcentratedForce", "HVXPressure",
                                     "HVXGravity", "HVXRotationalBodyForce", "HVXConcHeatFlux",
                                     "HVXSurfaceHeatFlux", "HVXBodyHeatFlux", "HVXFilmCondition"}) {
    GivenFeature(lateType);
    EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 2), 2, {"ReExplicitateFeature"}), E_FAIL)
        << lateType;
    EXPECT_EQ(Upgrade(2, {"ReExplicitateFeature"}), S_OK);
    EXPECT_FALSE(At(2).upToDate) << lateType;
  }
  for (const char* const lateType : {"HVXGravity", "HVXRotationalBodyForce", "HVXInitialTemperatureLT",
                                     "HVXTemperatureHistoryLT", "HVXBodyHeatFlux"}) {
    GivenFeature(lateType);
    EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisSupport", 2), 2, {"UpgradeBodySupport"}), E_FAIL)
        << lateType;
  }
  for (const auto& [lateType, identifier] :
       {std::pair{"HVXRotationalBodyForce", "UpgradeBasicComponents"},
        {"HVXSurfaceHeatFlux", "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents"},
        {"HVXFilmCondition", "UpgradeFilmConditionInvertSurfaceBasicComponents"}}) {
    GivenFeature(lateType);
    EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade", "", -77), 2, {identifier, identifier}), -77);
    EXPECT_EQ(Calls().size(), 1U);
    EXPECT_EQ(UpgradeUnder(Recording(), 2, {identifier}), S_OK);
    EXPECT_EQ(Calls(), CallList{"VLMISamUpgrade::Upgrade #2"});  // neither transfer nor registration
  }
}

TEST_F(ConditionTest, MidsideNodesAreInterpolatedAfterTheHostUpgrade) {
  for (const auto& [lateType, setter] :
       {std::pair{"HVXInitialTemperatureLT", "HVXIInitialTemperature::SetMidside"},
        {"HVXTemperatureHistoryLT", "HVXITemperatureHistory::SetMidside"}}) {
    GivenFeature(lateType);
    EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeTempMidside"}), S_OK);
    EXPECT_EQ(Calls(), (CallList{"VLMISamUpgrade::Upgrade #2", std::string(setter) + " #2 MidsideNodes"}));
    EXPECT_NE(Lines().find(R"("Type":"SAMBoolean","Values":true)"), std::string::npos) << Lines();
    EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade"), 2, {"UpgradeTempMidside"}), S_OK);
    EXPECT_EQ(Calls(setter), CallList{});
    EXPECT_EQ(UpgradeUnder(Failing(setter), 2, {"UpgradeTempMidside"}), S_OK);
  }
}

TEST_F(ConditionTest, EndIncrementOfAHistoryBecomesZeroWithoutAHostUpgrade) {
  Given(R"({"id":2,"type":"HVXTemperatureHistoryLT"}
           {"id":3,"type":"SAMBasicComponent","name":"EndIncrement","father":{"ref":2},"attributes":{"Type":"SAMInteger","Values":-1}})");
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeEndIncrementOption"}), S_OK);
  EXPECT_EQ(Calls(), CallList{"HVXITemperatureHistory::SetEndIncrement #2 EndIncrement"});
  EXPECT_NE(Line(3).find(R"("Values":0)"), std::string::npos);
  EXPECT_EQ(UpgradeUnder(Withholding("HVXITemperatureHistory"), 2, {"UpgradeEndIncrementOption"}), S_OK);
}

}  // namespace
