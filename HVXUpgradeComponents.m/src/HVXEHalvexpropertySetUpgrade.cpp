#include "HVXEHalvexpropertySetUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "base/VLMMsgCatalog.h"
#include "modeler/VLMIAlias.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHalvexPropertySetLT"};

const VLMString kCatalog("HVXVersionManager");

}  // namespace

const HVXUpgradeBinding HVXEHalvexpropertySetUpgrade::kBindings[] = {
    {kUpgradeFeaturesExternalName, "Gives a property set that is named after the product its neutral name.",
     Own<&HVXEHalvexpropertySetUpgrade::RenamePropertySet>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass HVXEHalvexpropertySetUpgrade::kClass = {
    .name = "HVXEHalvexpropertySetUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEHalvexpropertySetUpgrade::RenamePropertySet() {
  const VLMIAlias_var spAlias(Feature());
  if (spAlias == NULL_var) return E_FAIL;

  // Both names come from the catalog, so a localised document is renamed in its own language.
  const VLMUnicodeString oldName =
      VLMMsgCatalog::BuildMessage(kCatalog, "Halvex.Properties", nullptr, 0, "Halvex Properties");
  const VLMUnicodeString newName = VLMMsgCatalog::BuildMessage(
      kCatalog, "Nonlinear.Thermal.Properties", nullptr, 0, "Nonlinear and Thermal Properties");
  VLMUnicodeString name;
  static_cast<void>(spAlias->GetExternalName(name));
  name.ReplaceAll(oldName, newName);
  static_cast<void>(spAlias->SetExternalName(name));  // also when nothing was replaced
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEHalvexpropertySetUpgrade)
