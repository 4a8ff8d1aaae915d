#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades surface heat fluxes.
class HVXESurfaceHeatFluxUpgrade final : public HVXUpgradeOf<HVXESurfaceHeatFluxUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
