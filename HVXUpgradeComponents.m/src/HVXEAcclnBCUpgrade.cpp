#include "HVXEAcclnBCUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisEntity.h"
#include "base/VLMFatalError.h"
#include "workbench/HVXIMotionBC.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXAccelerationBCLT"};

constexpr const char* kSource = "HVXUpgradeComponents.m/src/HVXEAcclnBCUpgrade";

// The components of degrees of freedom 1 to 6. Acceleration conditions store them under velocity names, on
// purpose: that is how older documents name them.
const VLMString kOldComponents[] = {"HVXTranslationalVelocity_1", "HVXTranslationalVelocity_2",
                                    "HVXTranslationalVelocity_3", "HVXRotationalVelocity_1",
                                    "HVXRotationalVelocity_2",    "HVXRotationalVelocity_3"};

const VLMString kValues("Values");
const VLMString kIsActive("IsActive");

struct DegreeOfFreedom {
  double value = 0.0;
  std::int32_t active = 0;
};

HRESULT Read(const VLMISamAnalysisEntity_var& spEntity, const VLMString& name, DegreeOfFreedom& read) {
  VLMISamBasicComponent_var spComponent;
  const HRESULT found = spEntity->GetBasicComponent(name, spComponent);
  if (Failed(found)) return found;
  if (spComponent == NULL_var) return E_FAIL;
  if (const HRESULT value = spComponent->GetReal(kValues, read.value); Failed(value)) return value;
  if (const HRESULT active = spComponent->GetInteger(kIsActive, read.active); Failed(active)) return active;
  return S_OK;
}

// Repeated components of one name all go.
HRESULT RemoveAllCalled(const VLMISamAnalysisEntity_var& spEntity, const VLMString& name) {
  VLMListValVLMBaseUnknown_var components;
  const HRESULT listed = spEntity->ListBasicComponents(name, components);
  if (Failed(listed)) return listed;
  for (int position = 1; position <= components.Size(); ++position) {
    const HRESULT removed = spEntity->RemoveBasicComponent(name);
    if (Failed(removed)) return removed;
  }
  return S_OK;
}

}  // namespace

const HVXUpgradeBinding HVXEAcclnBCUpgrade::kBindings[] = {
    {kUpgradeAcclnBCBasicComponents,
     "Moves the six components stored under velocity names into the motion condition.",
     Own<&HVXEAcclnBCUpgrade::MigrateDegreesOfFreedom>, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXEAcclnBCUpgrade::kClass = {
    .name = "HVXEAcclnBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEAcclnBCUpgrade::MigrateDegreesOfFreedom() {
  return HVXUpgradeThenTransfer(Feature(), [this] { return TransferDegreesOfFreedom(); });
}

// One degree of freedom after the other: those before a failure stay moved.
HRESULT HVXEAcclnBCUpgrade::TransferDegreesOfFreedom() {
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;
  const HVXIMotionBC_var spMotionBC(Feature());
  if (spMotionBC == NULL_var) return E_FAIL;
  const VLMISamAnalysisEntity_var spThisSamEntity(Feature());
  if (spThisSamEntity == NULL_var) VLMFatalError("AssertionFailed:NULL_var != spThisSamEntity", kSource);

  int number = 0;
  for (const VLMString& name : kOldComponents) {
    ++number;
    DegreeOfFreedom old;
    if (const HRESULT read = Read(spThisSamEntity, name, old); Failed(read)) return read;
    if (const HRESULT removed = RemoveAllCalled(spThisSamEntity, name); Failed(removed)) return removed;
    if (const HRESULT set = spMotionBC->SetValue(number, old.value); Failed(set)) return set;
    const unsigned char active = old.active != 0 ? 1 : 0;
    if (const HRESULT set = spMotionBC->SetActivity(number, active); Failed(set)) return set;
  }
  HVXSendModificationNotice(Feature());
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEAcclnBCUpgrade)
