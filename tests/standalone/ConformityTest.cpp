#include <gmock/gmock.h>

#include "check/Conformity.h"
#include "support/UpgradeFixture.h"

namespace {

using standalone::FindingKind;
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

// What stays of repetitions, or behind the third place, goes by what stands where.
TEST_F(ConformityTest, ValuesThatStandWhereTheyAreNotRead) {
  const auto component = [](int id, int father, const char* name) {
    return "\n"
           R"({"id":)" +
           std::to_string(id) + R"(,"type":"SAMBasicComponent","name":")" + name + R"(","father":{"ref":)" +
           std::to_string(father) + R"(},"attributes":{"Type":"SAMDouble","Values":2.5}})";
  };
  GivenCaseWith(
      R"({"id":4,"type":"HVXSubmodelBCLT","father":{"ref":2},"attributes":{"SonsList":[{"ref":5},{"ref":6},{"ref":7}]}}
         {"id":8,"type":"HVXInitialVelocityLT","father":{"ref":2},"attributes":{"SonsList":[{"ref":9},{"ref":10},{"ref":11},{"ref":12}]}})" +
      component(5, 4, "Magnitude.2") + component(6, 4, "Magnitude") + component(7, 4, "Ramp.2") +
      component(9, 8, "InitialVelocityTrans") + component(10, 8, "HVXInitialVelocity_1") +
      component(11, 8, "HVXInitialVelocity_2") + component(12, 8, "HVXInitialVelocity_3"));
  EXPECT_THAT(Found(), ElementsAre("#4 UpgradeSubModelBCBasicComponents", "#4 - damaged",
                                   "#8 UpgradeInitialVelocityBasicComponents damaged"));
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

// The kind depends on whether the document has been through the upgrade.
TEST_F(ConformityTest, KindsTellWhatCanBecomeOfAFinding) {
  GivenCaseWith(R"({"id":4,"type":"HVXGravity","alias":"HALVEX Gravity","father":{"ref":3},)"
                R"("attributes":{"component1_param":{"ref":5},"component3_param":null}}
                   {"id":5,"type":"Parameter","father":{"ref":4}}
                   {"id":6,"type":"HVXFieldOutputLT","father":{"ref":3}}
                   {"id":7,"type":"HVXClmp"})");
  const auto found = [this](std::size_t position) { return standalone::CheckConformity(Doc()).at(position); };
  EXPECT_EQ(found(0).kind, FindingKind::kPending);
  EXPECT_EQ(found(0).key, "component1_param, component2_param, component3_param");
  EXPECT_EQ(
      found(0).Explanation(),
      "its value is not in the current basic components: the parameter behind \"component1_param\" has no "
      "value; \"component2_param\" is missing; \"component3_param\" leads to no parameter");
  EXPECT_TRUE(found(0).NextStep().ends_with(", then upgrade the document"));
  Doc().RecordUpgrade("UpgradeGravityBasicComponents");
  EXPECT_EQ(found(0).kind, FindingKind::kLeftBehind);
  EXPECT_EQ(found(0).visited, &At(4));
  EXPECT_TRUE(found(0).NextStep().ends_with(", then upgrade the document again with --retry"));
  EXPECT_EQ(found(1).identifier, "UpgradeAnalysisCaseExternalName");
  EXPECT_EQ(found(1).visited, &At(2));  // the case renames what stands beneath it
  EXPECT_EQ(found(2).kind, FindingKind::kBeyondUpgrades);
  EXPECT_EQ(found(2).visited, nullptr);
  EXPECT_EQ(found(3).kind, FindingKind::kUnknown);
  EXPECT_EQ(found(3).key, "HVXClamp");
}

// Running the upgrade again would append element assignments, or would not come to the local assignment.
TEST_F(ConformityTest, SectionControlsAreAddedOnce) {
  const auto kindOf = [this](standalone::FeatureId id, std::string_view locals) {
    GivenCaseWith(
        R"({"id":10,"type":"HVXGlobalElemAsgnLT","father":{"ref":2},"attributes":{"Entries":[{"ref":11}]}}
        {"id":11,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":10},"attributes":{"Kind":1,"ElementAssignments":[{"ref":12}]}}
        {"id":12,"type":"HVXElementAssignmentLT","father":{"ref":11},"attributes":{"ElementShape":8,"SectionControlsSpec":null}}
        )" +
        std::string(locals));
    Doc().RecordUpgrade("UpgradeGlobalAndLocalElemAssgnToContainSectionControls");
    for (const standalone::Finding& finding : standalone::CheckConformity(Doc())) {
      if (finding.feature == &At(id)) return finding.kind;
    }
    return FindingKind::kUnknown;
  };
  constexpr std::string_view kLocal =
      R"({"id":20,"type":"HVXLocalElemAsgnLT","father":{"ref":10},"attributes":{"ElementAssignments":[{"ref":21}]}}
         {"id":21,"type":"HVXElementAssignmentLT","father":{"ref":20},"attributes":{"SectionControlsSpec":null}})";
  EXPECT_EQ(kindOf(12, ""), FindingKind::kLeftBehind);
  EXPECT_EQ(kindOf(12, kLocal), FindingKind::kBeyondUpgrades);
  EXPECT_EQ(kindOf(21, kLocal), FindingKind::kBeyondUpgrades);
}

