#include "HVXEBasicComponentUpgrade.h"

#include "HVXUpgradeExtension.h"
#include "analysis/VLMISamUpgrade.h"

namespace {

constexpr const char* kLateTypes[] = {
    "HVXRotationalBodyForce",
    "HVXRigidBodyConstraintLT",
    "HVXContactConnectionEnhancementStdLT",
    "HVXPressure",
    "HVXGravity",
    "HVXTemperatureLT",
    "HVXConcHeatFlux",
    "HVXSurfaceHeatFlux",
    "HVXFilmCondition",
    "HVXAccelerationBCLT",
    "HVXVelocityBCLT",
    "HVXSubmodelBCLT",
    "HVXInitialVelocityLT",
    "HVXContactControlsLT",
    "HVXGaskPropertyLT",
    "HVXGeneralStaticStepLT",
    "HVXHeatTransferStepLT",
    "HVXPreTensionPropertyLT",
};

}  // namespace

constinit const HVXUpgradeClass HVXEBasicComponentUpgrade::kClass = {
    .name = "HVXEBasicComponentUpgrade",
    .interface = VLMISamUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = {},
    .createTIE = &CreateTIE,
};

void* HVXEBasicComponentUpgrade::CreateTIE(VLMBaseUnknown& extended) {
  static const bool registered = (HVXRegisterMetaObject(kClass), true);  // by the first tie, once
  static_cast<void>(registered);
  return VLMMakeTie<TIEVLMISamUpgrade<HVXEBasicComponentUpgrade>>(extended);
}

extern "C" __attribute__((visibility("default"))) void* CreateTIEVLMISamUpgradeHVXEBasicComponentUpgrade(
    VLMBaseUnknown& extended) {
  return HVXEBasicComponentUpgrade::CreateTIE(extended);
}
