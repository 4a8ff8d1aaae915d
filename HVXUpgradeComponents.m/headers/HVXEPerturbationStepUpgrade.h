#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades static perturbation steps.
class HVXEPerturbationStepUpgrade final : public HVXUpgradeOf<HVXEPerturbationStepUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];
};
