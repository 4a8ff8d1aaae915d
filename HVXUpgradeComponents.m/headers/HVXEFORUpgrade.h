#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades field output requests.
class HVXEFORUpgrade final : public HVXUpgradeOf<HVXEFORUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT RemoveNodalTemperature();

  static const HVXUpgradeBinding kBindings[];
};
