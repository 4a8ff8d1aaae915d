#include "HVXEVelocityBCUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisEntity.h"
#include "workbench/HVXIMotionBC.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXVelocityBCLT"};

constexpr int kDegreesOfFreedom = 6;

// The values and activities of degrees of freedom 1 to 6.
struct Motion {
  double values[kDegreesOfFreedom] = {};
  unsigned char activities[kDegreesOfFreedom] = {};
};

HRESULT Read(const HVXIMotionBC_var& spMotionBC, Motion& motion) {
  for (int i = 0; i < kDegreesOfFreedom; ++i) {
    const HRESULT value = spMotionBC->GetValue(i + 1, motion.values[i]);
    if (Failed(value)) return value;
    const HRESULT activity = spMotionBC->GetActivity(i + 1, motion.activities[i]);
    if (Failed(activity)) return activity;
  }
  return S_OK;
}

HRESULT Write(const HVXIMotionBC_var& spMotionBC, const Motion& motion) {
  for (int i = 0; i < kDegreesOfFreedom; ++i) {
    const HRESULT value = spMotionBC->SetValue(i + 1, motion.values[i]);
    if (Failed(value)) return value;
    const HRESULT activity = spMotionBC->SetActivity(i + 1, motion.activities[i]);
    if (Failed(activity)) return activity;
  }
  return S_OK;
}

HRESULT RemoveAll(const VLMISamAnalysisEntity_var& spEntity) {
  const VLMString anyName("");
  VLMListValVLMBaseUnknown_var components;
  if (const HRESULT listed = spEntity->ListBasicComponents(anyName, components); Failed(listed))
    return listed;
  for (int position = 1; position <= components.Size(); ++position) {
    const VLMISamBasicComponent_var spComponent(components[position]);
    if (spComponent == NULL_var) continue;
    const VLMUnicodeString name = spComponent->GetName();
    if (const HRESULT removed = spEntity->RemoveBasicComponent(name.View()); Failed(removed)) return removed;
  }
  return S_OK;
}

}  // namespace

const HVXUpgradeBinding HVXEVelocityBCUpgrade::kBindings[] = {
    {kUpgradeVelocityBCBasicComponents, "Rebuilds the basic components and keeps the six values.",
     Own<&HVXEVelocityBCUpgrade::RebuildComponents>, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXEVelocityBCUpgrade::kClass = {
    .name = "HVXEVelocityBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

// The one condition whose values are read before the host's upgrade and written after it: its old components
// must be gone before the current ones are made.
HRESULT HVXEVelocityBCUpgrade::RebuildComponents() {
  const HVXIMotionBC_var spMotionBC(Feature());
  if (spMotionBC == NULL_var) return E_FAIL;
  Motion motion;
  if (const HRESULT read = Read(spMotionBC, motion); Failed(read)) return read;

  const VLMISamAnalysisEntity_var spEntity(Feature());
  if (spEntity == NULL_var) return E_FAIL;
  if (const HRESULT removed = RemoveAll(spEntity); Failed(removed)) return removed;
  if (const HRESULT upgraded = HVXRunHostUpgrade(Feature()); Failed(upgraded)) return upgraded;
  if (const HRESULT written = Write(spMotionBC, motion); Failed(written)) return written;
  return HVXRegisterInFeatureList(Feature());
}

HVX_EXPORT_CREATE_TIE(HVXEVelocityBCUpgrade)
