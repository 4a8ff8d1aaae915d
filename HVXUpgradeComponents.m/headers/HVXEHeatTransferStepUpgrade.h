#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades heat transfer steps.
class HVXEHeatTransferStepUpgrade final : public HVXUpgradeOf<HVXEHeatTransferStepUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateIncrementation();

  static const HVXUpgradeBinding kBindings[];
};
