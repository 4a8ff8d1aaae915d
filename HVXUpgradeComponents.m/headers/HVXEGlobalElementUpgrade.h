#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades global element assignments.
class HVXEGlobalElementUpgrade final : public HVXUpgradeOf<HVXEGlobalElementUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT AddDefaultAssignment();

  static const HVXUpgradeBinding kBindings[];
};
