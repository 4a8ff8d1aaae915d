#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades general static steps.
class HVXEGeneralStaticStepUpgrade final : public HVXUpgradeOf<HVXEGeneralStaticStepUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateIncrementation();

  static const HVXUpgradeBinding kBindings[];
};
