#pragma once

#include <exception>
#include <map>
#include <string_view>
#include <unordered_set>

#include "upgrade/IdleWatch.h"
#include "upgrade/UpgradeRun.h"
#include "upgrade/VisitLists.h"

namespace standalone {

/// What tells where a library wants the observer of the calling thread.
using UpgradeObserverPlace = HVXUpgradeObserver** (*)();

/// Takes a document through upgrades, one after the other, and keeps the account of it. Watches the dispatch
/// of the libraries for as long as it lives.
class UpgradeRunner final : private HVXUpgradeObserver {
 public:
  /// `observers`: which tell where the libraries want their observer; `upgrades`: all that will be run for
  /// the first time. All arguments must outlive the runner, which belongs to the thread that made it.
  UpgradeRunner(Document& document, const std::vector<UpgradeObserverPlace>& observers,
                const std::vector<const KnownUpgrade*>& upgrades, const UpgradeWatch& watch);
  ~UpgradeRunner();

  /// Takes all features that the upgrade concerns through it, and the document as a whole.
  void Run(const KnownUpgrade& upgrade);
  /// Takes only those features through it, which it left behind; the document as a whole as well.
  void RunAgain(const KnownUpgrade& upgrade, const std::vector<Feature*>& features);

  /// The account, without the identifiers. Call it once, at the end.
  [[nodiscard]] UpgradeRun Finish();

 private:
  // HVXUpgradeObserver
  void BeforeRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row) override;
  void AfterRoutine(const VLMBaseUnknown_var& feature, const HVXUpgradeBinding& row, HRESULT result) override;

  void RunOn(const KnownUpgrade& upgrade, const std::vector<Feature*>& features);
  void Visit(const KnownUpgrade& upgrade, const VLMListValVLMUnicodeString& identifiers, Feature& feature);
  /// Hands the identifiers to the extension that `extension` gives, and looks at the result.
  template <class Extension>
  void HandOver(const UpgradeWork& work, const Extension& extension,
                const VLMListValVLMUnicodeString& identifiers);
  void Convert(const KnownUpgrade& upgrade, const VLMListValVLMUnicodeString& identifiers);
  void PropagateHandedOver(const KnownUpgrade& upgrade);
  /// Does a piece of work; what it throws gives up on the document.
  template <class Action>
  void Do(const UpgradeWork& work, const Action& action);
  [[noreturn]] void GiveUp(const UpgradeWork& work) const;
  [[nodiscard]] UpgradePlace PlaceOf(const UpgradeWork& work) const;
  /// A failure that no routine told.
  void AddFailure(const UpgradeWork& work, HRESULT code);
  void Settle(const KnownUpgrade& upgrade);
  template <class Function, class... Arguments>
  void Tell(const Function& function, const Arguments&... arguments);
  void TellProgress();

  Document& document_;
  const std::vector<UpgradeObserverPlace>& observers_;
  const UpgradeWatch& watch_;
  VisitLists lists_;
  IdleWatch idle_;
  UpgradeRun run_;
  std::map<std::string_view, std::size_t> concerned_;                        // by late type
  std::map<std::string_view, std::unordered_set<const Feature*>> runAgain_;  // of other late types
  std::map<const HVXUpgradeBinding*, std::size_t> harmless_;
  const UpgradeWork* work_ = nullptr;          // at hand
  const HVXUpgradeClass* handedTo_ = nullptr;  // where several libraries share the late type
  std::exception_ptr thrownByWatch_;
  std::vector<UpgradeFailure> told_;  // of the visit at hand: routines that failed
  std::size_t visits_ = 0;
  std::size_t expectedVisits_ = 0;
};

}  // namespace standalone
