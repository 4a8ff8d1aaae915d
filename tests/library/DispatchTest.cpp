// What the library binds to what, and what its dispatch does with it.

#include <dlfcn.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include "analysis/VLMISamUpgrade.h"
#include "base/VLMFatalError.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using namespace standalone;
using testing_support::Failing;
using testing_support::Library;
using testing_support::Recording;

struct Row {
  const char* upgradeClass;
  const char* lateTypes;
  const char* bindings;  // identifier and what a failure does, in the order of comparison
  const char* rule;
};

constexpr Row kTable[] = {
    {"HVXEARSUpgrade", "HVXARSurfLT", "MakeOutOfdateARS ignore", ""},
    {"HVXEHalvexpropertySetUpgrade", "HVXHalvexPropertySetLT", "UpgradeFeaturesExternalName ignore", ""},
    {"HVXEAcclnBCUpgrade", "HVXAccelerationBCLT", "UpgradeAcclnBCBasicComponents last", ""},
    {"HVXEAnalysisCaseUpgrade", "AnalysisCase",
     "UpgradeToElemType ignore, UpgradeToLocalAndGlobalAsgn ignore, "
     "UpgradeGlobalAndLocalElemAssgnToContainSectionControls ignore, UpgradeAnalysisCaseExternalName ignore, "
     "UpgradeFeaturesExternalName ignore",
     ""},
    {"HVXEBasicComponentUpgrade",
     "HVXRotationalBodyForce HVXRigidBodyConstraintLT HVXContactConnectionEnhancementStdLT HVXPressure "
     "HVXGravity HVXTemperatureLT HVXConcHeatFlux HVXSurfaceHeatFlux HVXFilmCondition HVXAccelerationBCLT "
     "HVXVelocityBCLT HVXSubmodelBCLT HVXInitialVelocityLT HVXContactControlsLT HVXGaskPropertyLT "
     "HVXGeneralStaticStepLT HVXHeatTransferStepLT HVXPreTensionPropertyLT",
     "", "VLMISamUpgrade"},
    {"HVXEBodyHeatFluxUpgrade", "HVXBodyHeatFlux", "UpgradeBodySupport stop, ReExplicitateFeature stop", ""},
    {"HVXEClampUpgrade", "HVXClamp", "ReExplicitateFeature stop", ""},
    {"HVXEConcForceUpgrade", "HVXConcentratedForce",
     "ReExplicitateFeature stop, UpgradeConcForceBasicComponents ignore", ""},
    {"HVXEConcHeatFluxUpgrade", "HVXConcHeatFlux",
     "ReExplicitateFeature stop, UpgradeConcHeatFluxBasicComponents ignore", ""},
    {"HVXEContactConnectionEnhancementUpgrage",
     "HVXContactConnectionEnhancementStdLT HVXContactConnectionEnhancementExplicitLT",
     "UpgContactWithContactControl skip, UpgContactStdWithInterference ignore, "
     "UpgMapCCPClearanceToInterference skip, UpgCCPToGACOrConstraintAsSupp skip, "
     "UpgradeAutomaticOverclosureTolerancesInContactPair skip, "
     "UpgradeReAutomaticOverclosureTolerancesInContactPair skip, UpgradeContactWithSurfSmoothParam skip",
     "sequential"},
    {"HVXEDisplacementBCUpgrade", "HVXDisplacementBC",
     "ReExplicitateFeature stop, UpgradeDispBCBasicComponents ignore", ""},
    {"HVXEFORUpgrade", "HVXNewFieldOutputLT",
     "UpgradeFORPreselectedVarListAttr ignore, UpgradeFORBasicComponents ignore", ""},
    {"HVXEFORequestContainer", "HVXFieldOutputRequestContainerLT", "UpgradeFieldOutputRequest stop", ""},
    {"HVXEFilmConditionUpgrade", "HVXFilmCondition",
     "ReExplicitateFeature stop, UpgradeFilmConditionBasicComponents ignore, "
     "UpgradeFilmConditionInvertSurfaceBasicComponents stop",
     ""},
    {"HVXEGasketPropertyUpgrade", "HVXGaskPropertyLT",
     "ReExplicitateFeature stop, UpgradeGasketStabilizationStiffnessUnit ignore", ""},
    {"HVXEGeneralStaticStepUpgrade", "HVXGeneralStaticStepLT",
     "AddConnectionContainer stop, UpgFromSpecToComp ignore", ""},
    {"HVXEGlobalElementUpgrade", "HVXGlobalElemAsgnLT", "UpdateGlobalElementAsgnList ignore", ""},
    {"HVXEGravityUpgrade", "HVXGravity",
     "UpgradeBodySupport stop, ReExplicitateFeature stop, UpgradeGravityBasicComponents ignore", ""},
    {"HVXEHeatTransferStepUpgrade", "HVXHeatTransferStepLT",
     "AddConnectionContainer stop, UpgFromSpecToComp ignore", ""},
    {"HVXEInitialTempUpgrade", "HVXInitialTemperatureLT",
     "UpgradeBodySupport stop, UpgradeInitialTemperatureBasicComponents ignore, UpgradeTempMidside ignore",
     ""},
    {"HVXEInitialVelocityUpgrade", "HVXInitialVelocityLT", "UpgradeInitialVelocityBasicComponents first", ""},
    {"HVXEJobUpgrade", "HVXJobLT HVXJobContainerLT",
     "UpgradeJobRestartData stop, UpgradeJobForFromInputFile stop, UpgradeJobMemoryUnit stop", ""},
    {"HVXELocalElemAsgnUpgrade", "HVXLocalElemAsgnLT", "UpgradeLocalElementAssignment ignore", ""},
    {"HVXEMechanicalBhvrUpgrade", "HVXInteractionPropertyLT",
     "UserSubRoutineAttrUpgrade skip, FrictionValueUpgrade skip", "sequential"},
    {"HVXENodesAndElementsUpgrade", "MSHMeshSet", "RestNodeAndElementUserNumber stop", ""},
    {"HVXEPerturbationStepUpgrade", "HVXStaticLPStepLT", "AddConnectionContainer stop", ""},
    {"HVXEPressureUpgrade", "HVXPressure", "ReExplicitateFeature stop, UpgradePressureBasicComponents ignore",
     ""},
    {"HVXEPretensionPropUpgrade", "HVXPreTensionPropertyLT", "UpgradeBasicComponents stop", ""},
    {"HVXERigidBodyConstraintUpgrade", "HVXRigidBodyConstraintLT",
     "UpgradeBodySupport ignore, UpgradeToConnMeshPart ignore, UpgradeGroupToSupport ignore, "
     "AddCenterOfMassToRBC ignore, UpgradeBasicComponents stop",
     ""},
    {"HVXERigidCouplingUpgrade", "HVXRigidCouplingLT HVXSmoothCouplingLT",
     "UpgradeToConnMeshPart ignore, UpgradeGroupToSupport ignore, AddExclusionRegionToMeshPart ignore, "
     "UpdateGroupToExclusionRegion ignore, ReExplicitateFeature ignore, UpgradeCouplingMeshPart ignore",
     ""},
    {"HVXERiksStepUpgrade", "HVXRiksStepLT", "AddConnectionContainer stop", ""},
    {"HVXERotBodyForceUpgrade", "HVXRotationalBodyForce",
     "UpgradeBodySupport stop, ReExplicitateFeature stop, UpgradeBasicComponents stop, UpgradeRBFAxisData "
     "stop, UpgradeRotationalBodyForceBasicComponents ignore",
     ""},
    {"HVXEShellSectionEnhUpgrade", "HVXShellSectionEnhLT", "UpgradeMatOrientAngleToRadians stop", ""},
    {"HVXESolCaseUpgrade", "HVXHacSolutionLT", "UpgradeAnalysisCase last", "E_FAIL without a run"},
    {"HVXESolStepUpgrade", "HVXHacAnaStepSolLT", "UpgradeThermalSolutionStep last", "E_FAIL without a run"},
    {"HVXESpringUpgrade", "HVXSpringLT HVXDamperLT",
     "UpgradeSpringConnectionProperty ignore, UpgradeSpringMeshExplicitation ignore, "
     "UpgradeSpringMeshOnOrphanPoint ignore",
     ""},
    {"HVXESubmodelBCUpgrade", "HVXSubmodelBCLT", "UpgradeSubModelBCBasicComponents last", ""},
    {"HVXESurfaceHeatFluxUpgrade", "HVXSurfaceHeatFlux",
     "ReExplicitateFeature stop, UpgradeSurfaceHeatFluxBasicComponents ignore, "
     "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents stop",
     ""},
    {"HVXESurfaceToSurfaceContactUpgrage", "HVXSurfaceToSurfaceContactLT",
     "UpgradeToContactConnectionEnhancementLT ignore", ""},
    {"HVXETempHistoryUpgrade", "HVXTemperatureHistoryLT",
     "UpgradeBodySupport stop, UpgradeTemperatureHistoryBasicComponents ignore, UpgradeEndIncrementOption "
     "ignore, UpgradeTempMidside ignore",
     ""},
    {"HVXETemperatureBCUpgrade", "HVXTemperatureLT", "UpgradeTemperatureBCBasicComponents ignore", ""},
    {"HVXETiedContactUpgrage", "HVXTiedContactLT",
     "UpgCCPToGACOrConstraintAsSupp skip, UpgCCPToGACOrConstraintAsSupp skip", "sequential"},
    {"HVXEVelocityBCUpgrade", "HVXVelocityBCLT", "UpgradeVelocityBCBasicComponents last", ""},
};

