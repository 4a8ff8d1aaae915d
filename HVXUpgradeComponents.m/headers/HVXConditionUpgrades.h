#pragma once

#include "HVXParameterUpgrades.h"
#include "HVXSharedUpgrades.h"

/// \file
/// What the upgrade classes of prescribed conditions have in common: the orders in which values come into the
/// current basic components, and the transfer of one parameter. A class states what is its own.

/// Tells viewers that the feature was changed, where it has them to tell.
void HVXSendModificationNotice(const VLMBaseUnknown_var& feature);

/// The order of most conditions: the host's upgrade makes the current components, `transfer` fills them, and
/// the feature is registered. The first failure ends it with its code.
template <class Transfer>
HRESULT HVXUpgradeThenTransfer(const VLMBaseUnknown_var& feature, Transfer transfer) {
  if (const HRESULT upgraded = HVXRunHostUpgrade(feature); Failed(upgraded)) return upgraded;
  if (const HRESULT transferred = transfer(); Failed(transferred)) return transferred;
  return HVXRegisterInFeatureList(feature);
}

/// The order of conditions whose values are in place and that only hold too many sons: `trim` takes those out
/// first. Its failure ends it with its code.
template <class Trim>
HRESULT HVXTrimThenUpgrade(const VLMBaseUnknown_var& feature, Trim trim) {
  if (const HRESULT trimmed = trim(); Failed(trimmed)) return trimmed;
  // A trimmed feature is registered whatever becomes of this, on purpose.
  static_cast<void>(HVXRunHostUpgrade(feature));
  return HVXRegisterInFeatureList(feature);
}

/// What becomes of an old parameter once its value has been transferred. Conditions differ in it on purpose.
enum class HVXOldParameter {
  kKeep,
  kRemove,        ///< Removed; the result of that is not looked at.
  kRemoveOrFail,  ///< Removed; the transfer gives the result of that.
};

/// Copies the value of the parameter under `key` into the condition through `Set`, an operation of interface
/// `Condition`. E_NOINTERFACE without attribute access, E_FAIL without `Condition` or when `Set` fails,
/// whatever its own code; the code of a failed read.
template <class Condition, auto Set>
HRESULT HVXTransferParameter(const VLMBaseUnknown_var& feature, const VLMString& key,
                             HVXOldParameter oldParameter) {
  const VLMISpecAttrAccess_var spAttrAccess(feature);
  if (spAttrAccess == NULL_var) return E_NOINTERFACE;
  const VLMHandle<Condition> spCondition(feature);
  if (spCondition == NULL_var) return E_FAIL;

  double value = 0.0;
  if (const HRESULT read = HVXGetRealParmValue(key, value, spAttrAccess); Failed(read)) return read;
  if (Failed((spCondition.Get()->*Set)(value))) return E_FAIL;
  if (oldParameter == HVXOldParameter::kKeep) return S_OK;
  const HRESULT removed = HVXRemoveParameter(key, feature);
  return oldParameter == HVXOldParameter::kRemoveOrFail ? removed : S_OK;
}

/// Has the temperature of midside nodes interpolated: brings the components up to date, then sets the flag of
/// interface `Condition`. E_FAIL without that interface; else the code of what failed.
template <class Condition>
HRESULT HVXSwitchMidsideOn(const VLMBaseUnknown_var& feature) {
  if (const HRESULT upgraded = HVXRunHostUpgrade(feature); Failed(upgraded)) return upgraded;
  const VLMHandle<Condition> spCondition(feature);
  if (spCondition == NULL_var) return E_FAIL;
  return spCondition->SetMidside(1);
}