// Every list of up to five sons of four sorts. What is told to have no end is not run; that all others come
// to an end is what this test ends by.
TEST_F(ConformityTest, ForcesWhoseUpgradeWouldNeverEndAreToldBeforehand) {
  constexpr std::string_view kNames[] = {"AxisSystemType", "ConcForce", "ConcForceMoment", "Stray"};
  std::size_t endless = 0;
  for (std::size_t size = 0; size <= 5; ++size) {
    for (std::size_t code = 0; code < std::size_t{1} << (2 * size); ++code) {
      std::string sons;
      std::string lines;
      std::string label;
      for (std::size_t i = 0; i < size; ++i) {
        const std::string id = std::to_string(10 + i);
        const std::string_view name = kNames[code >> (2 * i) & 3U];
        label += std::string(name) + ' ';
        sons += (i == 0 ? "" : ",") + (R"({"ref":)" + id + "}");
        lines += R"({"id":)" + id + R"(,"type":"SAMBasicComponent","name":")" + std::string(name) +
                 R"(","father":{"ref":4}})"
                 "\n";
      }
      SCOPED_TRACE(label);
      GivenCaseWith(R"({"id":4,"type":"HVXConcentratedForce","father":{"ref":3},"attributes":{"SonsList":[)" +
                    sons + "]}}\n" + lines);
      const standalone::Finding before = standalone::CheckConformity(Doc()).at(0);
      if (before.damage.find("would never end") != std::string::npos) {
        ++endless;
        continue;
      }
      static_cast<void>(Upgrade(4, {"UpgradeConcForceBasicComponents"}));
      EXPECT_EQ(standalone::CheckConformity(Doc()).empty(), before.damage.empty());
    }
  }
  EXPECT_GT(endless, 100U);
  Doc().RecordUpgrade("UpgradeConcForceBasicComponents");
  EXPECT_EQ(standalone::CheckConformity(Doc()).at(0).kind, FindingKind::kBeyondUpgrades);
}

TEST_F(ConformityTest, SupportsThatConnectNothing) {
  GivenCaseWith(R"({"id":4,"type":"HVXClamp","attributes":{"Supports":[{"ref":5},{"ref":7}]}}
                   {"id":5,"type":"GeometrySmartConnector","father":{"ref":4}}
                   {"id":6,"type":"GeometrySmartConnector","father":{"ref":4}}
                   {"id":7,"type":"Surface"}
                   {"id":8,"type":"HVXTiedContactLT","attributes":{"connectionProperty":{"ref":9},"Supports":[]}}
                   {"id":9,"type":"SAMFaceFaceFastened"}
                   {"id":10,"type":"HVXTiedContactLT","attributes":{"connectionProperty":null}})");
  EXPECT_THAT(Found(),
              ElementsAre("#4 - damaged", "#5 - damaged", "#8 UpgCCPToGACOrConstraintAsSupp damaged"));
}

TEST_F(ConformityTest, ValuesOfAnotherKindCannotBeRead) {
  GivenCaseWith(R"({"id":4,"type":"HVXMatOrientationLT","attributes":{"Angle":"30"}}
                   {"id":5,"type":"SAMBasicComponent","attributes":{"Type":"SAMInteger","Values":1.5}}
                   {"id":6,"type":"MSHMeshPart","attributes":{"NodeCount":-1,"ElementCount":3}}
                   {"id":7,"type":"HVXTangentialBehaviorLT","attributes":{"frictionValList":[0.1,"x"],"Other":"x"}}
                   {"id":8,"type":"HVXMatOrientationLT"}
                   {"id":9,"type":"HVXMatOrientationLT","attributes":{"Angle":30}}
                   {"id":10,"type":"SAMBasicComponent","attributes":{"Type":"SAMDouble","Values":1.5,"IsActive":"x"}}
                   {"id":11,"type":"SAMFaceFaceContact","attributes":{"ClearanceFlag":true}})");
  EXPECT_THAT(Found(), ElementsAre("#4 - damaged", "#5 - damaged", "#6 - damaged", "#7 - damaged",
                                   "#8 - damaged", "#10 - damaged", "#11 - damaged"));
}

