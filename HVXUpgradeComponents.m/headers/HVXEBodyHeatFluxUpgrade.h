#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades body heat fluxes.
class HVXEBodyHeatFluxUpgrade final : public HVXUpgradeOf<HVXEBodyHeatFluxUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
