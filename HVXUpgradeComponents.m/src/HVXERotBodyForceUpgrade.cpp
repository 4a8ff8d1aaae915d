#include "HVXERotBodyForceUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSupportUpgrades.h"
#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXIRotationalBodyForce.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXRotationalBodyForce"};

const VLMString kVelocity("velocity_param");
const VLMString kAcceleration("acceleration_param");

}  // namespace

const HVXUpgradeBinding HVXERotBodyForceUpgrade::kBindings[] = {
    {kUpgradeBodySupport, "Moves supports that rest on a solid to the part's main body.",
     Shared<&HVXUpgradeBodySupport>, HVXOnFailure::kStop},
    {kReExplicitateFeature, "Marks the feature out of date, so that the host rebuilds it.",
     Shared<&HVXMarkOutOfDate>, HVXOnFailure::kStop},
    {kUpgradeBasicComponents, "Brings the basic components to the current layout.",
     Shared<&HVXRunHostUpgrade>, HVXOnFailure::kStop},
    {kUpgradeRBFAxisData, "Stores the rotation axis together with the part that it belongs to.",
     Own<&HVXERotBodyForceUpgrade::MigrateAxis>, HVXOnFailure::kStop},
    {kUpgradeRotationalBodyForceBasicComponents,
     "Copies angular velocity and acceleration from their parameters to the force.",
     Own<&HVXERotBodyForceUpgrade::MigrateRotation>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXERotBodyForceUpgrade::kClass = {
    .name = "HVXERotBodyForceUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXERotBodyForceUpgrade::MigrateAxis() {
  const HRESULT stored = StoreAxisWithPart();
  if (Succeeded(stored)) HVXSendModificationNotice(Feature());
  return stored;
}

HRESULT HVXERotBodyForceUpgrade::StoreAxisWithPart() {
  const HVXIRotationalBodyForce_var spForce(Feature());
  if (spForce == NULL_var) return E_FAIL;
  VLMILinkableObject_var spAxis;
  static_cast<void>(spForce->GetAxis(spAxis));
  if (spAxis == NULL_var) return S_OK;
  // An axis that belongs to no part is stored with a null one, on purpose.
  const VLMISpecObject_var spPart = HVXAnalysisDocUtils::GetPartAsSpecObject(spAxis);
  if (const HRESULT set = spForce->SetAxisData(spAxis, spPart); Failed(set)) return set;
  return S_OK;
}

// No notice follows here, on purpose.
HRESULT HVXERotBodyForceUpgrade::MigrateRotation() {
  return HVXUpgradeThenTransfer(Feature(), [this] { return TransferRotation(); });
}

// Both parameters stay, on purpose.
HRESULT HVXERotBodyForceUpgrade::TransferRotation() {
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;
  const HVXIRotationalBodyForce_var spForce(Feature());
  if (spForce == NULL_var) return E_FAIL;

  double velocity = 0.0;
  if (const HRESULT read = HVXGetRealParmValue(kVelocity, velocity, spAttrAccess); Failed(read)) return read;
  if (Failed(spForce->SetAngularVelocity(velocity))) return E_FAIL;
  double acceleration = 0.0;
  const HRESULT read = HVXGetRealParmValue(kAcceleration, acceleration, spAttrAccess);
  if (Failed(read)) return read;
  // This setter's own code is given, the velocity's is not, on purpose.
  return spForce->SetAngularAcceleration(acceleration);
}

HVX_EXPORT_CREATE_TIE(HVXERotBodyForceUpgrade)