// Readers take such a link for none: the friction, the fit and the controls behind the right one would stay
// behind or go, without a word.
TEST_F(ConformityTest, LinksLeadToTheKindThatBelongsThere) {
  GivenCaseWith(R"({"id":4,"type":"HVXInteractionPropertyLT","attributes":{"tangentialBehavior":{"ref":3}}}
                   {"id":5,"type":"SAMFaceFaceContact","attributes":{"InterferenceFit":{"ref":3}}}
                   {"id":6,"type":"HVXLocalElemAsgnLT","attributes":{"HVXListElementAsgnSpec":[{"ref":7},{"ref":3}]}}
                   {"id":7,"type":"HVXElementAssignmentLT","attributes":{"SectionControlsSpec":{"ref":3}}}
                   {"id":8,"type":"HVXDamperLT","attributes":{"MeshPart":{"ref":9}}}
                   {"id":9,"type":"MSHMeshPart","attributes":{"MeshingOperator":{"ref":10},"NotReadyIn":"Meshing"}}
                   {"id":10,"type":"MSHMeshingOperator","attributes":{"ConnectionMesher":{"ref":3}}}
                   {"id":11,"type":"SAMGenericConnDesign","attributes":{"Points":"x","Products":[null]}}
                   {"id":12,"type":"HVXVirtualPartLT","attributes":{"MeshParts":7}}
                   {"id":13,"type":"HVXDamperLT","attributes":{"MeshPart":{"ref":3}}}
                   {"id":14,"type":"Part","attributes":{"MainBody":"Body","Bodies":[{"ref":15}]}}
                   {"id":15,"type":"MechanicalPart","attributes":{"Results":[1]}})");
  std::vector<std::string> found;
  for (const standalone::Finding& finding : standalone::CheckConformity(Doc())) {
    if (finding.identifier.empty()) found.push_back(std::to_string(finding.feature->id) + ' ' + finding.key);
  }
  EXPECT_THAT(found, ElementsAre("4 tangentialBehavior", "5 InterferenceFit", "6 HVXListElementAsgnSpec",
                                 "7 SectionControlsSpec", "9 NotReadyIn", "10 ConnectionMesher", "11 Points",
                                 "12 MeshParts", "13 MeshPart", "14 MainBody", "15 Results"));
}

