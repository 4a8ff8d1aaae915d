// The incrementation of general static and heat transfer steps.

#include <fmt/format.h>

#include <algorithm>

#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

class StepTest : public testing_support::UpgradeTest {
 protected:
  // Step #2 with old parameters #3, #4, ... under these keys, which hold 0.1, 0.2, ...
  void GivenStep(const std::string& lateType, const std::vector<std::string>& keys,
                 const std::string& model = "") {
    std::string attributes;
    std::string parameters;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      attributes += fmt::format(R"({}"{}":{{"ref":{}}})", i == 0 ? "" : ",", keys[i], i + 3);
      parameters +=
          fmt::format(R"({{"id":{},"type":"Parameter","father":{{"ref":2}},"attributes":{{"Value":0.{}}}}})"
                      "\n",
                      i + 3, i + 1);
    }
    Given(fmt::format(R"({{"id":1,"type":"AnalysisModel","attributes":{{{}}}}}
                         {{"id":2,"type":"{}","father":{{"ref":1}},"attributes":{{{}}}}}
                         {})",
                      model, lateType, attributes, parameters));
    state_ = Lines();
  }

  HRESULT Migrate(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 2, {"UpgFromSpecToComp"});
  }

  // The step's components, as "name value <- parameter value"; and nothing after the arrow without a
  // parameter.
  CallList Components() {
    static const standalone::Key parameterKey("Parameter");
    static const standalone::Key valuesKey("Values");
    static const standalone::Key valueKey("Value");
    CallList components;
    for (standalone::Feature* son = At(2).firstSon; son != nullptr; son = son->nextSibling) {
      if (son->TypeName() != "SAMBasicComponent") continue;
      double value = 0.0;
      static_cast<void>(standalone::ReadAttribute(*son, valuesKey, value));
      std::string driver;
      if (standalone::Feature* const parameter = standalone::LinkedFeature(*son, parameterKey)) {
        double driving = 0.0;
        static_cast<void>(standalone::ReadAttribute(*parameter, valueKey, driving));
        EXPECT_EQ(parameter->father, &At(2));
        driver = fmt::format(" {} {}", parameter->name, driving);
      }
      components.push_back(fmt::format("{} {} <-{}", son->name, value, driver));
    }
    return components;
  }

  [[nodiscard]] const std::string& Before() const { return state_; }

 private:
  std::string state_;
};

class GeneralStaticStepTest : public StepTest {
 protected:
  void GivenStaticStep(const std::string& model = "") {
    GivenStep("HVXGeneralStaticStepLT",
              {"StepTimePeriod_param", "StepInitialIncrement_param", "StepMaximumIncrement_param",
               "StepMinimumIncrement_param", "StepStabilizationFactor_param"},
              model);
  }
};

class HeatTransferStepTest : public StepTest {
 protected:
  void GivenHeatStep() {
    GivenStep("HVXHeatTransferStepLT",
              {"StepTimePeriod_param", "StepInitialIncrement_param", "StepMaximumIncrement_param",
               "StepMinimumIncrement_param", "StepMaximumTemperatureChange_param",
               "StepMinimumTemperatureChange_param"});
  }
};

