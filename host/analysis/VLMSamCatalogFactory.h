#pragma once

#include "base/VLMBaseUnknown.h"

/// Completes analysis objects that were created from a catalog.
class VLMSamCatalogFactory {
 public:
  VLMSamCatalogFactory() = delete;

  /// Sets the physical type of `object`, such as "MECHANICAL_STATIC_LINEAR". E_FAIL for a null object or one
  /// that is not a feature.
  static HRESULT SetPhysicalType(const VLMBaseUnknown_var& object, const VLMUnicodeString& physicalType);
};
