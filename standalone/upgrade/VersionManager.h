#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "upgrade/UnknownUpgrades.h"
#include "upgrade/UpgradeRun.h"

namespace standalone {

/// Decides which upgrades a document still needs, and runs them. Several threads may ask one manager at a
/// time, each about another document.
class VersionManager {
 public:
  /// Knows what the libraries know, which must outlive it. The first library's identifiers stand in its
  /// order; those that another adds, or a table binds without listing them, follow in the order of their
  /// libraries. `UpgradeLibraries` gives libraries that go together, in the order that all programs use.
  explicit VersionManager(const std::vector<const HVXUpgradeLibrary*>& libraries);

  [[nodiscard]] const std::vector<const HVXUpgradeLibrary*>& Libraries() const { return libraries_; }
  [[nodiscard]] const std::vector<KnownUpgrade>& Known() const { return known_; }
  [[nodiscard]] const KnownUpgrade* Find(std::string_view identifier) const;
  /// The classes that offer the host's own upgrade, which routines call, and answer no identifier.
  [[nodiscard]] const std::vector<const HVXUpgradeClass*>& HostUpgrades() const { return hostUpgrades_; }

  /// The identifiers that the document has not been through, oldest first.
  [[nodiscard]] std::vector<std::string> Pending(const Document& document) const;
  /// What the document has been through and nobody here knows.
  [[nodiscard]] UnknownUpgrades Unknown(const Document& document) const;
  /// Whether nobody here can tell what the document still needs: a later release changed it, or a library
  /// that is not loaded while something is pending here. What is pending must not run behind the back of that
  /// library; with nothing pending there is nothing to do.
  [[nodiscard]] bool Refuses(const Document& document) const;

  /// Why another upgrade must come along with a chosen one.
  struct Needed {
    std::string identifier;  ///< What comes along ...
    std::string by;          ///< ... because this must not run before it.
    std::string_view reason;
  };
  /// What of `pending` must have run before those of `chosen` and is not among them; what comes along may
  /// need others, which are told too.
  [[nodiscard]] std::vector<Needed> NeededBy(const std::vector<std::string>& chosen,
                                             const std::vector<std::string>& pending) const;

  /// Runs `identifiers` (known ones) on the document and records them in it, oldest first.
  ///
  /// One identifier after the other, oldest first but for the orders that a library declares, goes through
  /// the whole document: first the features that it concerns, in document order, then its conversion of the
  /// whole document, then the propagation of what was handed over meanwhile. So a document comes out the same
  /// whether it goes through all identifiers at once or in several runs with files in between: each
  /// identifier finds what the ones before it left, features made by them included. What an identifier makes
  /// is current for that identifier and not visited by it; what it removes or gives another late type before
  /// its turn is not visited either.
  ///
  /// Throws `UpgradeAborted` when a routine gives up with a fatal assertion or calls through a null handle.
  UpgradeRun Run(const DocumentPtr& document, const std::vector<std::string>& identifiers,
                 const UpgradeWatch& watch = {}) const;

  /// An upgrade to run again: on these features alone, or on the whole document where the identifier has a
  /// conversion of it.
  struct Again {
    std::string identifier;
    std::vector<Feature*> features;
  };
  /// A recorded upgrade of a library other than the built-in one, to run again on all features of the late
  /// types that only such libraries migrate for it: the rules know nothing of those, and routines of such
  /// libraries leave alone what they have migrated. Nothing for what the document does not record, and for
  /// what is the rules' to find.
  [[nodiscard]] std::optional<Again> AgainWithoutRules(Document& document, std::string_view identifier) const;
  /// Asked before each round of what runs again; ends the rounds with nothing. An answer gives each
  /// identifier once.
  using NextRound = std::function<std::vector<Again>()>;
  /// Runs recorded identifiers again on features that they left behind, round after round, and then
  /// `identifiers` as `Run` does, whose account holds both.
  UpgradeRun RunAgain(const DocumentPtr& document, const NextRound& nextRound,
                      const std::vector<std::string>& identifiers, const UpgradeWatch& watch = {}) const;

 private:
  struct Order {
    std::size_t first;  // positions in `known_`
    std::size_t then;
    std::string_view reason;
  };

  void Learn(const HVXUpgradeLibrary& library);
  void LearnOrders(const HVXUpgradeLibrary& library);
  void LearnShared();
  KnownUpgrade& FindOrAdd(std::string_view identifier, const HVXUpgradeLibrary& library);
  [[nodiscard]] const HVXUpgradeLibrary* LibraryNamed(std::string_view name) const;
  void TellSources(Document& document, const std::vector<std::string>& recordedNow) const;
  [[nodiscard]] std::size_t PositionOf(std::string_view identifier) const;
  /// Oldest first.
  [[nodiscard]] std::vector<std::size_t> Sorted(const std::vector<std::string>& identifiers) const;
  /// The same, but each behind those that must have run before it.
  [[nodiscard]] std::vector<std::size_t> InOrderOfRunning(const std::vector<std::string>& identifiers) const;
  /// The same.
  [[nodiscard]] std::vector<const KnownUpgrade*> KnownOnes(const std::vector<std::string>& identifiers) const;

  std::vector<const HVXUpgradeLibrary*> libraries_;
  std::vector<KnownUpgrade> known_;
  std::vector<Order> orders_;
  std::vector<const HVXUpgradeClass*> hostUpgrades_;
  std::vector<HVXUpgradeObserver** (*)()> observers_;
  std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace standalone
