#pragma once

#include "modeler/VLMISpecAttrAccess.h"

/// \file
/// The routines on attributes of a feature and on the knowledge parameters that older documents held in them,
/// and the registration of features whose values have moved to basic components.

/// Reads the real value of the knowledge parameter that attribute `key` links to. E_FAIL, with `value` as it
/// was, when the access, the key, the parameter or its value object is missing, else 0.
HRESULT HVXGetRealParmValue(const VLMString& key, double& value, const VLMISpecAttrAccess_var& spAttrAccess);

/// Takes the knowledge parameter that attribute `key` of the feature links to out of the document, through
/// its analysis model, whose result is given. E_FAIL without a document, model or key; 0 for a key that holds
/// nothing.
HRESULT HVXRemoveParameter(const VLMString& key, const VLMBaseUnknown_var& feature);

/// Appends the feature to list "FeatList" of its document's analysis model: the features whose values are in
/// current basic components. E_FAIL without a document, model or list. A feature that is listed already is
/// listed again.
HRESULT HVXRegisterInFeatureList(const VLMBaseUnknown_var& feature);

/// Removes attribute `key`. E_FAIL when the access is null or the feature has no such attribute, else 0.
HRESULT HVXRemoveFeatureAttribute(const VLMString& key, const VLMISpecAttrAccess_var& spAttrAccess);
