#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades rigid and smooth couplings.
class HVXERigidCouplingUpgrade final : public HVXUpgradeOf<HVXERigidCouplingUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT FillConnectionMeshPart();
  HRESULT ConvertGroupsToSupports();
  HRESULT HandExclusionRegionsToMeshPart();
  HRESULT ReplaceGroupsInExclusionRegions();
  HRESULT ReExplicitateMeshPart();

  static const HVXUpgradeBinding kBindings[];
};