TEST_F(GeneralStaticStepTest, ValuesMoveIntoParametersThatTheStepOwns) {
  GivenStaticStep();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Components(),
            (CallList{"StepTime 0.1 <- Step Time 0.1", "InitialIncrement 0.2 <- Initial Increment Size 0.2",
                      "MaximumIncrement 0.3 <- Maximum Increment Size 0.3",
                      "MinimumIncrement 0.4 <- Minimum Increment Size 0.4",
                      "StabilizationFactor 0.5 <- Stabilization Factor 0.5"}));
  // Reading, creating and setting have an order of their own each.
  EXPECT_EQ(Calls("VLMISpecAttrAccess::GetAttrKey"),
            (CallList{"VLMISpecAttrAccess::GetAttrKey #2 StepTimePeriod_param",
                      "VLMISpecAttrAccess::GetAttrKey #2 StepInitialIncrement_param",
                      "VLMISpecAttrAccess::GetAttrKey #2 StepMaximumIncrement_param",
                      "VLMISpecAttrAccess::GetAttrKey #2 StepMinimumIncrement_param",
                      "VLMISpecAttrAccess::GetAttrKey #2 StepStabilizationFactor_param"}));
  const CallList calls = Calls();
  const auto upgrade = std::ranges::find(calls, "VLMISamUpgrade::Upgrade #2");
  ASSERT_NE(upgrade, calls.end());
  EXPECT_EQ(*(upgrade - 1), "VLMIKpeValue::AsReal #7 Value");
  EXPECT_EQ(
      CallList(upgrade + 1, calls.end()),
      (CallList{"HVXAnalysisDocUtils::GetDocument #2", "HVXAnalysisEntityUtils::CreateKpeParam #0 Step Time",
                "HVXIGeneralStaticStep::SetTimePeriodParameter #2 StepTime",
                "HVXAnalysisEntityUtils::CreateKpeParam #0 Initial Increment Size",
                "HVXIGeneralStaticStep::SetInitialIncrementParameter #2 InitialIncrement",
                "HVXAnalysisEntityUtils::CreateKpeParam #0 Minimum Increment Size",
                "HVXIGeneralStaticStep::SetMinimumIncrementParameter #2 MinimumIncrement",
                "HVXAnalysisEntityUtils::CreateKpeParam #0 Maximum Increment Size",
                "HVXIGeneralStaticStep::SetMaximumIncrementParameter #2 MaximumIncrement",
                "HVXAnalysisEntityUtils::CreateKpeParam #0 Stabilization Factor",
                "HVXIGeneralStaticStep::SetStabilizationFactorParameter #2 StabilizationFactor",
                "HVXIGeneralStaticStep::SetTimePeriod #2 StepTime",
                "HVXIGeneralStaticStep::SetInitialIncrement #2 InitialIncrement",
                "HVXIGeneralStaticStep::SetMaximumIncrement #2 MaximumIncrement",
                "HVXIGeneralStaticStep::SetMinimumIncrement #2 MinimumIncrement",
                "HVXIGeneralStaticStep::SetStabilizationFactor #2 StabilizationFactor"}));
}

TEST_F(GeneralStaticStepTest, ParametersBeginWithTheirDefaultsAndMagnitudes) {
  GivenStaticStep();
  EXPECT_EQ(Migrate(Failing("HVXIGeneralStaticStep::SetTimePeriod")),
            S_OK);  // which the first setter ends it at
  EXPECT_EQ(Components(),
            (CallList{"StepTime 1 <- Step Time 1", "InitialIncrement 1 <- Initial Increment Size 1",
                      "MaximumIncrement 1 <- Maximum Increment Size 1",
                      "MinimumIncrement 1e-05 <- Minimum Increment Size 1e-05",
                      "StabilizationFactor 0.0002 <- Stabilization Factor 0.0002"}));
  EXPECT_NE(
      Lines().find(
          R"("name":"Step Time","father":{"ref":2},"attributes":{"Magnitude":"Time","Value":1.0,"Visible":true}})"),
      std::string::npos);
  EXPECT_NE(Lines().find(R"({"Magnitude":"DIMENSIONLESS","Value":0.0002,"Visible":true})"),
            std::string::npos);
}

TEST_F(GeneralStaticStepTest, NothingChangesUnlessEveryValueIsRead) {
  GivenStep("HVXGeneralStaticStepLT", {"StepTimePeriod_param", "StepInitialIncrement_param",
                                       "StepMaximumIncrement_param", "StepMinimumIncrement_param"});
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Lines(), Before());
  GivenStaticStep();
  EXPECT_EQ(Migrate(Withholding("HVXIGeneralStaticStep", 2)), S_OK);
  EXPECT_EQ(Migrate(Withholding("VLMISpecAttrAccess", 2)), S_OK);
  EXPECT_EQ(Migrate(Failing("VLMISamUpgrade::Upgrade")), S_OK);
  EXPECT_EQ(Lines(), Before());
}

TEST_F(GeneralStaticStepTest, TheFirstSetterThatFailsIsTheLast) {
  GivenStaticStep();
  EXPECT_EQ(Migrate(Failing("HVXIGeneralStaticStep::SetMaximumIncrement")), S_OK);
  EXPECT_EQ(Calls("HVXIGeneralStaticStep::SetMinimumIncrement #"), CallList{});
  EXPECT_EQ(Migrate(Failing("HVXIGeneralStaticStep::SetMinimumIncrementParameter")), S_OK);
  EXPECT_EQ(Calls("HVXAnalysisEntityUtils::CreateKpeParam").size(), 3U);
  EXPECT_EQ(Calls("HVXIGeneralStaticStep::SetTimePeriod #"), CallList{});
  EXPECT_EQ(Migrate(Failing("HVXAnalysisEntityUtils::CreateKpeParam")), S_OK);
  EXPECT_EQ(Calls("HVXIGeneralStaticStep::"), CallList{});
}

TEST_F(GeneralStaticStepTest, ADocumentWithoutParametersEndsCreationWithSuccess) {
  GivenStaticStep(R"("CreatesParameters":false)");
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Calls("HVXAnalysisEntityUtils::CreateKpeParam").size(), 1U);
  // The values are still set, which fails at the first: the step owns no parameter.
  EXPECT_EQ(Calls("HVXIGeneralStaticStep::"), CallList{"HVXIGeneralStaticStep::SetTimePeriod #2 StepTime"});
}

TEST_F(HeatTransferStepTest, ValuesMoveIntoParametersThatTheStepOwns) {
  GivenHeatStep();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Components(),
            (CallList{"StepTime 0.1 <- Step Time 0.1", "InitialIncrement 0.2 <- Initial Increment Size 0.2",
                      "MaximumIncrement 0.3 <- Maximum Increment Size 0.3",
                      "MinimumIncrement 0.4 <- Minimum Increment Size 0.4",
                      "MinimumTemperatureChange 0.6 <- Min. Temperature Change 0.6",
                      "MaximumTemperatureChange 0.5 <- Max. Temperature Change 0.5"}));
  EXPECT_EQ(
      Calls("HVXIHeatTransferStep::"),
      (CallList{"HVXIHeatTransferStep::SetTimePeriodParameter #2 StepTime",
                "HVXIHeatTransferStep::SetInitialIncrementParameter #2 InitialIncrement",
                "HVXIHeatTransferStep::SetMinimumIncrementParameter #2 MinimumIncrement",
                "HVXIHeatTransferStep::SetMaximumIncrementParameter #2 MaximumIncrement",
                "HVXIHeatTransferStep::SetMinimumTemperatureChangeParameter #2 MinimumTemperatureChange",
                "HVXIHeatTransferStep::SetMaximumTemperatureChangeParameter #2 MaximumTemperatureChange",
                "HVXIHeatTransferStep::SetTimePeriod #2 StepTime",
                "HVXIHeatTransferStep::SetInitialIncrement #2 InitialIncrement",
                "HVXIHeatTransferStep::SetMaximumIncrement #2 MaximumIncrement",
                "HVXIHeatTransferStep::SetMinimumIncrement #2 MinimumIncrement",
                "HVXIHeatTransferStep::SetMaximumTemperatureChange #2 MaximumTemperatureChange",
                "HVXIHeatTransferStep::SetMinimumTemperatureChange #2 MinimumTemperatureChange"}));
}

TEST_F(HeatTransferStepTest, ValuesThatCannotBeSetDoNotKeepTheOthersOut) {
  GivenHeatStep();
  EXPECT_EQ(Migrate(Failing("HVXIHeatTransferStep::SetTimePeriod")), S_OK);
  EXPECT_EQ(Components().front(), "StepTime 1 <- Step Time 1");
  EXPECT_EQ(Components().back(), "MaximumTemperatureChange 0.5 <- Max. Temperature Change 0.5");

  GivenHeatStep();
  EXPECT_EQ(Migrate(Failing("HVXIHeatTransferStep::SetMinimumTemperatureChange")), S_OK);
  EXPECT_EQ(Components()[4],
            "MinimumTemperatureChange -1 <- Min. Temperature Change -1");  // its default, on purpose
}

TEST_F(HeatTransferStepTest, ASecondRunReplacesTheParameters) {
  GivenHeatStep();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  const CallList once = Components();
  const std::size_t count = Doc().FeatureCount();
  EXPECT_EQ(Migrate(Recording()), S_OK);
  EXPECT_EQ(Components(), once);
  EXPECT_EQ(Doc().FeatureCount(), count);
}

TEST_F(StepTest, OtherStepsDoNotKnowTheParameterMigration) {
  for (const char* const lateType : {"HVXRiksStepLT", "HVXStaticLPStepLT"}) {
    GivenStep(lateType, {"StepTimePeriod_param"});
    EXPECT_EQ(Migrate(Recording()), S_OK);
    EXPECT_EQ(Calls(), CallList{});
  }
}

}  // namespace
