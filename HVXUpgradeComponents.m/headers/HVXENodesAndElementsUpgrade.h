#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades mesh sets: the user numbers of their nodes and elements.
class HVXENodesAndElementsUpgrade final : public HVXUpgradeOf<HVXENodesAndElementsUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT ResetUserNumbers();

  static const HVXUpgradeBinding kBindings[];
};
