#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades jobs and job containers: restart data, runs from an input file, the memory unit.
class HVXEJobUpgrade final : public HVXUpgradeOf<HVXEJobUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateRestartData();
  HRESULT ApplyRestartRuleOfAnalysisType();
  HRESULT MigrateFromInputFile();
  HRESULT SetMemoryUnit();

  static const HVXUpgradeBinding kBindings[];
};