constexpr std::string_view kIdentifiers[] = {
    "UpgradeToElemType",
    "UpgradeBodySupport",
    "UpgradeFieldOutputRequest",
    "ReExplicitateFeature",
    "UpgradeToLocalAndGlobalAsgn",
    "UpdateGlobalElementAsgnList",
    "UpgradeToConnMeshPart",
    "UpgradeGroupToSupport",
    "AddExclusionRegionToMeshPart",
    "UpgradeToContactConnectionEnhancementLT",
    "AddConnectionContainer",
    "UpgFromSpecToComp",
    "RestNodeAndElementUserNumber",
    "UserSubRoutineAttrUpgrade",
    "FrictionValueUpgrade",
    "AddCenterOfMassToRBC",
    "UpgradeRBFAxisData",
    "UpgradeBasicComponents",
    "UpdateGroupToExclusionRegion",
    "UpgradeSpringConnectionProperty",
    "UpgradeSpringMeshExplicitation",
    "UpgContactStdWithInterference",
    "UpgCCPToGACOrConstraintAsSupp",
    "UpgMapCCPClearanceToInterference",
    "UpgContactWithContactControl",
    "UpgradeGlobalAndLocalElemAssgnToContainSectionControls",
    "UpgradeJobRestartData",
    "UpgradeFastenedConnectionEnhancementToFastenedPair",
    "RemoveConsisChkAttr",
    "UpgradeMatOrientAngleToRadians",
    "UpgradeSpringMeshOnOrphanPoint",
    "UpgradeDispBCBasicComponents",
    "UpgradeConcForceBasicComponents",
    "UpgradePressureBasicComponents",
    "UpgradeGravityBasicComponents",
    "UpgradeRotationalBodyForceBasicComponents",
    "UpgradeTemperatureBCBasicComponents",
    "UpgradeInitialTemperatureBasicComponents",
    "UpgradeTemperatureHistoryBasicComponents",
    "UpgradeConcHeatFluxBasicComponents",
    "UpgradeSurfaceHeatFluxBasicComponents",
    "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents",
    "UpgradeFilmConditionBasicComponents",
    "UpgradeFilmConditionInvertSurfaceBasicComponents",
    "UpgradeFORPreselectedVarListAttr",
    "UpgradeAcclnBCBasicComponents",
    "UpgradeVelocityBCBasicComponents",
    "UpgradeSubModelBCBasicComponents",
    "UpgradeInitialVelocityBasicComponents",
    "UpgradeFORBasicComponents",
    "UpgradeAnalysisCaseExternalName",
    "UpgradeFeaturesExternalName",
    "UpgDocumentForCCPRemoval",
    "UpgradeCouplingMeshPart",
    "UpgradeAutomaticOverclosureTolerancesInContactPair",
    "MakeOutOfdateARS",
    "UpgradeReAutomaticOverclosureTolerancesInContactPair",
    "UpgradeJobForFromInputFile",
    "UpgradeEndIncrementOption",
    "UpgradeTempMidside",
    "UpgradeLocalElementAssignment",
    "UpgradeGasketStabilizationStiffnessUnit",
    "UpgradeAnalysisCase",
    "UpgradeThermalSolutionStep",
    "UpgradeContactWithSurfSmoothParam",
    "UpgradeJobMemoryUnit",
};

const char* PolicyName(HVXOnFailure onFailure) {
  constexpr const char* kNames[] = {"ignore", "stop", "last", "skip", "first"};
  return kNames[static_cast<int>(onFailure)];
}

std::string BindingsOf(const HVXUpgradeClass& upgradeClass) {
  std::vector<std::string> rows;
  for (const HVXUpgradeBinding& binding : upgradeClass.bindings) {
    rows.push_back(fmt::format("{} {}", binding.identifier.View(), PolicyName(binding.onFailure)));
  }
  return fmt::format("{}", fmt::join(rows, ", "));
}

std::string RuleOf(const HVXUpgradeClass& upgradeClass) {
  std::vector<std::string> rules;
  if (upgradeClass.matching == HVXMatching::kSequential) rules.emplace_back("sequential");
  if (upgradeClass.resultWithoutRun == E_FAIL) rules.emplace_back("E_FAIL without a run");
  if (!(upgradeClass.interface == HVXIUpgrade::kId)) rules.emplace_back(upgradeClass.interface.Name());
  return fmt::format("{}", fmt::join(rules, ", "));
}

TEST(DispatchTest, TheTableIsTheLibrarys) {
  const auto classes = Library().classes;
  ASSERT_EQ(classes.size(), std::size(kTable));
  for (std::size_t i = 0; i < classes.size(); ++i) {
    SCOPED_TRACE(kTable[i].upgradeClass);
    EXPECT_STREQ(classes[i]->name, kTable[i].upgradeClass);
    EXPECT_EQ(fmt::format("{}", fmt::join(classes[i]->lateTypes, " ")), kTable[i].lateTypes);
    EXPECT_EQ(BindingsOf(*classes[i]), kTable[i].bindings);
    EXPECT_EQ(RuleOf(*classes[i]), kTable[i].rule);
  }
}

// Hosts that know no table find the tie of a class by the name of its entry.
TEST(DispatchTest, EveryClassExportsItsEntry) {
  const auto classes = Library().classes;  // loads it
  void* const library = dlopen(testing_support::LibraryFile(), RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  for (const HVXUpgradeClass* const upgradeClass : classes) {
    const char* const interface =
        upgradeClass->interface == HVXIUpgrade::kId ? "HVXIUpgrade" : "VLMISamUpgrade";
    const std::string entry = fmt::format("CreateTIE{}{}", interface, upgradeClass->name);
    EXPECT_NE(dlsym(library, entry.c_str()), nullptr) << entry;
  }
  dlclose(library);
}

TEST(DispatchTest, TheIdentifiersStandInTheOrderOfTheirIntroduction) {
  std::vector<std::string> identifiers;
  for (const VLMUnicodeString& identifier : Library().identifiers)
    identifiers.emplace_back(identifier.View());
  EXPECT_THAT(identifiers, testing::ElementsAreArray(kIdentifiers));
  std::vector<std::string> ofDocuments;
  for (const HVXDocumentUpgrade& upgrade : Library().documentUpgrades) {
    ofDocuments.emplace_back(upgrade.identifier.View());
  }
  EXPECT_THAT(ofDocuments, testing::ElementsAre("RemoveConsisChkAttr", "UpgDocumentForCCPRemoval"));
}

class BindingTest : public testing_support::UpgradeTest {};

// Every late type of the table gives its extension, which acts on nothing that is not its own. One identifier
// is known, so that documents record it, and migrates nothing on purpose.
TEST_F(BindingTest, TheLibraryIsSound) {
  EXPECT_THAT(testing_support::FaultsOf(Library()),
              testing::ElementsAre("UpgradeFastenedConnectionEnhancementToFastenedPair is among the "
                                   "identifiers, but nothing answers it"));
}

TEST_F(BindingTest, EveryClassHasAMetaObjectThatExtendsItsLateTypes) {
  for (const HVXUpgradeClass* const upgradeClass : Library().classes) {
    SCOPED_TRACE(upgradeClass->name);
    std::vector<std::string_view> extended;
    for (const char* const lateType : upgradeClass->lateTypes) {
      extended.emplace_back(lateType);
      Given(fmt::format(R"({{"id":1,"type":"{}"}})", lateType));
      ASSERT_TRUE(Offers(At(1), upgradeClass->interface));  // the first tie makes the meta-object
    }
    const VLMMetaClass* const metaObject = VLMMetaClass::Find(upgradeClass->name);
    ASSERT_NE(metaObject, nullptr);
    EXPECT_EQ(static_cast<int>(metaObject->Kind()), 3);
    EXPECT_EQ(metaObject->Base(), &VLMMetaClass::BaseUnknown());
    EXPECT_EQ(metaObject->Framework(), "HVXHKPVersion");
    std::vector<std::string_view> declared;
    for (const VLMMetaClass* const lateType : metaObject->ExtendedLateTypes())
      declared.push_back(lateType->Name());
    EXPECT_EQ(declared, extended);
  }
}

TEST_F(BindingTest, LateTypesOfNoRowHaveNone) {
  for (const char* const lateType : {"HVXInitialStepLT", "HVXDatOutputLT", "Parameter", "NeverHeardOfLT"}) {
    Given(fmt::format(R"({{"id":1,"type":"{}"}})", lateType));
    EXPECT_FALSE(Offers(At(1), HVXIUpgrade::kId)) << lateType;
    EXPECT_FALSE(Offers(At(1), VLMISamUpgrade::kId)) << lateType;
  }
}

TEST_F(BindingTest, TwoExtensionsStandOnOneLateTypeForDifferentInterfaces) {
  Given(R"({"id":1,"type":"HVXPressure"})");
  EXPECT_TRUE(As<HVXIUpgrade>(1) == As<VLMISamUpgrade>(1));
  std::vector<std::string_view> extensions;
  for (const VLMMetaClass* const extension : VLMMetaClass::Find("HVXPressure")->Extensions()) {
    extensions.push_back(extension->Name());
  }
  EXPECT_THAT(extensions, testing::UnorderedElementsAre("HVXEPressureUpgrade", "HVXEBasicComponentUpgrade"));
}

// The dispatch on extensions whose routines A, B, C add an attribute of that name. They fail when that fails;
// C gives 1 otherwise, which is no failure.
class DispatchRuleTest : public testing_support::UpgradeTest {
 protected:
  // The routines that ran, in order, and the result.
  std::string Run(const char* lateType, std::initializer_list<const char*> identifiers,
                  const char* failing = nullptr) {
    Given(fmt::format(R"({{"id":1,"type":"{}"}})", lateType));
    for (const char* const each : identifiers) AlsoKnown(each);
    const HRESULT result = UpgradeUnder(
        failing == nullptr ? Recording() : Failing("VLMISpecAttrAccess::AddAttribute", failing, -77), 1,
        identifiers);
    return fmt::format("{} {}", Ran(), result);
  }
  static std::string Ran() {
    std::string routines;
    for (const HostCall& call : Checkpoint::Recorded()) routines += call.detail;
    return routines;
  }

 private:
  UpgradeLibrary plugIn_{testing_support::TestLibraryFile()};
};

TEST_F(DispatchRuleTest, Stop) {
  EXPECT_EQ(Run("ProbeStopLT", {"ProbeC", "ProbeA", "ProbeB"}), "CAB 0");  // the list's order
  EXPECT_EQ(Run("ProbeStopTooLT", {"ProbeA", "ProbeA"}), "AA 0");
  EXPECT_EQ(Run("ProbeStopLT", {"ProbeA", "ProbeB", "ProbeC"}, "B"), "ABC 0");  // its failure is ignored
  EXPECT_EQ(Run("ProbeStopLT", {"ProbeB", "ProbeA", "ProbeC"}, "A"), "BA -77");
  EXPECT_EQ(Run("ProbeStopLT", {"probea", "ProbeA ", "Probe", "ProbeZ"}), " 0");
  EXPECT_EQ(Run("ProbeStopLT", {}), " 0");
}

TEST_F(DispatchRuleTest, FirstMatchAndSequential) {
  EXPECT_EQ(Run("ProbeUnreachedLT", {"ProbeA", "ProbeC"}), "AC 0");
  EXPECT_EQ(Run("ProbeSequentialLT", {"ProbeA", "ProbeC"}), "ABC 0");
  EXPECT_EQ(Run("ProbeSequentialLT", {"ProbeA", "ProbeA"}), "ABAB 0");
  // Skip: the rest of the tests for this identifier only.
  EXPECT_EQ(Run("ProbeSequentialLT", {"ProbeA", "ProbeC"}, "A"), "AC 0");
  EXPECT_EQ(Run("ProbeSequentialLT", {"ProbeA", "ProbeC"}, "B"), "ABC 0");
  EXPECT_EQ(Run("ProbeUnreachedLT", {"ProbeA", "ProbeC"}, "A"), "AC 0");
}

TEST_F(DispatchRuleTest, LastAndFirst) {
  EXPECT_EQ(Run("ProbeLastLT", {"ProbeA", "ProbeB"}, "A"), "AB 0");
  EXPECT_EQ(Run("ProbeLastLT", {"ProbeB", "ProbeA", "ProbeZ"}, "A"), "BA -77");
  EXPECT_EQ(Run("ProbeLastLT", {"ProbeZ"}), " -99");
  EXPECT_EQ(Run("ProbeLastLT", {}), " -99");
  EXPECT_EQ(Run("ProbeFirstLT", {"ProbeB", "ProbeA", "ProbeB"}), "BA 0");
  EXPECT_EQ(Run("ProbeFirstLT", {"ProbeA", "ProbeA"}, "A"), "A -77");
}

TEST_F(DispatchRuleTest, TheSizeOfTheListIsReadAfterEveryIdentifier) {
  Given(R"({"id":1,"type":"ProbeStopLT"})");
  VLMListValVLMUnicodeString list{"ProbeA"};
  CheckpointPlan plan = Recording();
  plan.onCall = [&list](const HostCall& call, const Feature*) {
    if (call.detail == "A") list.Append("ProbeB");
  };
  const CheckpointScope scope(plan);
  EXPECT_EQ(As<HVXIUpgrade>(1)->Upgrade(list), S_OK);
  EXPECT_EQ(Ran(), "AB");
}

TEST_F(DispatchRuleTest, WhatARoutineThrowsPassesThrough) {
  Given(R"({"id":1,"type":"ProbeGivesUpLT"})");
  AlsoKnown("ProbeAssertion");
  AlsoKnown("ProbeNullHandle");
  EXPECT_THROW(Upgrade(1, {"ProbeAssertion"}), VLMFatalAssertion);
  EXPECT_THROW(Upgrade(1, {"ProbeNullHandle"}), VLMNullVarError);
}

// The 67th identifier took one table row and one routine (tests/plugin/ScratchFolderUpgrade.h).
TEST_F(DispatchRuleTest, AnIdentifierOfAnotherLibraryIsOneMore) {
  const UpgradeLibrary plugIn(testing_support::TestLibraryFile());
  const VersionManager manager({&Library(), &plugIn.Description()});
  ASSERT_GT(manager.Known().size(), 66U);
  EXPECT_EQ(manager.Known()[65].identifier, "UpgradeJobMemoryUnit");
  EXPECT_EQ(manager.Known()[66].identifier, "UpgradeTestScratchFolder");

  const DocumentPtr document = testing_support::DocumentOf(R"({"id":1,"type":"UpgradeTestScratchFolderLT"}
                                                              {"id":2,"type":"HVXJobLT"})");
  EXPECT_THAT(manager.Pending(*document.Get()), testing::Contains("UpgradeTestScratchFolder"));
  const UpgradeRun run = manager.Run(document, {"UpgradeJobMemoryUnit", "UpgradeTestScratchFolder"});
  EXPECT_TRUE(run.failures.empty());
  EXPECT_EQ(testing_support::LinesOf(*document.Get()),
            R"({"id":1,"type":"UpgradeTestScratchFolderLT","alias":"Scratch Folder"})"
            "\n"
            R"({"id":2,"type":"HVXJobLT","attributes":{"MemoryUnit":1}})"
            "\n");
  EXPECT_THAT(document->Upgrades(), testing::ElementsAre("UpgradeJobMemoryUnit", "UpgradeTestScratchFolder"));
}

}  // namespace
