#include <gmock/gmock.h>

#include "check/Conformity.h"
#include "support/UpgradeFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A model (#1) with a case (#2), a history (#3) and what a test adds.
class ConformityTest : public testing_support::UpgradeTest {
 protected:
  void GivenCaseWith(std::string_view lines) {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":"AnalysisCase","father":{"ref":1},)"
          R"("attributes":{"Solver":"Halvex","AnalysisType":1}}
             {"id":3,"type":"HVXSimulationHistoryLT","father":{"ref":2}}
             )" +
          std::string(lines));
  }

  // "#id identifier" (or "-") for each finding, with a mark for damage.
  std::vector<std::string> Found() {
    std::vector<std::string> found;
    for (const standalone::Finding& finding : standalone::CheckConformity(Doc())) {
      found.push_back('#' + std::to_string(finding.feature->id) + ' ' +
                      (finding.identifier.empty() ? "-" : std::string(finding.identifier)) +
                      (finding.damage.empty() ? "" : " damaged"));
    }
    return found;
  }
};

TEST_F(ConformityTest, ConditionsAreCurrentOnceTheirValueHasMoved) {
  GivenCaseWith(R"({"id":4,"type":"HVXPressure","father":{"ref":3},"attributes":{"pressure_param":{"ref":5}}}
                   {"id":5,"type":"Parameter","father":{"ref":4},"attributes":{"Value":2.5}}
                   {"id":6,"type":"HVXPressure","father":{"ref":3}})");
  EXPECT_THAT(Found(),
              ElementsAre("#4 UpgradePressureBasicComponents", "#6 UpgradePressureBasicComponents damaged"));
  EXPECT_EQ(Upgrade(4, {"UpgradePressureBasicComponents"}), S_OK);
  static_cast<void>(Upgrade(6, {"UpgradePressureBasicComponents"}));
  EXPECT_THAT(Found(), ElementsAre("#6 UpgradePressureBasicComponents damaged"));
}

// Nothing can be registered without the list of the analysis model.
TEST_F(ConformityTest, AModelWithoutFeatureListKeepsConditionsOld) {
  Given(R"({"id":1,"type":"AnalysisModel"}
           {"id":2,"type":"HVXVelocityBCLT","father":{"ref":1}})");
  EXPECT_THAT(Found(), ElementsAre("#2 UpgradeVelocityBCBasicComponents damaged"));
}

TEST_F(ConformityTest, RedundantSonsAreOldAndStrayOnesDamage) {
  constexpr std::string_view kConnector = R"({"id":5,"type":"GeometrySmartConnector","father":{"ref":4}}
      {"id":6,"type":"SAMBasicComponent","name":"AxisSystemType","father":{"ref":4},"attributes":{"Type":"SAMInteger","Values":0}}
      {"id":7,"type":"SAMBasicComponent","name":")";
  const std::string condition = R"({"id":4,"type":"HVXDisplacementBC","father":{"ref":3},)"
                                R"("attributes":{"Supports":[],"SonsList":[{"ref":5},{"ref":6},{"ref":7}]}})"
                                "\n" +
                                std::string(kConnector);
  GivenCaseWith(condition + R"(Stray","father":{"ref":4}})");
  EXPECT_THAT(Found(), ElementsAre("#4 UpgradeDispBCBasicComponents damaged"));
  GivenCaseWith(condition + R"(DisplBCTrans","father":{"ref":4}})");
  EXPECT_THAT(Found(), ElementsAre("#4 UpgradeDispBCBasicComponents"));
  EXPECT_EQ(Upgrade(4, {"UpgradeDispBCBasicComponents"}), S_OK);
  EXPECT_THAT(Found(), IsEmpty());
}

TEST_F(ConformityTest, StepsNeedContainerAndComponents) {
  GivenCaseWith(R"({"id":4,"type":"HVXRiksStepLT","father":{"ref":3}}
                   {"id":5,"type":"HVXHeatTransferStepLT","father":{"ref":3}}
                   {"id":6,"type":"HVXExplicitDynamicsStepLT","father":{"ref":3}})");
  EXPECT_THAT(Found(), ElementsAre("#4 AddConnectionContainer", "#5 AddConnectionContainer",
                                   "#5 UpgFromSpecToComp damaged"));
  EXPECT_EQ(Upgrade(4, {"AddConnectionContainer"}), S_OK);
  EXPECT_EQ(Upgrade(5, {"AddConnectionContainer"}), S_OK);
  EXPECT_THAT(Found(), ElementsAre("#5 UpgFromSpecToComp damaged"));
}

TEST_F(ConformityTest, ContactsBecomeWholePairs) {
  GivenCaseWith(R"({"id":4,"type":"HVXInteractionContainerLT","father":{"ref":2}}
                   {"id":5,"type":"HVXContactConnectionEnhancementStdLT","father":{"ref":4},)"
                R"("container":{"ref":7},"attributes":{"connectionProperty":null}}
                   {"id":6,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":4}}
                   {"id":7,"type":"SAMContainer"})");
  EXPECT_THAT(Found(), ElementsAre("#5 UpgContactStdWithInterference", "#5 UpgContactWithContactControl",
                                   "#5 UpgContactWithContactControl", "#5 UpgradeContactWithSurfSmoothParam",
                                   "#6 UpgradeToContactConnectionEnhancementLT damaged"));
  EXPECT_EQ(Upgrade(5, {"UpgContactStdWithInterference", "UpgContactWithContactControl",
                        "UpgradeContactWithSurfSmoothParam"}),
            S_OK);
  EXPECT_THAT(Found(), ElementsAre("#6 UpgradeToContactConnectionEnhancementLT damaged"));
}

TEST_F(ConformityTest, ConstraintsWithoutSupportsAreUnfinishedNotOld) {
  GivenCaseWith(R"({"id":4,"type":"HVXRigidBodyConstraintLT","father":{"ref":3}})");
  EXPECT_THAT(Found(), ElementsAre("#4 AddCenterOfMassToRBC", "#4 UpgradeBasicComponents"));
  static_cast<void>(Upgrade(4, {"AddCenterOfMassToRBC", "UpgradeBasicComponents"}));
  EXPECT_THAT(Found(), IsEmpty());
}

TEST_F(ConformityTest, PropertiesJobsAndSolutions) {
  GivenCaseWith(R"({"id":4,"type":"HVXInteractionPropertyLT","father":{"ref":1},)"
                R"("attributes":{"tangentialBehavior":{"ref":5}}}
                   {"id":5,"type":"HVXTangentialBehaviorLT","father":{"ref":4},)"
                R"("attributes":{"UserSubroutine":true,"frictionValList":[0.2]}}
                   {"id":6,"type":"HVXJobLT","father":{"ref":2},)"
                R"("attributes":{"RunType":"From InputFile","ListOfRuleNames":[]}}
                   {"id":7,"type":"HVXHacSolutionLT","alias":"HALVEX Solution","father":{"ref":2}}
                   {"id":8,"type":"HVXHacAnaStepSolLT","father":{"ref":7},"attributes":{"ResultStepType":3}})");
  EXPECT_THAT(Found(),
              ElementsAre("#4 UserSubRoutineAttrUpgrade", "#4 FrictionValueUpgrade", "#6 RemoveConsisChkAttr",
                          "#6 UpgradeJobRestartData damaged", "#6 UpgradeJobForFromInputFile",
                          "#6 UpgradeJobMemoryUnit", "#7 UpgradeAnalysisCase",
                          "#7 UpgradeAnalysisCaseExternalName", "#8 UpgradeThermalSolutionStep"));
  static_cast<void>(Upgrade(2, {"UpgradeAnalysisCaseExternalName"}));
  static_cast<void>(Upgrade(4, {"UserSubRoutineAttrUpgrade", "FrictionValueUpgrade"}));
  static_cast<void>(Upgrade(6, {"UpgradeJobForFromInputFile", "UpgradeJobMemoryUnit"}));
  static_cast<void>(Upgrade(7, {"UpgradeAnalysisCase"}));
  static_cast<void>(Upgrade(8, {"UpgradeThermalSolutionStep"}));
  EXPECT_THAT(Found(), ElementsAre("#6 RemoveConsisChkAttr", "#6 UpgradeJobRestartData damaged"));
}

// Only whole names count, and not those of requests that were made with all that is preselected.
TEST_F(ConformityTest, NodalTemperatureIsOldInCasesThatAreNotThermal) {
  const auto found = [this](std::string_view list, std::string_view further) {
    GivenCaseWith(R"({"id":4,"type":"HVXNewFieldOutputLT","father":{"ref":3},"attributes":{)"
                  R"("VariableSelection":1,"PreselectedVariableList":")" +
                  std::string(list) + '"' + std::string(further) + "}}");
    static_cast<void>(Upgrade(4, {"UpgradeFORBasicComponents"}));
    return Found();
  };
  EXPECT_THAT(found("S,NT", ""), ElementsAre("#4 UpgradeFORPreselectedVarListAttr"));
  EXPECT_THAT(found("NT", ""), ElementsAre("#4 - damaged"));
  EXPECT_THAT(found("NT11,S", ""), IsEmpty());
  EXPECT_THAT(found("S,NT", R"(,"PropagationState":0)"), IsEmpty());
}

}  // namespace
