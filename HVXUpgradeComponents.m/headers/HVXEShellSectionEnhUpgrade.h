#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades enhanced shell sections.
class HVXEShellSectionEnhUpgrade final : public HVXUpgradeOf<HVXEShellSectionEnhUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT TurnAngleIntoRadians();

  static const HVXUpgradeBinding kBindings[];
};
