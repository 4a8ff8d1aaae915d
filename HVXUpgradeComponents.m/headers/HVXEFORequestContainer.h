#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades containers of field output requests.
class HVXEFORequestContainer final : public HVXUpgradeOf<HVXEFORequestContainer> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT ReplaceOldRequests();

  static const HVXUpgradeBinding kBindings[];
};
