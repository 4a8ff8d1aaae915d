#pragma once

#include "base/VLMUnicodeString.h"

/// \file
/// The upgrade identifiers: one name for each step that a release made in the data model, oldest first.
/// Documents record them, so a name once released stays as it is, spelling included. Each source file holds
/// its own copies.

const VLMUnicodeString kUpgradeToElemType("UpgradeToElemType");
const VLMUnicodeString kUpgradeBodySupport("UpgradeBodySupport");
const VLMUnicodeString kUpgradeFieldOutputRequest("UpgradeFieldOutputRequest");
const VLMUnicodeString kReExplicitateFeature("ReExplicitateFeature");
const VLMUnicodeString kUpgradeToLocalAndGlobalAsgn("UpgradeToLocalAndGlobalAsgn");
const VLMUnicodeString kUpdateGlobalElementAsgnList("UpdateGlobalElementAsgnList");
const VLMUnicodeString kUpgradeToConnMeshPart("UpgradeToConnMeshPart");
const VLMUnicodeString kUpgradeGroupToSupport("UpgradeGroupToSupport");
const VLMUnicodeString kAddExclusionRegionToMeshPart("AddExclusionRegionToMeshPart");
const VLMUnicodeString kUpgradeToContactConnectionEnhancementLT("UpgradeToContactConnectionEnhancementLT");
const VLMUnicodeString kAddConnectionContainer("AddConnectionContainer");
const VLMUnicodeString kUpgFromSpecToComp("UpgFromSpecToComp");
const VLMUnicodeString kRestNodeAndElementUserNumber("RestNodeAndElementUserNumber");
const VLMUnicodeString kUserSubRoutineAttrUpgrade("UserSubRoutineAttrUpgrade");
const VLMUnicodeString kFrictionValueUpgrade("FrictionValueUpgrade");
const VLMUnicodeString kAddCenterOfMassToRBC("AddCenterOfMassToRBC");
const VLMUnicodeString kUpgradeRBFAxisData("UpgradeRBFAxisData");
const VLMUnicodeString kUpgradeBasicComponents("UpgradeBasicComponents");
const VLMUnicodeString kUpdateGroupToExclusionRegion("UpdateGroupToExclusionRegion");
const VLMUnicodeString kUpgradeSpringConnectionProperty("UpgradeSpringConnectionProperty");
const VLMUnicodeString kUpgradeSpringMeshExplicitation("UpgradeSpringMeshExplicitation");
const VLMUnicodeString kUpgContactStdWithInterference("UpgContactStdWithInterference");
const VLMUnicodeString kUpgCCPToGACOrConstraintAsSupp("UpgCCPToGACOrConstraintAsSupp");
const VLMUnicodeString kUpgMapCCPClearanceToInterference("UpgMapCCPClearanceToInterference");
const VLMUnicodeString kUpgContactWithContactControl("UpgContactWithContactControl");
const VLMUnicodeString kUpgradeGlobalAndLocalElemAssgnToContainSectionControls(
    "UpgradeGlobalAndLocalElemAssgnToContainSectionControls");
const VLMUnicodeString kUpgradeJobRestartData("UpgradeJobRestartData");
const VLMUnicodeString kUpgradeFastenedConnectionEnhancementToFastenedPair(
    "UpgradeFastenedConnectionEnhancementToFastenedPair");
const VLMUnicodeString kRemoveConsisChkAttr("RemoveConsisChkAttr");
const VLMUnicodeString kUpgradeMatOrientAngleToRadians("UpgradeMatOrientAngleToRadians");
const VLMUnicodeString kUpgradeSpringMeshOnOrphanPoint("UpgradeSpringMeshOnOrphanPoint");
const VLMUnicodeString kUpgradeDispBCBasicComponents("UpgradeDispBCBasicComponents");
const VLMUnicodeString kUpgradeConcForceBasicComponents("UpgradeConcForceBasicComponents");
const VLMUnicodeString kUpgradePressureBasicComponents("UpgradePressureBasicComponents");
const VLMUnicodeString kUpgradeGravityBasicComponents("UpgradeGravityBasicComponents");
const VLMUnicodeString kUpgradeRotationalBodyForceBasicComponents(
    "UpgradeRotationalBodyForceBasicComponents");
