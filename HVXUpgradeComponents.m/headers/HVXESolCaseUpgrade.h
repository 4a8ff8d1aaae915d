#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades the solutions of analysis cases.
class HVXESolCaseUpgrade final : public HVXUpgradeOf<HVXESolCaseUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT LinkToAnalysisCase();

  static const HVXUpgradeBinding kBindings[];
};
