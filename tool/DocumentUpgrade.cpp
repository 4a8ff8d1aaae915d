#include "DocumentUpgrade.h"

#include <new>
#include <optional>

#include "Interruption.h"
#include "Progress.h"
#include "Summary.h"
#include "Terminal.h"
#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"

namespace tool {
namespace {

using standalone::DocumentError;
using standalone::DocumentPtr;

class DocumentUpgrade {
 public:
  DocumentUpgrade(const UpgradeTask& task, const AnnounceCommit& announceCommit)
      : task_(task), announceCommit_(announceCommit), progress_(Printable(task.input), !task.quiet) {}

  DocumentResult Run() {
    task_.destination.Check();
    const DocumentPtr document = standalone::ReadDocument(task_.input, {.onProgress = Telling("reading")});
    RefuseNewer(*document.Get());
    const std::vector<std::string> pending = task_.manager.Pending(*document.Get());
    const std::vector<std::string> chosen = task_.selection.Of(pending);
    result_.features = document->FeatureCount();
    if (chosen.empty()) {
      result_.verdict = pending.empty() ? Verdict::kCurrent : Verdict::kNothingChosen;
      PassUnchanged(*document.Get());
    } else {
      result_.verdict = Verdict::kUpgraded;
      RunChosen(document, chosen);
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

  void RefuseNewer(const standalone::Document& document) const {
    const std::vector<std::string> unknown = task_.manager.Unknown(document);
    if (unknown.empty()) return;
    throw DocumentError(DocumentError::Kind::kNewer, task_.input, 0,
                        fmt::format("it has been through {} that this program does not know, such as {}",
                                    Count(unknown.size(), "upgrade"), Quoted(unknown.front())),
                        "Use a newer release of this program");
  }

  void PassUnchanged(standalone::Document& document) {
    result_.summary = SummaryWithoutRun(task_.input, result_.verdict, task_.destination, task_.dryRun);
    if (task_.report != nullptr)
      task_.report->AddWithoutRun(task_.input, result_, task_.destination, task_.dryRun);
    if (task_.dryRun || task_.destination.inPlace || !task_.destination.file) return;
    announceCommit_();
    Interruption::StopIfRequested();
    task_.destination.MakeFolder();
    if (std::filesystem::is_regular_file(task_.input)) {
      standalone::CopyDocument(task_.input, *task_.destination.file, Options());
    } else {  // such as a pipe, which can be read once
      standalone::WriteDocument(document, *task_.destination.file, Options());
    }
  }

  void RunChosen(const DocumentPtr& document, const std::vector<std::string>& chosen) {
    std::optional<standalone::CheckpointScope> tracing;
    if (task_.trace != nullptr) {
      task_.trace->BeginDocument(task_.input);
      tracing.emplace(task_.trace->Plan());
    }
    const standalone::UpgradeRun run = task_.manager.Run(document, chosen, Telling("upgrading"));
    tracing.reset();

    document->DropAllDeadLinks();
    const Comparison comparison = Compare(*document.Get(), run);
    result_.identifiers = run.identifiers.size();
    result_.failures = run.FailureCount();
    result_.totals = comparison.all;
    result_.summary =
        SummaryOfRun({task_.input, result_, comparison, task_.destination, task_.dryRun, run, task_.manager});
    if (task_.report != nullptr) {
      const ReportedRun reported{task_.input,     result_, task_.destination, task_.dryRun,
                                 *document.Get(), run,     comparison,        task_.manager};
      result_.attention = AttentionOf(reported);
      // Before the document: a report that cannot be written must not come too late.
      task_.report->AddRun(reported);
    }
    if (task_.dryRun || !task_.destination.file) return;
    task_.destination.MakeFolder();
    standalone::WriteOptions options = Options();
    options.onProgress = [this, tell = Telling("writing")](std::size_t written, std::size_t total) {
      if (written == total) announceCommit_();
      tell(written, total);
    };
    standalone::WriteDocument(*document.Get(), *task_.destination.file, options);
  }

  [[nodiscard]] standalone::WriteOptions Options() const {
    return {.overwrite = task_.destination.overwrite,
            .backupSuffix = task_.destination.backupSuffix,
            .onProgress = {}};
  }

  const UpgradeTask& task_;
  const AnnounceCommit& announceCommit_;
  Progress progress_;
  DocumentResult result_;
};

DocumentResult WithoutResult(Verdict verdict, std::string problem) {
  DocumentResult result;
  result.verdict = verdict;
  result.problem = std::move(problem);
  return result;
}

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

DocumentResult UpgradeDocument(const UpgradeTask& task, const AnnounceCommit& announceCommit) {
  const auto aborted = [&task](std::string_view why) {
    return WithoutResult(
        Verdict::kAborted,
        fmt::format("{}: the upgrade was given up: {}. Nothing was written", task.input, why));
  };
  try {
    return DocumentUpgrade(task, announceCommit).Run();
  } catch (const Interrupted&) {
    throw;
  } catch (const DocumentError& error) {
    return WithoutResult(VerdictOf(error.GetKind()), error.what());
  } catch (const std::bad_alloc&) {
    return aborted("there is not enough memory");
  } catch (const std::exception& error) {  // also what a routine lets out
    return aborted(error.what());
  }
}

}  // namespace tool
