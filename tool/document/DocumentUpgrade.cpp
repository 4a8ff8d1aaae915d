#include "document/DocumentUpgrade.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "check/Conformity.h"
#include "check/Integrity.h"
#include "check/Losses.h"
#include "compare/DroppedValues.h"
#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "file/FileIdentity.h"
#include "file/TemporaryName.h"
#include "report/Attention.h"
#include "report/JsonOutput.h"
#include "report/SignOff.h"
#include "report/Summary.h"
#include "report/TypeTable.h"
#include "report/UnknownText.h"
#include "settings/ForeignCode.h"
#include "terminal/Interruption.h"
#include "terminal/Progress.h"
#include "terminal/Terminal.h"
#include "upgrade/LeftBehind.h"

namespace tool {
namespace {

using standalone::DocumentError;
using standalone::DocumentPtr;
using standalone::FindingScope;
using standalone::VersionManager;

DocumentResult WithoutResult(Verdict verdict, std::string problem) {
  DocumentResult result;
  result.verdict = verdict;
  result.problem = std::move(problem);
  return result;
}

class DocumentUpgrade {
 public:
  DocumentUpgrade(const UpgradeTask& task, const RequestCommit& requestCommit)
      : task_(task), requestCommit_(requestCommit), progress_(Printable(task.input), !task.quiet) {}

  DocumentResult Run() {
    if (task_.record != nullptr) task_.record->Begin();
    replacesInput_ = task_.destination.Replaces(task_.input);
    if (task_.skipsCurrent && !task_.retry && NeedsNoReading()) {
      result_.verdict = Verdict::kNotLookedInto;
      result_.missing = JsonOf(unknown_);
      result_.summary =
          fmt::format("{}: already current, by its header{}\n", Printable(task_.input),
                      unknown_.IsEmpty() ? "" : Printable(fmt::format(", upgraded by {}", unknown_.Words())));
      return std::move(result_);
    }
    const DocumentPtr document = Read();
    unknown_ = task_.manager.Unknown(*document.Get());
    if (!unknown_.IsEmpty() && !unknown_.AreOnlyNotLoaded()) return Refused(Verdict::kNewer);
    document->LimitCreation(FeatureLimit(task_.limits, document->FeatureCount()));
    const std::vector<std::string> pending = task_.manager.Pending(*document.Get());
    const standalone::Choice chosen = task_.selection.Of(pending);
    standalone::LeftBehind leftBehind(*document.Get());
    std::vector<VersionManager::Again> again;
    if (task_.retry) again = WithNamed(leftBehind.Next(), *document.Get());
    // What such a library did is part of the order in which upgrades must run.
    if (unknown_.HaveNamesake() || (!unknown_.IsEmpty() && !(chosen.identifiers.empty() && again.empty())))
      return Refused(Verdict::kNotLoaded);
    result_.missing = JsonOf(unknown_);
    result_.features = document->FeatureCount();
    if (task_.record != nullptr) result_.inputSha256 = readDigest_.Sha256Text();
    result_.failsOnDrop = task_.failOnDrop;
    if (chosen.identifiers.empty() && again.empty()) {
      result_.verdict = pending.empty() ? Verdict::kCurrent : Verdict::kNothingChosen;
      PassUnchanged(*document.Get());
    } else {
      result_.verdict = Verdict::kUpgraded;
      // The header gave no reason to.
      if (chosen.identifiers.empty() && !MayBeDone()) task_.destination.Check();
      RunChosen(document, chosen, [&] {
        if (!again.empty() || !task_.retry) return std::exchange(again, {});
        return leftBehind.Next();
      });
    }
    return std::move(result_);
  }

 private:
  using Tell = std::function<void(std::size_t, std::size_t)>;

  // Also the places where a long run notices that it should stop.
  Tell Telling(const char* phase) {
    return [this, phase](std::size_t done, std::size_t total) {
      Interruption::StopIfRequested();
      progress_.Update(phase, done, total);
    };
  }

  // An answer gives each identifier once.
  [[nodiscard]] std::vector<VersionManager::Again> WithNamed(std::vector<VersionManager::Again> again,
                                                             standalone::Document& document) const {
    for (VersionManager::Again& named : task_.selection.NamedAgain(document)) {
      const auto found = std::ranges::find(again, named.identifier, &VersionManager::Again::identifier);
      if (found == again.end()) {
        again.push_back(std::move(named));
      } else {  // whose features the rules find are of other late types
        found->features.insert(found->features.end(), named.features.begin(), named.features.end());
      }
    }
    return again;
  }

  // A header that cannot be read, or is not known, is told better by reading the document. What is in a pipe
  // can be read only once.
  [[nodiscard]] bool NeedsNoReading() {
    std::error_code error;
    if (!std::filesystem::is_regular_file(task_.input, error)) return false;
    try {
      const standalone::DocumentHeader header = standalone::ReadHeader(task_.input);
      const standalone::Document& document = *header.document.Get();
      unknown_ = task_.manager.Unknown(document);
      if (!task_.manager.Pending(document).empty() || task_.manager.Refuses(document)) return false;
    } catch (const DocumentError&) {
      return false;
    }
    const bool isToBeCopied = task_.destination.file && !task_.destination.inPlace && !task_.dryRun;
    return !isToBeCopied || task_.destination.HoldsCopyOf(task_.input);
  }

  // Whether something stands at the destination that an earlier run may have put there.
  [[nodiscard]] bool MayBeDone() const {
    std::error_code error;
    return task_.skipsDone && task_.destination.makesFolder && task_.destination.clash.empty() &&
           !task_.destination.overwrite && !task_.dryRun && !replacesInput_ &&
           std::filesystem::is_regular_file(*task_.destination.file, error);
  }

  // A backup in the way may be that of another run, which has replaced the document since it was opened; to
  // remove it would be the wrong advice.
  void CheckDestination() const {
    try {
      task_.destination.Check();
    } catch (const DocumentError&) {
      const auto now = standalone::FileIdentity::Of(std::filesystem::path(task_.input));
      if (replacesInput_ && read_ && now && !now->IsSameFile(*read_)) {
        throw standalone::ChangedMeanwhile(task_.input,
                                           "while it was being read another file was put in its place", "",
                                           "Nothing was written; run the upgrade again");
      }
      throw;
    }
  }

  // A result that cannot be put in place is refused before the document is read, but a document with nothing
  // to do may have been put there by an earlier run.
  DocumentPtr Read() {
    standalone::ReadOptions options;
    options.onProgress = Telling("reading");
    options.maxUnpackedBytes = UnpackedLimit(task_.limits);
    options.unpackedAdvice = "If you trust it, give --limit-unpacked MB, which raises the limit";
    options.compression = &stored_;
    if (task_.record != nullptr) options.digest = &readDigest_;
    options.onHeader = [this](const standalone::Document& header,
                              const std::optional<standalone::FileIdentity>& file) {
      read_ = file;
      const bool isPending = !task_.selection.Of(task_.manager.Pending(header)).identifiers.empty();
      if (isPending && !MayBeDone()) CheckDestination();
    };
    return standalone::ReadDocument(task_.input, options);
  }

  [[nodiscard]] DocumentResult Refused(Verdict verdict) const {
    DocumentResult result = WithoutResult(
        verdict, fmt::format("{}: {}. {}", task_.input, unknown_.Problem(), unknown_.NextStep()));
    result.missing = JsonOf(unknown_);
    return result;
  }

  void PassUnchanged(standalone::Document& document) {
    const std::vector<AttentionItem> attention =
        AttentionTo(standalone::CheckConformity(document, FindingScope::kOfResult), {}, {});
    result_.needsPerson = attention.size();
    result_.foundByCheck = attention.size();
    result_.attention = JsonOf(task_.input, attention);
    const bool isThere = task_.destination.HoldsCopyOf(task_.input);
    if (!task_.destination.inPlace && !isThere) task_.destination.Check();
    result_.summary = SummaryWithoutRun({task_.input, result_.verdict, attention, unknown_, task_.destination,
                                         isThere, task_.dryRun, task_.verbose});
    if (task_.dryRun || task_.destination.inPlace || isThere || task_.destination.IsNone()) return;
    requestCommit_(Pack(result_));
    Interruption::StopIfRequested();
    task_.destination.MakeFolder();
    standalone::WriteOptions options = Options();
    if (read_ && !task_.destination.isOutput && options.compression == stored_) {
      standalone::CopyDocument(task_.input, *task_.destination.file, options, read_);
      result_.resultSha256 = result_.inputSha256;
    } else {  // such as a pipe, which can be read once, or to be compressed otherwise
      if (task_.record != nullptr) options.digest = &writtenDigest_;
      Write(document, options);
      if (task_.record != nullptr) result_.resultSha256 = writtenDigest_.Sha256Text();
    }
  }

  void Write(standalone::Document& document, const standalone::WriteOptions& options) const {
    if (task_.destination.isOutput) {
      standalone::StreamDocument(document, STDOUT_FILENO, task_.destination.Text(), options);
    } else {
      standalone::WriteDocument(document, *task_.destination.file, options);
    }
  }

  standalone::UpgradeRun RunWatched(const DocumentPtr& document, const standalone::Choice& chosen,
                                    const VersionManager::NextRound& again) {
    standalone::UpgradeWatch watch;
    std::optional<standalone::CheckpointScope> tracing;
    if (task_.trace != nullptr) {
      task_.trace->BeginDocument(task_.input);
      task_.trace->Watch(watch);
      tracing.emplace(task_.trace->Plan());
    }
    watch.onProgress = Telling("upgrading");
    if (task_.place != nullptr)
      watch.onPlace = [this](const standalone::UpgradePlace* place) { task_.place->Set(place); };
    const ForeignCode foreign;
    return task_.manager.RunAgain(document, again, chosen.identifiers, watch);
  }

  void RunChosen(const DocumentPtr& document, const standalone::Choice& chosen,
                 const VersionManager::NextRound& again) {
    if (task_.record != nullptr || task_.failOnDrop) document->Changes().Start();
    std::optional<SignOff> signOff;
    if (task_.sheet) signOff.emplace(*document.Get());
    const standalone::UpgradeRun run = RunWatched(document, chosen, again);
    document->DropAllDeadLinks();
    const Comparison comparison = Compare(*document.Get(), run);
    std::vector<AttentionItem> attention = Verify(*document.Get(), run);
    result_.foundByCheck =
        static_cast<std::size_t>(std::ranges::count(attention, true, &AttentionItem::isFoundByCheck));
    if (signOff) signOff->Finish(*document.Get(), run.identifiers, attention);
    std::vector<standalone::DroppedValues> dropped;
    if (document->Changes().IsOn() || task_.tellsAll)
      dropped = standalone::FindDroppedValues(*document.Get());

    result_.identifiers = run.identifiers.size();
    result_.needsPerson = attention.size();
    result_.attention = JsonOf(task_.input, attention);
    result_.dropped = dropped.size();
    result_.totals = comparison.all;
    const std::string held = WhyHeldBack();
    if (!held.empty()) result_.verdict = Verdict::kHeldBack;
    result_.summary = SummaryOfRun({task_.input, result_, *document.Get(), attention, dropped,
                                    chosen.broughtAlong, held, task_.destination, task_.dryRun,
                                    task_.record != nullptr, task_.verbose, signOff ? &*signOff : nullptr});
    if (task_.tellsAll) result_.table = TypeTable(comparison.byType, task_.verbose);
    if (task_.record != nullptr) {
      // Before the document: a record that cannot be written must not come too late.
      task_.record->AddRun(
          {*document.Get(), run, comparison, chosen.broughtAlong, dropped, signOff ? &*signOff : nullptr});
    }
    signOff.reset();  // so that its memory is free while the result is written
    if (task_.dryRun || task_.destination.IsNone() || !held.empty()) return;
    if (MayBeDone()) {
      FindDone(*document.Get());
      return;
    }
    task_.destination.MakeFolder();
    standalone::WriteOptions options = Options();
    if (task_.record != nullptr) options.digest = &writtenDigest_;
    options.onProgress = [this, tell = Telling("writing")](std::size_t written, std::size_t total) {
      if (written == total) {
        if (task_.record != nullptr) result_.resultSha256 = writtenDigest_.Sha256Text();
        requestCommit_(Pack(result_));
      }
      tell(written, total);
    };
    Write(*document.Get(), options);
  }

  // The result is what stands there, or it has no place.
  void FindDone(standalone::Document& document) {
    const std::filesystem::path& there = *task_.destination.file;
    std::string temporary;
    const int descriptor = standalone::MakeTemporary(there, temporary);
    if (descriptor < 0) {
      task_.destination.Check();
      return;
    }
    close(descriptor);
    standalone::WriteOptions options;
    options.overwrite = true;
    options.compression = Options().compression;
    if (task_.record != nullptr) options.digest = &writtenDigest_;
    options.onProgress = Telling("comparing");
    bool isSame = false;
    try {
      standalone::WriteDocument(document, temporary, options);
      isSame = standalone::HaveSameBytes(temporary, there);
    } catch (...) {
      unlink(temporary.c_str());
      throw;
    }
    unlink(temporary.c_str());
    if (!isSame) task_.destination.Check();
    result_.verdict = Verdict::kDoneBefore;
    if (task_.record != nullptr) result_.resultSha256 = writtenDigest_.Sha256Text();
    result_.summary =
        fmt::format("{}: done before: its result exists already{}\n  Result: {}\n", Printable(task_.input),
                    result_.needsPerson == 0 ? "" : ", and needs a person", Printable(there.string()));
  }

  // What a person must look at in the result. A result that could not be read again is given up.
  [[nodiscard]] std::vector<AttentionItem> Verify(standalone::Document& document,
                                                  const standalone::UpgradeRun& run) {
    Interruption::StopIfRequested();
    const std::vector<std::string> faults = standalone::FindFaults(document, 1);
    if (!faults.empty()) {
      throw std::runtime_error(
          fmt::format("the result could not be read again ({}), which is a fault of this program or of a "
                      "plug-in; please report "
                      "it with the document",
                      faults.front()));
    }
    return AttentionTo(standalone::CheckConformity(document, FindingScope::kOfResult),
                       standalone::FindLosses(document), run.failures);
  }

  // Empty when the result may be written.
  [[nodiscard]] std::string WhyHeldBack() const {
    if (task_.dryRun || result_.IsComplete()) return {};
    if (task_.strict) return "--strict";
    if (!replacesInput_ || !task_.destination.backupSuffix.empty() || task_.acceptFailures) return {};
    if (!task_.destination.inPlace)
      return "it would replace the only copy of the old document; write it to another file";
    return "in place, the only copy of the old document would be lost; give --backup SUFFIX, or "
           "--accept-failures";
  }

  [[nodiscard]] standalone::WriteOptions Options() const {
    return {.overwrite = task_.destination.overwrite,
            .backupSuffix = task_.destination.backupSuffix,
            .replaces = replacesInput_ ? read_ : std::nullopt,
            .keepResult = task_.keepResult,
            .compression = task_.destination.CompressionFor(task_.input, stored_),
            .onProgress = {}};
  }

  const UpgradeTask& task_;
  const RequestCommit& requestCommit_;
  Progress progress_;
  DocumentResult result_;
  standalone::UnknownUpgrades unknown_;
  bool replacesInput_ = false;
  standalone::FileDigest readDigest_;
  standalone::FileDigest writtenDigest_;
  standalone::Compression stored_ = standalone::Compression::kNone;
  std::optional<standalone::FileIdentity> read_;  // none where it is no regular file
};

Verdict VerdictOf(DocumentError::Kind kind) {
  switch (kind) {
    case DocumentError::Kind::kNewer:
      return Verdict::kNewer;
    case DocumentError::Kind::kUnwritable:
      return Verdict::kUnwritable;
    case DocumentError::Kind::kUnreadable:
    case DocumentError::Kind::kInvalid:
      break;
  }
  return Verdict::kBadInput;
}

}  // namespace

DocumentResult UpgradeDocument(const UpgradeTask& task, const RequestCommit& requestCommit) {
  const auto aborted = [&task](std::string_view why) {
    return WithoutResult(
        Verdict::kAborted,
        fmt::format("{}: the upgrade was stopped: {}. Nothing was written", task.input, why));
  };
  if (task.place != nullptr) task.place->Set(nullptr);
  try {
    LimitMemory(task.limits);
    return DocumentUpgrade(task, requestCommit).Run();
  } catch (const Interrupted&) {
    throw;
  } catch (const standalone::ChangedMeanwhile& changed) {
    DocumentResult result = WithoutResult(Verdict::kChangedMeanwhile, changed.what());
    result.kept = changed.Kept();
    return result;
  } catch (const DocumentError& error) {
    return WithoutResult(VerdictOf(error.GetKind()), error.what());
  } catch (const standalone::UpgradeAborted& error) {
    return WithoutResult(
        Verdict::kAborted,
        fmt::format("{}: the upgrade was stopped: {}. Nothing was written. {}; --trace shows the calls of "
                    "the host until then",
                    task.input, error.Problem(), error.Advice()));
  } catch (const std::bad_alloc&) {
    return aborted("there is not enough memory" + MemoryLimitText() +
                   (task.place == nullptr ? "" : task.place->Where()));
  } catch (const std::exception& error) {
    return aborted(error.what());
  }
}

}  // namespace tool
