#include "HVXStepUpgrades.h"

HRESULT HVXReadStepValues(std::span<const char* const> keys, std::span<double> values,
                          const VLMISpecAttrAccess_var& spAttrAccess) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const HRESULT read = HVXGetRealParmValue(keys[i], values[i], spAttrAccess);
    if (Failed(read)) return read;
  }
  return S_OK;
}
