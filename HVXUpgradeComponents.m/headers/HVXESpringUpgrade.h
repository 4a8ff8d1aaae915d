#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades springs and dampers.
class HVXESpringUpgrade final : public HVXUpgradeOf<HVXESpringUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT SetMeshPartMode();
  HRESULT ReExplicitateMeshing();
  HRESULT MeshOnOrphanPoints();

  static const HVXUpgradeBinding kBindings[];
};
