#pragma once

#include "analysis/VLMEAnalysisUpgrade.h"
#include "workbench/HVXUpgradeTable.h"

/// Makes the host's own analysis upgrade available on this workbench's late types. Adds nothing to it.
class HVXEBasicComponentUpgrade final : public VLMEAnalysisUpgrade {
 public:
  using VLMEAnalysisUpgrade::VLMEAnalysisUpgrade;

  unsigned char NeedToUpgrade() { return VLMEAnalysisUpgrade::NeedToUpgrade(); }
  HRESULT Upgrade() { return VLMEAnalysisUpgrade::Upgrade(); }

  /// Makes the tie that forwards `VLMISamUpgrade` of `extended`.
  static void* CreateTIE(VLMBaseUnknown& extended);

  static const HVXUpgradeClass kClass;
};
