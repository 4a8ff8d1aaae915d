#pragma once

#include <span>

#include "HVXParameterUpgrades.h"
#include "modeler/VLMIKpeParm.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXAnalysisEntityUtils.h"

/// \file
/// What the upgrade classes of analysis steps share: reading old incrementation values and creating the
/// parameters that a step owns now.

/// A parameter that steps of interface `Step` own.
template <class Step>
struct HVXStepParameter {
  const char* name;
  const char* magnitude;
  double defaultValue;  ///< Where the parameter begins; the value of the old one replaces it.
  HRESULT (Step::*set)(const VLMIKpeParm_var& parameter);
};

/// Reads the parameters under `keys`, in order, into `values`, which has as many entries. The first failure
/// ends it with its code.
HRESULT HVXReadStepValues(std::span<const char* const> keys, std::span<double> values,
                          const VLMISpecAttrAccess_var& spAttrAccess);

/// Creates the parameters, in order, and hands each to the step. E_FAIL when the feature is no `Step`; the
/// code of the first failure.
template <class Step>
HRESULT HVXCreateStepParameters(std::span<const HVXStepParameter<Step>> parameters,
                                const VLMBaseUnknown_var& feature) {
  const VLMHandle<Step> spStep(feature);
  if (spStep == NULL_var) return E_FAIL;
  VLMDocument_var spDocument;
  const HRESULT documentGiven = HVXAnalysisDocUtils::GetDocument(spDocument, feature);
  if (Failed(documentGiven)) return documentGiven;

  for (const HVXStepParameter<Step>& parameter : parameters) {
    VLMIKpeParm_var spParm;
    const HRESULT created = HVXAnalysisEntityUtils::CreateKpeParam(
        parameter.magnitude, parameter.name, spParm, parameter.defaultValue, spDocument, 1);
    if (Failed(created)) return created;
    // A document that wants no parameters ends it here, with success, on purpose.
    if (spParm == NULL_var) return created;
    if (const HRESULT set = (spStep.Get()->*parameter.set)(spParm); Failed(set)) return set;
  }
  return S_OK;
}
