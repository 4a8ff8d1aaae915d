#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hvxupgrade/Document.h"
#include "hvxupgrade/Error.h"

namespace hvxupgrade {

/// What an upgrader is made of; what is empty is found beside this library.
struct UpgraderOptions {
  bool useInstalledLibrary = true;                    ///< The one that belongs to this program.
  std::vector<std::filesystem::path> libraries = {};  ///< Files of upgrade libraries to load besides.
  std::filesystem::path data = {};                    ///< The folder of catalogs and messages.
  std::string language = "en";                        ///< Of the names that upgrades give.
};

/// An upgrade that is known.
struct KnownUpgrade {
  std::string identifier;
  std::string library;
  std::string libraryVersion;
  std::vector<std::string> purposes;   ///< What its routines do, a sentence each.
  std::vector<std::string> lateTypes;  ///< Of the features that it concerns.
  bool isOfDocument = false;           ///< Whether it converts the document as a whole.
};

/// A piece of a run that failed.
struct UpgradeFailure {
  std::string identifier;
  std::optional<FeatureId> feature;  ///< None for a conversion of the whole document.
  std::string lateType;              ///< The feature's, when its turn came.
  std::int32_t code = 0;             ///< The routine's result, a negative number.
  /// Whether the table of its class ignores the result, so that the later upgrades ran.
  bool isIgnored = false;
};

struct UpgradeResult {
  std::vector<std::string> identifiers;  ///< What was run, oldest first; it is recorded now.
  std::vector<UpgradeFailure> failures;  ///< In the order of the work.
  // What became of the document since it was read, the changes of the program included.
  std::size_t featuresChanged = 0;
  std::size_t featuresCreated = 0;
  std::size_t featuresRemoved = 0;
};

struct UpgradeOptions {
  /// Which to run; none for all that are pending. What must run before a chosen one comes along.
  std::optional<std::vector<std::string>> identifiers = std::nullopt;
  /// Whether upgrades that the document has been through, and that left features behind, are run again on
  /// these first.
  bool retry = false;
  /// Told, now and then, by the thread that upgrades, how many visits of features are done, and about how
  /// many there are; within a long visit again and again the same. False stops the run with `Error`
  /// (`kStopped`), and so does what it throws, which comes out as it is. It may look at the document, and
  /// must not change it: to change, write or upgrade it meanwhile is refused
  /// (`kUsage`). It may work on other documents, but upgrade none.
  std::function<bool(std::uint64_t done, std::uint64_t total)> onProgress = nullptr;
  /// A run that creates more is stopped; 0 for many times what any upgrade that made sense has created.
  std::uint64_t maxFeaturesCreated = 0;
};

/// Brings documents up to the current data model. Documents that it worked on may outlive it. Threads may
/// share it, each with documents of its own. All upgraders that a process has at one time use the same data
/// and the same language. One that was moved from can be destroyed and assigned to, and nothing else.
class HVXUPGRADE_API Upgrader {
 public:
  /// Loads libraries, catalogs and messages. Throws `Error`: `kInstallation`, which names the file and the
  /// remedy; `kUsage` when there is another upgrader with other data or another language.
  explicit Upgrader(const UpgraderOptions& options = {});
  ~Upgrader();
  Upgrader(Upgrader&&) noexcept;
  Upgrader& operator=(Upgrader&&) noexcept;
  Upgrader(const Upgrader&) = delete;
  Upgrader& operator=(const Upgrader&) = delete;

  /// All that are known, oldest first.
  [[nodiscard]] std::vector<KnownUpgrade> Known() const;
  /// The identifiers that the document has not been through, oldest first.
  [[nodiscard]] std::vector<std::string> Pending(const Document& document) const;
  /// The identifiers that the document has been through and that nobody here knows: it comes from a later
  /// release, or from a library that is not loaded. Such a document is not upgraded.
  [[nodiscard]] std::vector<std::string> Unknown(const Document& document) const;

  /// Runs upgrades on the document and records them in it. Throws `Error`: `kUsage` for an identifier that is
  /// not known or that the document has been through, and in a callback of another upgrade, `kNewer` for a
  /// document with unknown upgrades (unless they are of libraries that are not loaded, and nothing is to run
  /// here: then nothing happens), `kStopped` when the run was stopped. Unless nothing was changed by then,
  /// the document then stands between two releases: it can be looked at, but `Write` and `Upgrade` refuse it
  /// (`kUsage`).
  UpgradeResult Upgrade(Document& document, const UpgradeOptions& options = {}) const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace hvxupgrade
