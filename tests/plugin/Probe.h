#pragma once

#include "HVXUpgradeExtension.h"
#include "base/VLMFatalError.h"
#include "modeler/VLMISpecAttrAccess.h"

enum class ProbeRule { kStop, kFirstMatch, kSequential, kLast, kFirst, kGivesUp, kUnreached };

/// Extensions whose routines do nothing but show that they ran: routine A adds attribute "A" to the feature
/// and gives back what that host call gave; C gives 1 for success. One class for each rule of
/// dispatch, each on late types of its own.
template <ProbeRule Rule>
class Probe final : public HVXUpgradeOf<Probe<Rule>> {
 public:
  using HVXUpgradeOf<Probe>::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

  template <char Letter>
  HRESULT Run() {
    const VLMISpecAttrAccess_var spAccess(this->Feature());
    VLMSpecAttrKey key;
    const char name[] = {Letter, '\0'};
    const HRESULT added = spAccess->AddAttribute(name, VLMAttributeType::kInteger, key);
    return Letter == 'C' && Succeeded(added) ? 1 : added;
  }
  HRESULT Assert() { VLMFatalError("AssertionFailed:NULL_var != spProbe", "tests/plugin/Probe"); }
  HRESULT CallThroughNull() { return VLMISpecAttrAccess_var()->RemoveAttribute({}); }

  // Tables are made of these.
  template <char Letter>
  static HVXUpgradeBinding Row(const char* identifier, HVXOnFailure onFailure,
                               const char* harmless = nullptr) {
    return {identifier, "Shows that it ran.", HVXUpgradeOf<Probe>::template Own<&Probe::template Run<Letter>>,
            onFailure, harmless};
  }
  template <HRESULT (Probe::*Routine)()>
  static HVXUpgradeBinding RowOf(const char* identifier) {
    return {identifier, "Gives up.", HVXUpgradeOf<Probe>::template Own<Routine>, HVXOnFailure::kIgnore};
  }
};
