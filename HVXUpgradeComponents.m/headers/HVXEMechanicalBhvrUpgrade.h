#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades interaction properties: their tangential behaviour.
class HVXEMechanicalBhvrUpgrade final : public HVXUpgradeOf<HVXEMechanicalBhvrUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateUserSubroutine();
  HRESULT MigrateFrictionValue();

  static const HVXUpgradeBinding kBindings[];
};
