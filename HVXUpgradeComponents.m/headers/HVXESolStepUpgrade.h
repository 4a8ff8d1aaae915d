#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades the solutions of analysis steps.
class HVXESolStepUpgrade final : public HVXUpgradeOf<HVXESolStepUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT SetThermalPhysicalType();

  static const HVXUpgradeBinding kBindings[];
};
