#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades analytical rigid surfaces.
class HVXEARSUpgrade final : public HVXUpgradeOf<HVXEARSUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MarkSurfaceOutOfDate();

  static const HVXUpgradeBinding kBindings[];
};
