#pragma once

#include "HVXUpgradeExtension.h"

/// Upgrades analysis cases: their names and those of what stands beneath them, and the section controls of
/// their element assignments.
class HVXEAnalysisCaseUpgrade final : public HVXUpgradeOf<HVXEAnalysisCaseUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT MigrateToElemType();
  HRESULT MigrateToLocalAndGlobalAssignment();
  HRESULT RewriteProductWord();
  HRESULT ReplaceProductNames();

  static const HVXUpgradeBinding kBindings[];
};