TEST_F(ConformityTest, WhatOldDocumentsAlwaysHoldIsMissed) {
  GivenCaseWith(R"({"id":4,"type":"AnalysisCase","father":{"ref":1},"attributes":{"AnalysisType":1}}
                   {"id":5,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex"}}
                   {"id":6,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Other"}}
                   {"id":7,"type":"HVXElementAssignmentLT","attributes":{"ElementOptions":[true,true],"ElementOptionValues":[0.5]}}
                   {"id":8,"type":"PrtContainer"}
                   {"id":9,"type":"SAMBasicComponent","attributes":{"Type":"SAMDouble"}}
                   {"id":10,"type":"SAMBasicComponent","attributes":{"Type":"SAMComposite"}}
                   {"id":11,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":2},"attributes":{"adjustment":1,"adjustTolVal_param":{"ref":8}}}
                   {"id":12,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":2},"attributes":{"adjustment":2,"adjustmentGroup":null}})");
  std::vector<std::string> found;
  for (const standalone::Finding& finding : standalone::CheckConformity(Doc())) {
    if (finding.identifier.empty()) found.push_back(std::to_string(finding.feature->id) + ' ' + finding.key);
  }
  EXPECT_THAT(found, ElementsAre("4 Solver", "5 AnalysisType", "7 ElementOptions, ElementOptionValues",
                                 "8 Part", "9 Values", "11 adjustTolVal_param", "12 adjustmentGroup"));
}

// Its parameters may have been moved before it could not be registered: no second run finds them.
TEST_F(ConformityTest, WhatCouldNotBeRegisteredIsNotRunAgain) {
  const std::string condition =
      R"({"id":2,"type":"HVXPressure","father":{"ref":1},"attributes":{"pressure_param":{"ref":3}}}
                                   {"id":3,"type":"Parameter","father":{"ref":2},"attributes":{"Value":2.5}})";
  Given(R"({"id":1,"type":"AnalysisModel"}
           )" +
        condition);
  static_cast<void>(Upgrade(2, {"UpgradePressureBasicComponents"}));
  Doc().RecordUpgrade("UpgradePressureBasicComponents");
  const auto found = [this] { return standalone::CheckConformity(Doc()).at(0); };
  EXPECT_EQ(found().kind, FindingKind::kBeyondUpgrades);
  EXPECT_THAT(found().NextStep(),
              testing::EndsWith("in the document as it was before, and upgrade that again"));
  Doc().SetAttribute(At(1), standalone::Key("FeatList").Id(), standalone::Value::List({}));
  EXPECT_EQ(found().kind, FindingKind::kBeyondUpgrades);
  EXPECT_THAT(found().NextStep(), testing::HasSubstr("enter the feature in the \"FeatList\""));
}

// A link that is gone keeps the upgrade from what stands beneath the feature, or from what it rests on.
TEST_F(ConformityTest, WhatAnUpgradeCannotReachIsDamaged) {
  GivenCaseWith(R"({"id":4,"type":"HVXInteractionPropertyLT","attributes":{"tangentialBehavior":null}}
                   {"id":5,"type":"HVXTangentialBehaviorLT","father":{"ref":4},"attributes":{"UserSubroutine":true,"frictionValList":[0.2]}}
                   {"id":6,"type":"HVXRigidCouplingLT","attributes":{"Supports":[{"ref":7}]}}
                   {"id":7,"type":"GeometrySmartConnector","father":{"ref":6},"attributes":{"FirstObject":{"ref":9},"SecondObject":null}}
                   {"id":9,"type":"SAMGroup","attributes":{"GroupKind":1,"Members":[{"ref":10},null]}}
                   {"id":10,"type":"GeometrySmartConnector","father":{"ref":9},"attributes":{"FirstObject":{"ref":1}}})");
  EXPECT_THAT(Found(), ElementsAre("#5 UserSubRoutineAttrUpgrade damaged", "#5 FrictionValueUpgrade damaged",
                                   "#6 UpgradeToConnMeshPart damaged", "#6 UpgradeGroupToSupport damaged"));
}

TEST_F(ConformityTest, CodesStandForSomethingRoutinesKnow) {
  GivenCaseWith(
      R"({"id":4,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":4,"CaseKind":2}}
                   {"id":5,"type":"AnalysisCase","attributes":{"Solver":"Other","AnalysisType":4,"CaseKind":2}}
                   {"id":6,"type":"HVXHacAnaStepSolLT","attributes":{"ResultStepType":0}}
                   {"id":7,"type":"SAMGroup","attributes":{"GroupKind":2}}
                   {"id":8,"type":"SAMFaceFaceContact","attributes":{"ContactKind":0}}
                   {"id":9,"type":"HVXContactConnectionEnhancementExplicitLT","attributes":{"PropagationState":2}}
                   {"id":10,"type":"HVXSurfaceToSurfaceContactLT","attributes":{"slidingFormulation":2,"adjustment":3,"constraintEnforcement":7}}
                   {"id":11,"type":"HVXSurfaceToSurfaceContactLT","attributes":{"slidingFormulation":1,"adjustment":0,"constraintEnforcement":1}}
                   {"id":12,"type":"HVXHistoryOutputLT","attributes":{"FrequencyType":9}}
                   {"id":13,"type":"AnalysisCase","attributes":{"Solver":"HALVEX","AnalysisType":1}})");
  std::vector<std::string> found;
  for (const standalone::Finding& finding : standalone::CheckConformity(Doc())) {
    if (finding.reason == "a value cannot be read")
      found.push_back(std::to_string(finding.feature->id) + ' ' + finding.key);
  }
  EXPECT_THAT(found, ElementsAre("4 AnalysisType, CaseKind", "6 ResultStepType", "7 GroupKind",
                                 "8 ContactKind", "9 PropagationState",
                                 "10 slidingFormulation, adjustment, constraintEnforcement", "13 Solver"));
}

// Its conversion ends where it is registered, with the old contact a pair already.
TEST_F(ConformityTest, AContactThatCouldNotBeRegisteredIsHalfConverted) {
  constexpr const char* kConversion = "UpgradeToContactConnectionEnhancementLT";
  Given(R"({"id":1,"type":"AnalysisModel"}
           {"id":2,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}}
           {"id":3,"type":"HVXInteractionContainerLT","father":{"ref":2}}
           {"id":4,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":3},"attributes":{"connectionProperty":null}})");
  const auto found = [this] { return standalone::CheckConformity(Doc()).at(0); };
  EXPECT_EQ(found().kind, FindingKind::kPending);
  EXPECT_EQ(found().key, "FeatList");
  static_cast<void>(Upgrade(4, {kConversion}));
  Doc().RecordUpgrade(kConversion);
  EXPECT_EQ(found().kind, FindingKind::kBeyondUpgrades);
  EXPECT_THAT(found().NextStep(),
              testing::EndsWith("in the document as it was before, and upgrade that again"));
  const standalone::Key list("FeatList");
  Doc().SetAttribute(At(1), list.Id(), standalone::Value::List({}));
  EXPECT_THAT(found().NextStep(), testing::HasSubstr("Enter the feature in the \"FeatList\""));
  standalone::WriteLinks(At(1), list, {&At(4)});
  EXPECT_NE(found().identifier, kConversion);
}

}  // namespace
