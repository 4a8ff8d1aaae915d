#pragma once

#include "HVXUpgradeExtension.h"
#include "analysis/VLMISamBasicComponent.h"

/// Upgrades gasket properties.
class HVXEGasketPropertyUpgrade final : public HVXUpgradeOf<HVXEGasketPropertyUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT ReExplicitate();
  HRESULT MigrateStabilizationStiffness();
  HRESULT UpgradeSelf();
  HRESULT MoveStiffness();
  HRESULT RemoveOldStiffness();
  VLMISamBasicComponent_var OldStiffness();

  static const HVXUpgradeBinding kBindings[];
};
