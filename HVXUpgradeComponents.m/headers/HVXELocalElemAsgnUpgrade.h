#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades local element assignments.
class HVXELocalElemAsgnUpgrade final : public HVXUpgradeOf<HVXELocalElemAsgnUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT ReplaceElementAssignments();

  static const HVXUpgradeBinding kBindings[];
};
