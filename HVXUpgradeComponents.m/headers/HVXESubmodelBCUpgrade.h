#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades submodel boundary conditions.
class HVXESubmodelBCUpgrade final : public HVXUpgradeOf<HVXESubmodelBCUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT UpgradeAndRemoveRepetitions();
  HRESULT RemoveRepetitions();

  static const HVXUpgradeBinding kBindings[];
};
