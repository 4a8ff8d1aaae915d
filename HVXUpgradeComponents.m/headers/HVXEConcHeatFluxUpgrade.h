#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades concentrated heat fluxes.
class HVXEConcHeatFluxUpgrade final : public HVXUpgradeOf<HVXEConcHeatFluxUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
