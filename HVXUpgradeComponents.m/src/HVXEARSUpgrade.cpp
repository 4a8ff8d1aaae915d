#include "HVXEARSUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "modeler/VLMISpecObject.h"
#include "workbench/HVXIARSurf.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXARSurfLT"};

}  // namespace

const HVXUpgradeBinding HVXEARSUpgrade::kBindings[] = {
    {kMakeOutOfdateARS, "Marks the surface and its mesh part out of date, so that the host rebuilds them.",
     Own<&HVXEARSUpgrade::MarkSurfaceOutOfDate>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEARSUpgrade::kClass = {
    .name = "HVXEARSUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEARSUpgrade::MarkSurfaceOutOfDate() {
  const HVXIARSurf_var spSurface(Feature());
  if (spSurface == NULL_var) return E_FAIL;

  // The mesh part goes first. A surface without one is sound, so only the handle is looked at.
  VLMBaseUnknown_var spMeshPart;
  static_cast<void>(spSurface->GetMeshPart(spMeshPart));
  const VLMISpecObject_var spSpecOnMeshPart(spMeshPart);
  if (!(spSpecOnMeshPart == NULL_var)) static_cast<void>(spSpecOnMeshPart->SetUpToDate(0));

  const VLMISpecObject_var spSpecOnSurface(spSurface);
  if (!(spSpecOnSurface == NULL_var)) static_cast<void>(spSpecOnSurface->SetUpToDate(0));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEARSUpgrade)
