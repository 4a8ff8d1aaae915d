#pragma once

#include "base/VLMLibrary.h"
#include "workbench/HVXUpgradeTable.h"

/// All upgrade identifiers, oldest first.
inline constexpr int kHVXUpgradeIdentifierCount = 66;
extern const VLMUnicodeString kHVXUpgradeIdentifiers[kHVXUpgradeIdentifierCount];

/// This library as the host's registry sees it, from its loading to its unloading.
[[nodiscard]] const VLMLibrary& HVXThisLibrary();

/// What this library offers, for version managers and tools.
extern "C" __attribute__((visibility("default"))) const HVXUpgradeLibrary* HVXGetUpgradeLibrary();
