#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades rigid body constraints.
class HVXERigidBodyConstraintUpgrade final : public HVXUpgradeOf<HVXERigidBodyConstraintUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateBodySupports();
  HRESULT FillConnectionMeshPart();
  HRESULT ConvertGroupsToSupports();
  HRESULT AddCenterOfMass();

  static const HVXUpgradeBinding kBindings[];
};
