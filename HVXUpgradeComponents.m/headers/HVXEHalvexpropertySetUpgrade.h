#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades property sets: those that are named after the solver product get the neutral name.
class HVXEHalvexpropertySetUpgrade final : public HVXUpgradeOf<HVXEHalvexpropertySetUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT RenamePropertySet();

  static const HVXUpgradeBinding kBindings[];
};
