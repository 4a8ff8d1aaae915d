#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/Document.h"
#include "workbench/HVXUpgradeTable.h"

namespace standalone {

/// One upgrade identifier and all that answers it.
struct KnownUpgrade {
  struct Binding {
    const HVXUpgradeClass* upgradeClass;
    const HVXUpgradeBinding* binding;
  };

  std::string identifier;
  std::vector<Binding> bindings;  ///< In the order of the libraries' tables.
  const HVXDocumentUpgrade* documentUpgrade =
      nullptr;  ///< The conversion of whole documents, where it is one.
};

/// What became of one feature.
struct FeatureOutcome {
  const Feature* feature;
  HRESULT code;                   ///< What its upgrade returned; negative when it failed.
  const LateType* type;           ///< The feature's late type when its turn came.
  std::size_t touchedBefore = 0;  ///< How many features the document had been touched in by then.
};

/// What became of a document-wide conversion.
struct DocumentOutcome {
  std::string identifier;
  HRESULT code;
  std::size_t touchedBefore = 0;  ///< As for a feature.
};

struct UpgradeRun {
  std::vector<std::string> identifiers;  ///< What was run, oldest first.
  std::vector<FeatureOutcome>
      features;  ///< Those that some identifier concerned; the others had nothing to do.
  std::vector<DocumentOutcome> documentUpgrades;
  std::vector<FeatureOutcome> propagations;  ///< Features that were handed over to be propagated.
  std::size_t touched = 0;                   ///< How many features were touched in all.

  [[nodiscard]] std::size_t FailureCount() const;
};

/// Why a run could not be carried through. The document is to be thrown away.
class UpgradeAborted : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Decides which upgrades a document still needs and runs them.
class VersionManager {
 public:
  /// Knows what the libraries know, which must outlive it. The first library's identifiers stand in its
  /// order; those that another adds, or a table binds without listing them, follow in the order of their
  /// libraries.
  explicit VersionManager(const std::vector<const HVXUpgradeLibrary*>& libraries);

  [[nodiscard]] const std::vector<KnownUpgrade>& Known() const { return known_; }
  [[nodiscard]] const KnownUpgrade* Find(std::string_view identifier) const;
  /// The classes that offer the host's own upgrade, which routines call, and answer no identifier.
  [[nodiscard]] const std::vector<const HVXUpgradeClass*>& HostUpgrades() const { return hostUpgrades_; }

  /// The identifiers that the document has not been through, oldest first.
  [[nodiscard]] std::vector<std::string> Pending(const Document& document) const;
  /// The identifiers that the document has been through and that nobody here knows: it comes from a later
  /// release.
  [[nodiscard]] std::vector<std::string> Unknown(const Document& document) const;

  /// Runs `identifiers` (known ones, oldest first) on the document and records them in it.
  ///
  /// Features are visited in document order, each with those identifiers that concern its late type, oldest
  /// first but for one pair (`docs/choices.md`); a feature whose late type changes on the way is visited once
  /// more as what it has become; features made on the way are current already; removed ones are skipped.
  /// Document-wide conversions follow, oldest first: they take away properties that the features' upgrades
  /// still read. Features that were handed over to be propagated come last, each once, when all of them and
  /// the steps are what they will be. Throws `UpgradeAborted` when a routine gives up with a fatal assertion
  /// or calls through a null handle. `onProgress` is told, now and then, how many features are done and how
  /// many there are.
  UpgradeRun Run(const DocumentPtr& document, const std::vector<std::string>& identifiers,
                 const std::function<void(std::size_t done, std::size_t total)>& onProgress = {}) const;

 private:
  void Learn(const HVXUpgradeLibrary& library);
  KnownUpgrade& FindOrAdd(std::string_view identifier);

  std::vector<KnownUpgrade> known_;
  std::vector<const HVXUpgradeClass*> hostUpgrades_;
  std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace standalone
