#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades surface-to-surface contacts.
class HVXESurfaceToSurfaceContactUpgrage final : public HVXUpgradeOf<HVXESurfaceToSurfaceContactUpgrage> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
