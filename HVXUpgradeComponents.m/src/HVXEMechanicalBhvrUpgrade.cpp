#include "HVXEMechanicalBhvrUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "workbench/HVXTangentialBehavior.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXInteractionPropertyLT"};

const VLMString kTangentialBehavior("tangentialBehavior");
const VLMString kFrictionValues("frictionValList");

}  // namespace

const HVXUpgradeBinding HVXEMechanicalBhvrUpgrade::kBindings[] = {
    {kUserSubRoutineAttrUpgrade,
     "Gives a behaviour defined by a user subroutine the friction formulation of its own.",
     Own<&HVXEMechanicalBhvrUpgrade::MigrateUserSubroutine>, HVXOnFailure::kSkip,
     "A property without a tangential behaviour has no friction."},
    {kFrictionValueUpgrade, "Makes a friction table from the first value of the list of friction values.",
     Own<&HVXEMechanicalBhvrUpgrade::MigrateFrictionValue>, HVXOnFailure::kSkip,
     "A property without a tangential behaviour has no friction."},
};

constinit const HVXUpgradeClass HVXEMechanicalBhvrUpgrade::kClass = {
    .name = "HVXEMechanicalBhvrUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .matching = HVXMatching::kSequential,
};

HRESULT HVXEMechanicalBhvrUpgrade::MigrateUserSubroutine() {
  HVXGenHeapObjectProxyHVXTangentialBehavior proxy;
  if (Failed(proxy.Fill(Feature())) || proxy.Get() == nullptr) return E_FAIL;
  if (proxy.Get()->IsUserSubroutine()) {
    static_cast<void>(proxy.Get()->SetFrictionFormulation(HVXTangentialBehavior::kUserDefined));
  }
  return S_OK;
}

HRESULT HVXEMechanicalBhvrUpgrade::MigrateFrictionValue() {
  HVXGenHeapObjectProxyHVXTangentialBehavior proxy;
  if (Failed(proxy.Fill(Feature())) || proxy.Get() == nullptr) return E_FAIL;

  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;
  const VLMISpecObject_var spBehavior =
      spAttrAccess->GetObject(spAttrAccess->GetAttrKey(kTangentialBehavior));
  const VLMISpecAttrAccess_var spAccessOnBehavior(spBehavior);
  if (spAccessOnBehavior == NULL_var) return E_NOINTERFACE;

  std::vector<double> values;
  static_cast<void>(spAccessOnBehavior->GetRealList(spAccessOnBehavior->GetAttrKey(kFrictionValues), values));
  if (values.empty()) return S_OK;
  // The first value only, on purpose: what else the list held has never been a friction coefficient of the
  // table. The list itself stays.
  const HVXCftArraydouble row = {values.front(), 0.0, 0.0, 0.0};
  const HVXCftArrayHVXCftArrayDouble table = {row};
  static_cast<void>(proxy.Get()->SetFrictionTable(table));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEMechanicalBhvrUpgrade)
