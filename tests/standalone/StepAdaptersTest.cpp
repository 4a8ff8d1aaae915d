#include "support/UpgradeFixture.h"
#include "workbench/HVXIGeneralStaticStep.h"
#include "workbench/HVXIHeatTransferStep.h"
#include "workbench/HVXIInitialStep.h"
#include "workbench/HVXIStaticLPStep.h"
#include "workbench/HVXIStep.h"

namespace {

class StepAdaptersTest : public testing_support::UpgradeTest {};

TEST_F(StepAdaptersTest, EveryStepIsAStepAndOfOneKindAtMost) {
  for (const auto& [lateType, isInitial, isPerturbation, isStatic, isHeat] :
       {std::tuple{"HVXInitialStepLT", true, false, false, false},
        {"HVXStaticLPStepLT", false, true, false, false},
        {"HVXGeneralStaticStepLT", false, false, true, false},
        {"HVXHeatTransferStepLT", false, false, false, true},
        {"HVXRiksStepLT", false, false, false, false}}) {
    Given(std::string(R"({"id":1,"type":")") + lateType + "\"}");
    EXPECT_FALSE(As<HVXIStep>(1) == NULL_var) << lateType;
    EXPECT_EQ(!(As<HVXIInitialStep>(1) == NULL_var), isInitial) << lateType;
    EXPECT_EQ(!(As<HVXIStaticLPStep>(1) == NULL_var), isPerturbation) << lateType;
    EXPECT_EQ(!(As<HVXIGeneralStaticStep>(1) == NULL_var), isStatic) << lateType;
    EXPECT_EQ(!(As<HVXIHeatTransferStep>(1) == NULL_var), isHeat) << lateType;
  }
}

TEST_F(StepAdaptersTest, AStepOwnsOneParameterForAQuantity) {
  Given(R"({"id":1,"type":"AnalysisModel"}
           {"id":2,"type":"HVXGeneralStaticStepLT","father":{"ref":1}}
           {"id":3,"type":"SAMBasicComponent","name":"StepTime","father":{"ref":2},"attributes":{"Type":"SAMDouble","Values":1.0}}
           {"id":4,"type":"Parameter","father":{"ref":1},"attributes":{"Value":1.0}}
           {"id":5,"type":"Parameter","father":{"ref":1},"attributes":{"Value":1.0}}
           {"id":6,"type":"Parameter","father":{"ref":1},"attributes":{"Value":1.0}})");
  const auto spStep = As<HVXIGeneralStaticStep>(2);
  EXPECT_EQ(spStep->SetTimePeriod(2.0), E_FAIL);
  EXPECT_EQ(spStep->SetTimePeriodParameter(NULL_var), E_FAIL);
  EXPECT_EQ(spStep->SetInitialIncrementParameter(As<VLMIKpeParm>(4)), E_FAIL);  // no such component
  EXPECT_EQ(At(4).father, &At(1));

  EXPECT_EQ(spStep->SetTimePeriodParameter(As<VLMIKpeParm>(4)), S_OK);
  EXPECT_EQ(spStep->SetTimePeriodParameter(As<VLMIKpeParm>(4)), S_OK);  // its own stays
  EXPECT_EQ(spStep->SetTimePeriod(2.0), S_OK);
  EXPECT_EQ(Line(3),
            R"({"id":3,"type":"SAMBasicComponent","name":"StepTime","father":{"ref":2},"attributes":)"
            R"({"Type":"SAMDouble","Values":2.0,"Parameter":{"ref":4}}})");
  EXPECT_EQ(Line(4), R"({"id":4,"type":"Parameter","father":{"ref":2},"attributes":{"Value":2.0}})");

  EXPECT_EQ(spStep->SetTimePeriodParameter(As<VLMIKpeParm>(5)), S_OK);
  EXPECT_EQ(Line(4), "removed");
  const std::string five = R"({"id":5,"type":"Parameter","father":{"ref":2},"attributes":{"Value":1.0}})";
  EXPECT_EQ(Line(5), five);

  // What an old attribute links to as well stays with it.
  Doc().SetAttribute(At(2), standalone::NameTable::Intern("StepTimePeriod_param"),
                     standalone::Value::Link(&At(5)));
  EXPECT_EQ(spStep->SetTimePeriodParameter(As<VLMIKpeParm>(6)), S_OK);
  EXPECT_EQ(Line(5), five);
}

}  // namespace
