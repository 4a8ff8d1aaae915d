#include "HVXEShellSectionEnhUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "base/VLMMath.h"
#include "workbench/HVXIMatOrientation.h"
#include "workbench/HVXIShellSection.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXShellSectionEnhLT"};

}  // namespace

const HVXUpgradeBinding HVXEShellSectionEnhUpgrade::kBindings[] = {
    {kUpgradeMatOrientAngleToRadians, "Turns the material orientation angle from degrees into radians.",
     Own<&HVXEShellSectionEnhUpgrade::TurnAngleIntoRadians>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEShellSectionEnhUpgrade::kClass = {
    .name = "HVXEShellSectionEnhUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

// Divides whenever it is asked to, also a second time, on purpose: the angle does not tell its unit.
HRESULT HVXEShellSectionEnhUpgrade::TurnAngleIntoRadians() {
  const HVXIShellSection_var spSection(Feature());
  if (spSection == NULL_var) return E_FAIL;

  VLMBaseUnknown_var spOrientationOfSection;
  static_cast<void>(spSection->GetMatOrientation(spOrientationOfSection));
  const HVXIMatOrientation_var spOrientation(spOrientationOfSection);
  if (spOrientation == NULL_var) return S_OK;

  double angle = 0.0;
  static_cast<void>(spOrientation->GetAngle(angle));
  static_cast<void>(spOrientation->SetAngle(angle / VLMRadianToDegree));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEShellSectionEnhUpgrade)
