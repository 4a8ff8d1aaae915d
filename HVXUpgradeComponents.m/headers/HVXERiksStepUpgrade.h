#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades Riks steps.
class HVXERiksStepUpgrade final : public HVXUpgradeOf<HVXERiksStepUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