const VLMUnicodeString kUpgradeTemperatureBCBasicComponents("UpgradeTemperatureBCBasicComponents");
const VLMUnicodeString kUpgradeInitialTemperatureBasicComponents("UpgradeInitialTemperatureBasicComponents");
const VLMUnicodeString kUpgradeTemperatureHistoryBasicComponents("UpgradeTemperatureHistoryBasicComponents");
const VLMUnicodeString kUpgradeConcHeatFluxBasicComponents("UpgradeConcHeatFluxBasicComponents");
const VLMUnicodeString kUpgradeSurfaceHeatFluxBasicComponents("UpgradeSurfaceHeatFluxBasicComponents");
const VLMUnicodeString kUpgradeSurfaceHeatFluxInvertSurfaceBasicComponents(
    "UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents");
const VLMUnicodeString kUpgradeFilmConditionBasicComponents("UpgradeFilmConditionBasicComponents");
const VLMUnicodeString kUpgradeFilmConditionInvertSurfaceBasicComponents(
    "UpgradeFilmConditionInvertSurfaceBasicComponents");
const VLMUnicodeString kUpgradeFORPreselectedVarListAttr("UpgradeFORPreselectedVarListAttr");
const VLMUnicodeString kUpgradeAcclnBCBasicComponents("UpgradeAcclnBCBasicComponents");
const VLMUnicodeString kUpgradeVelocityBCBasicComponents("UpgradeVelocityBCBasicComponents");
const VLMUnicodeString kUpgradeSubModelBCBasicComponents("UpgradeSubModelBCBasicComponents");
const VLMUnicodeString kUpgradeInitialVelocityBasicComponents("UpgradeInitialVelocityBasicComponents");
const VLMUnicodeString kUpgradeFORBasicComponents("UpgradeFORBasicComponents");
const VLMUnicodeString kUpgradeAnalysisCaseExternalName("UpgradeAnalysisCaseExternalName");
const VLMUnicodeString kUpgradeFeaturesExternalName("UpgradeFeaturesExternalName");
const VLMUnicodeString kUpgDocumentForCCPRemoval("UpgDocumentForCCPRemoval");
const VLMUnicodeString kUpgradeCouplingMeshPart("UpgradeCouplingMeshPart");
const VLMUnicodeString kUpgradeAutomaticOverclosureTolerancesInContactPair(
    "UpgradeAutomaticOverclosureTolerancesInContactPair");
const VLMUnicodeString kMakeOutOfdateARS("MakeOutOfdateARS");
const VLMUnicodeString kUpgradeReAutomaticOverclosureTolerancesInContactPair(
    "UpgradeReAutomaticOverclosureTolerancesInContactPair");
const VLMUnicodeString kUpgradeJobForFromInputFile("UpgradeJobForFromInputFile");
const VLMUnicodeString kUpgradeEndIncrementOption("UpgradeEndIncrementOption");
const VLMUnicodeString kUpgradeTempMidside("UpgradeTempMidside");
const VLMUnicodeString kUpgradeLocalElementAssignment("UpgradeLocalElementAssignment");
const VLMUnicodeString kUpgradeGasketStabilizationStiffnessUnit("UpgradeGasketStabilizationStiffnessUnit");
const VLMUnicodeString kUpgradeAnalysisCase("UpgradeAnalysisCase");
const VLMUnicodeString kUpgradeThermalSolutionStep("UpgradeThermalSolutionStep");
const VLMUnicodeString kUpgradeContactWithSurfSmoothParam("UpgradeContactWithSurfSmoothParam");
const VLMUnicodeString kUpgradeJobMemoryUnit("UpgradeJobMemoryUnit");

/// All of them, oldest first.
inline constexpr int kHVXUpgradeIdentifierCount = 66;
extern const VLMUnicodeString kHVXUpgradeIdentifiers[kHVXUpgradeIdentifierCount];
