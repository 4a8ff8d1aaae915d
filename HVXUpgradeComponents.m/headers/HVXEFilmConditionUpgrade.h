#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades film conditions.
class HVXEFilmConditionUpgrade final : public HVXUpgradeOf<HVXEFilmConditionUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateValue();

  static const HVXUpgradeBinding kBindings[];
};
