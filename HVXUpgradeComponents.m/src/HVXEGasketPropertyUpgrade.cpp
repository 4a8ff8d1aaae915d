#include "HVXEGasketPropertyUpgrade.h"

#include "HVXSharedUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "base/VLMFatalError.h"
#include "modeler/VLMISpecObject.h"
#include "workbench/HVXIGasketSection.h"
#include "workbench/HVXISpecObjectExt.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGaskPropertyLT"};

constexpr const char* kSourcePath = "HVXUpgradeComponents.m/src/HVXEGasketPropertyUpgrade";

const VLMString kOldStiffness("StabilisationStiffnessValue");
const VLMString kNoUnit("");

}  // namespace

const HVXUpgradeBinding HVXEGasketPropertyUpgrade::kBindings[] = {
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Own<&HVXEGasketPropertyUpgrade::ReExplicitate>, HVXOnFailure::kStop},
    {kUpgradeGasketStabilizationStiffnessUnit,
     "Moves the stabilization stiffness from its component to the gasket section.",
     Own<&HVXEGasketPropertyUpgrade::MigrateStabilizationStiffness>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEGasketPropertyUpgrade::kClass = {
    .name = "HVXEGasketPropertyUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEGasketPropertyUpgrade::ReExplicitate() {
  const VLMISpecObject_var spSpecOnFeat(Feature());
  if (spSpecOnFeat == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spSpecOnFeat", kSourcePath);
  return HVXMarkOutOfDate(spSpecOnFeat);
}

HRESULT HVXEGasketPropertyUpgrade::MigrateStabilizationStiffness() {
  if (const HRESULT upgraded = UpgradeSelf(); Failed(upgraded)) return upgraded;
  if (const HRESULT moved = MoveStiffness(); Failed(moved)) return moved;
  return RemoveOldStiffness();
}

// The host's upgrade makes the component that the section keeps its stiffness in; its code is not passed on.
HRESULT HVXEGasketPropertyUpgrade::UpgradeSelf() {
  return Failed(HVXRunHostUpgrade(Feature())) ? E_FAIL : S_OK;
}

// The number is carried over unchanged, on purpose: it already was in the unit that the section takes.
HRESULT HVXEGasketPropertyUpgrade::MoveStiffness() {
  const HVXIGasketSection_var spGasket(Feature());
  if (spGasket == NULL_var) return E_FAIL;
  const VLMISpecObject_var spSpecOnSelf(Feature());
  if (spSpecOnSelf == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spSpecOnSelf", kSourcePath);

  double stiffness = 0.0;
  const VLMISamBasicComponent_var spComponent = OldStiffness();
  if (spComponent == NULL_var) return E_FAIL;
  if (Failed(spComponent->GetValueAsReal(stiffness, kNoUnit))) return E_FAIL;
  if (Failed(spGasket->SetStabilizationStiffness(stiffness))) return E_FAIL;
  return S_OK;
}

HRESULT HVXEGasketPropertyUpgrade::RemoveOldStiffness() {
  const VLMISpecObject_var spSpecOnSelf(Feature());
  if (spSpecOnSelf == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spSpecOnSelf", kSourcePath);

  const VLMISpecObject_var spOldComponent(OldStiffness());
  if (spOldComponent == NULL_var) return E_FAIL;
  static_cast<void>(spSpecOnSelf->RemoveSon(spOldComponent, 0));
  return S_OK;
}

// Null when the look-up fails or finds nothing.
VLMISamBasicComponent_var HVXEGasketPropertyUpgrade::OldStiffness() {
  const HVXISpecObjectExt_var spSpecExt(Feature());
  if (spSpecExt == NULL_var) return NULL_var;
  VLMISamBasicComponent_var spComponent;
  if (Failed(spSpecExt->GetBasicComponent(kOldStiffness, spComponent))) return NULL_var;
  return spComponent;
}

HVX_EXPORT_CREATE_TIE(HVXEGasketPropertyUpgrade)
