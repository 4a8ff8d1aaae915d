#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades ties.
class HVXETiedContactUpgrage final : public HVXUpgradeOf<HVXETiedContactUpgrage> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  static const HVXUpgradeBinding kBindings[];

  HRESULT MoveSupportFromProperty();
  HRESULT RenameToFastenedPair();
};
