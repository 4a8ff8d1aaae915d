#include "hvxupgrade/Upgrade.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <limits>
#include <mutex>

#include "compare/SinceRead.h"
#include "interface/Inside.h"
#include "interface/Translation.h"
#include "session/FeatureCatalogs.h"
#include "session/InstalledFiles.h"
#include "session/Messages.h"
#include "upgrade/Choice.h"
#include "upgrade/LeftBehind.h"
#include "upgrade/UpgradeLibraries.h"
#include "upgrade/VersionManager.h"

namespace hvxupgrade {
namespace {

namespace fs = std::filesystem;

// Catalogs and messages belong to the process, so all upgraders that there are at a time share them.
struct DataInUse {
  fs::path folder;
  std::string language;
};

// Where no language is there at all, the installation is to blame, and not who asked.
void RequireLanguage(const fs::path& messages, const std::string& language) {
  const std::vector<std::string> languages = standalone::Messages::LanguagesOf(messages);
  if (languages.empty() || std::ranges::find(languages, language) != languages.end()) return;
  throw Error(Error::Kind::kInstallation, messages.string(), 0,
              fmt::format("there are no messages in language \"{}\"", language),
              fmt::format("Choose one of: {}", fmt::join(languages, ", ")));
}

std::shared_ptr<const DataInUse> UseData(const fs::path& folder, const std::string& language) {
  RequireLanguage(folder / "messages", language);
  static std::mutex mutex;
  static std::weak_ptr<const DataInUse> current;
  const std::lock_guard lock(mutex);
  if (auto used = current.lock()) {
    if (used->folder == folder && used->language == language) return used;
    RefuseUse(fmt::format("another upgrader of this process uses {} in language \"{}\"",
                          used->folder.string(), used->language),
              "Give all upgraders of a process the same data and language");
  }
  standalone::FeatureCatalogs::Use(folder / "catalogs");
  standalone::Messages::RequireComplete(folder / "messages", language);
  standalone::Messages::Use(folder / "messages", language);
  auto used = std::make_shared<const DataInUse>(DataInUse{folder, language});
  current = used;
  return used;
}

// The libraries, and what they know together.
class Libraries {
 public:
  explicit Libraries(const UpgraderOptions& options)
      : loaded_(FilesOf(options)), manager_(loaded_.Descriptions()) {}

  [[nodiscard]] const standalone::VersionManager& Manager() const { return manager_; }

 private:
  static std::vector<fs::path> FilesOf(const UpgraderOptions& options) {
    std::vector<fs::path> files;
    if (options.useInstalledLibrary) files.push_back(standalone::InstalledFiles::UpgradeLibraryFile());
    for (const fs::path& file : options.libraries) {
      RequireNamed(file, Error::Kind::kInstallation);
      files.push_back(fs::absolute(file));
    }
    return files;
  }

  standalone::UpgradeLibraries loaded_;
  standalone::VersionManager manager_;
};

// Of the first occurrence of each.
void AddOnce(std::vector<std::string>& texts, std::string_view text) {
  if (std::ranges::find(texts, text) == texts.end()) texts.emplace_back(text);
}

KnownUpgrade Told(const standalone::KnownUpgrade& known) {
  KnownUpgrade told;
  told.identifier = known.identifier;
  told.library = known.library->name;
  told.libraryVersion = known.library->version == nullptr ? "" : known.library->version;
  for (const standalone::KnownUpgrade::Binding& bound : known.bindings) {
    AddOnce(told.purposes, bound.binding->purpose);
    for (const char* const lateType : bound.upgradeClass->lateTypes) AddOnce(told.lateTypes, lateType);
  }
  told.isOfDocument = known.documentUpgrade != nullptr;
  if (told.isOfDocument) AddOnce(told.purposes, known.documentUpgrade->purpose);
  return told;
}

UpgradeFailure Told(const standalone::UpgradeFailure& failure) {
  UpgradeFailure told;
  told.identifier = failure.work.upgrade->identifier;
  if (failure.work.feature != nullptr) told.feature = failure.work.feature->id;
  if (failure.work.type != nullptr) told.lateType = failure.work.type->Name();
  told.code = failure.code;
  told.isIgnored = failure.IsIgnored();
  return told;
}

// An upgrade on this thread, for the life of this object. A second one, from a callback of the first, would
// mix up what the thread keeps about both documents.
class OneOfThread {
 public:
  OneOfThread() {
    if (isThere)
      RefuseUse("this thread is upgrading another document",
                "Upgrade it when that is done, or in another thread");
    isThere = true;
  }
  ~OneOfThread() { isThere = false; }
  OneOfThread(const OneOfThread&) = delete;
  OneOfThread& operator=(const OneOfThread&) = delete;

 private:
  static thread_local bool isThere;
};

thread_local bool OneOfThread::isThere = false;

// What a program asked for, of a document.
class Run {
 public:
  Run(const standalone::VersionManager& manager, Inside::DocumentState& state, const UpgradeOptions& options)
      : manager_(manager), state_(state), document_(*state.document.Get()), options_(options) {}

  UpgradeResult Do() {
    const Busy busy(state_);
    const OneOfThread one;
    const std::vector<std::string> pending = manager_.Pending(document_);
    const std::vector<std::string> chosen =
        standalone::ChooseUpgrades(manager_, Wanted(pending), pending).identifiers;
    RefuseUnknown(chosen);
    standalone::LeftBehind leftBehind(document_);
    const std::uint64_t changes = document_.ChangeCount();
    try {
      LimitCreation();
      const standalone::UpgradeRun run = manager_.RunAgain(
          state_.document,
          [&] {
            return options_.retry ? leftBehind.Next() : std::vector<standalone::VersionManager::Again>();
          },
          chosen, Watch());
      document_.DropAllDeadLinks();
      AllowCreation();
      return Told(run);
    } catch (...) {
      state_.isStopped = document_.ChangeCount() != changes;
      document_.UnloadCatalogs();
      AllowCreation();
      throw;
    }
  }

 private:
  // What a library that is not loaded did is part of the order in which upgrades must run.
  void RefuseUnknown(const std::vector<std::string>& chosen) const {
    const standalone::UnknownUpgrades unknown = manager_.Unknown(document_);
    const bool isNothingToRun = chosen.empty() && !options_.retry && !unknown.HaveNamesake();
    if (unknown.IsEmpty() || (unknown.AreOnlyNotLoaded() && isNothingToRun)) return;
    throw Error(Error::Kind::kNewer, state_.file.string(), 0, unknown.Problem(),
                unknown.AreOnlyNotLoaded() ? "Give their files to the Upgrader, among its libraries"
                                           : unknown.NextStep("by giving its file to the Upgrader"));
  }

  [[nodiscard]] std::vector<std::string> Wanted(const std::vector<std::string>& pending) const {
    if (!options_.identifiers) return pending;
    for (const std::string& identifier : *options_.identifiers) {
      if (manager_.Find(identifier) == nullptr) {
        const std::string_view meant = standalone::LikelyMeant(manager_, identifier);
        RefuseUse(
            fmt::format("there is no upgrade \"{}\"", identifier),
            meant.empty() ? "Ask the Upgrader which it knows" : fmt::format("Did you mean \"{}\"?", meant));
      }
      if (document_.HasRecorded(identifier))
        RefuseUse(fmt::format("the document has been through \"{}\"", identifier),
                  "Ask the Upgrader what is pending");
    }
    return *options_.identifiers;
  }

  // The program's own features do not count.
  void LimitCreation() {
    const std::uint64_t most = options_.maxFeaturesCreated != 0
                                   ? options_.maxFeaturesCreated
                                   : standalone::UsualCreationLimit(document_.FeatureCount());
    document_.LimitCreation(document_.CreatedCount() + most);
  }
  void AllowCreation() { document_.LimitCreation(std::numeric_limits<std::size_t>::max()); }

  [[nodiscard]] standalone::UpgradeWatch Watch() const {
    standalone::UpgradeWatch watch;
    watch.limitAdvice = "Read it again, and allow more created features";
    if (options_.onProgress) {
      watch.onProgress = [this](std::size_t done, std::size_t total) {
        TellProgress(options_.onProgress, done, total,
                     {"the upgrade was stopped", "Read it again before going on"});
      };
    }
    return watch;
  }

  UpgradeResult Told(const standalone::UpgradeRun& run) const {
    UpgradeResult result;
    result.identifiers = run.identifiers;
    for (const standalone::UpgradeFailure& failure : run.failures)
      result.failures.push_back(hvxupgrade::Told(failure));
    const auto since = standalone::SinceRead::Of(document_);
    result.featuresChanged = since.changed.size();
    result.featuresCreated = since.created.size();
    result.featuresRemoved = since.removed.size();
    return result;
  }

  const standalone::VersionManager& manager_;
  Inside::DocumentState& state_;
  standalone::Document& document_;
  const UpgradeOptions& options_;
};

}  // namespace

class Upgrader::State {
 public:
  explicit State(const UpgraderOptions& options)
      : data(UseData(DataFolder(options.data), options.language)),
        libraries(std::make_shared<const Libraries>(options)) {}

  [[nodiscard]] const standalone::VersionManager& Manager() const { return libraries->Manager(); }

  std::shared_ptr<const DataInUse> data;
  std::shared_ptr<const Libraries> libraries;

 private:
  static fs::path DataFolder(const fs::path& given) {
    if (given.empty()) return standalone::InstalledFiles::DataFolder();
    RequireNamed(given, Error::Kind::kInstallation);
    return fs::absolute(given);
  }
};

Upgrader::Upgrader(const UpgraderOptions& options)
    : state_(Translated(Error::Kind::kInstallation, "", [&] { return std::make_unique<State>(options); })) {}

Upgrader::~Upgrader() = default;
Upgrader::Upgrader(Upgrader&&) noexcept = default;
Upgrader& Upgrader::operator=(Upgrader&&) noexcept = default;

std::vector<KnownUpgrade> Upgrader::Known() const {
  std::vector<KnownUpgrade> all;
  for (const standalone::KnownUpgrade& known : state_->Manager().Known()) all.push_back(Told(known));
  return all;
}

std::vector<std::string> Upgrader::Pending(const Document& document) const {
  return state_->Manager().Pending(Inside::Of(document));
}

std::vector<std::string> Upgrader::Unknown(const Document& document) const {
  const standalone::UnknownUpgrades unknown = state_->Manager().Unknown(Inside::Of(document));
  std::vector<std::string> all;
  for (const standalone::MissingLibrary& each : unknown.Libraries())
    all.insert(all.end(), each.upgrades.begin(), each.upgrades.end());
  return all;
}

UpgradeResult Upgrader::Upgrade(Document& document, const UpgradeOptions& options) const {
  Inside::DocumentState& state = Inside::StateOf(document);
  if (std::ranges::find(state.libraries, state_->libraries) == state.libraries.end())
    state.libraries.push_back(state_->libraries);
  return Translated(Error::Kind::kStopped, state.file,
                    [&] { return Run(state_->Manager(), state, options).Do(); });
}

}  // namespace hvxupgrade
