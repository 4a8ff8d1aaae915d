// A plug-in as others would write it, with the library's own dispatch compiled in.

#include "HVXUpgradeLibrary.h"
#include "Probe.h"
#include "ScratchFolderUpgrade.h"

namespace {

using StopProbe = Probe<ProbeRule::kStop>;
constexpr const char* kStopTypes[] = {"ProbeStopLT", "ProbeStopTooLT"};
const HVXUpgradeBinding kStopRows[] = {
    StopProbe::Row<'A'>("ProbeA", HVXOnFailure::kStop),
    StopProbe::Row<'B'>("ProbeB", HVXOnFailure::kIgnore),
    StopProbe::Row<'C'>("ProbeC", HVXOnFailure::kStop),
};

using FirstMatchProbe = Probe<ProbeRule::kFirstMatch>;
constexpr const char* kFirstMatchTypes[] = {"ProbeFirstMatchLT"};
const HVXUpgradeBinding kFirstMatchRows[] = {
    FirstMatchProbe::Row<'A'>("ProbeA", HVXOnFailure::kSkip),
    FirstMatchProbe::Row<'B'>("ProbeElsewhere", HVXOnFailure::kSkip),
    FirstMatchProbe::Row<'C'>("ProbeC", HVXOnFailure::kSkip, "There was nothing to show."),
};

// Only declared, since no description may have such rows.
using UnreachedProbe = Probe<ProbeRule::kUnreached>;
constexpr const char* kUnreachedTypes[] = {"ProbeUnreachedLT"};
const HVXUpgradeBinding kUnreachedRows[] = {
    UnreachedProbe::Row<'A'>("ProbeA", HVXOnFailure::kSkip),
    UnreachedProbe::Row<'B'>("ProbeA", HVXOnFailure::kSkip),
    UnreachedProbe::Row<'C'>("ProbeC", HVXOnFailure::kSkip),
};

using SequentialProbe = Probe<ProbeRule::kSequential>;
constexpr const char* kSequentialTypes[] = {"ProbeSequentialLT"};
const HVXUpgradeBinding kSequentialRows[] = {
    SequentialProbe::Row<'A'>("ProbeA", HVXOnFailure::kSkip),
    SequentialProbe::Row<'B'>("ProbeA", HVXOnFailure::kSkip),
    SequentialProbe::Row<'C'>("ProbeC", HVXOnFailure::kSkip),
};

using LastProbe = Probe<ProbeRule::kLast>;
constexpr const char* kLastTypes[] = {"ProbeLastLT"};
const HVXUpgradeBinding kLastRows[] = {
    LastProbe::Row<'A'>("ProbeA", HVXOnFailure::kLast),
    LastProbe::Row<'B'>("ProbeB", HVXOnFailure::kLast),
};

using FirstProbe = Probe<ProbeRule::kFirst>;
constexpr const char* kFirstTypes[] = {"ProbeFirstLT"};
const HVXUpgradeBinding kFirstRows[] = {
    FirstProbe::Row<'A'>("ProbeA", HVXOnFailure::kFirst),
    FirstProbe::Row<'B'>("ProbeB", HVXOnFailure::kIgnore),
};

using GivesUpProbe = Probe<ProbeRule::kGivesUp>;
constexpr const char* kGivesUpTypes[] = {"ProbeGivesUpLT"};
const HVXUpgradeBinding kGivesUpRows[] = {
    GivesUpProbe::RowOf<&GivesUpProbe::Assert>("ProbeAssertion"),
    GivesUpProbe::RowOf<&GivesUpProbe::CallThroughNull>("ProbeNullHandle"),
};

template <class Probe>
constexpr HVXUpgradeClass ClassOf(const char* name, std::span<const char* const> lateTypes,
                                  std::span<const HVXUpgradeBinding> bindings,
                                  HVXMatching matching = HVXMatching::kFirstMatch,
                                  HRESULT resultWithoutRun = S_OK) {
  return {name, HVXIUpgrade::kId, lateTypes, bindings, &Probe::CreateTIE, matching, resultWithoutRun};
}

}  // namespace

template <>
constinit const HVXUpgradeClass StopProbe::kClass = ClassOf<StopProbe>("ProbeStop", kStopTypes, kStopRows);
template <>
constinit const HVXUpgradeClass FirstMatchProbe::kClass = ClassOf<FirstMatchProbe>("ProbeFirstMatch",
                                                                                   kFirstMatchTypes,
                                                                                   kFirstMatchRows);
template <>
constinit const HVXUpgradeClass UnreachedProbe::kClass = ClassOf<UnreachedProbe>("ProbeUnreached",
                                                                                 kUnreachedTypes,
                                                                                 kUnreachedRows);
template <>
constinit const HVXUpgradeClass SequentialProbe::kClass =
    ClassOf<SequentialProbe>("ProbeSequential", kSequentialTypes, kSequentialRows, HVXMatching::kSequential);
template <>
constinit const HVXUpgradeClass LastProbe::kClass = ClassOf<LastProbe>("ProbeLast", kLastTypes, kLastRows,
                                                                       HVXMatching::kFirstMatch, -99);
template <>
constinit const HVXUpgradeClass FirstProbe::kClass = ClassOf<FirstProbe>("ProbeFirst", kFirstTypes,
                                                                         kFirstRows);
template <>
constinit const HVXUpgradeClass GivesUpProbe::kClass = ClassOf<GivesUpProbe>("ProbeGivesUp", kGivesUpTypes,
                                                                             kGivesUpRows);

namespace {

constexpr const HVXUpgradeClass* kClasses[] = {
    &ScratchFolderUpgrade::kClass, &StopProbe::kClass,      &FirstMatchProbe::kClass,
    &SequentialProbe::kClass,      &LastProbe::kClass,      &FirstProbe::kClass,
    &GivesUpProbe::kClass,         &UnreachedProbe::kClass,
};
constexpr std::span<const HVXUpgradeClass* const> kDescribed = std::span(kClasses).first(7);

const VLMUnicodeString kListed[] = {"UpgradeTestScratchFolder", "ProbeElsewhere"};
const HVXDocumentUpgrade kDocumentUpgrades[] = {
    {"ProbeDocument", "Tells how many features it was given.",
     [](const VLMListValVLMUnicodeString& identifiers, const VLMListValVLMISpecObject_var& features) {
       return identifiers.Size() == 1 ? features.Size() : E_FAIL;
     }},
};

const HVXUpgradeOrder kOrders[] = {{"ProbeC", "ProbeB", "B would take away what C reads."}};

const HVXUpgradeDeclarations declarations("TestUpgradeLibrary", kClasses);

}  // namespace

const VLMLibrary& HVXThisLibrary() {
  return declarations.Library();
}

const HVXUpgradeLibrary* HVXGetUpgradeLibrary() {
  static const HVXUpgradeLibrary library = {
      .name = "TestUpgradeLibrary",
      .version = "1.2",
      .identifiers = kListed,
      .classes = kDescribed,
      .documentUpgrades = kDocumentUpgrades,
      .orders = kOrders,
      .observer = &HVXDispatchObserver,
  };
  return &library;
}
