#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades the bolts of Acme: the diameter's unit, strengths instead of a property class.
class AcmeBoltUpgrade final : public HVXUpgradeOf<AcmeBoltUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT ConvertDiameter();
  HRESULT ReplacePropertyClass();

  static const HVXUpgradeBinding kBindings[];
};
