#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades concentrated forces.
class HVXEConcForceUpgrade final : public HVXUpgradeOf<HVXEConcForceUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT TrimAndUpgrade();
  HRESULT TrimSonsList();

  static const HVXUpgradeBinding kBindings[];
};
