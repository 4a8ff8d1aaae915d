#include "commands/UpgradeCommand.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <csignal>

#include "archive/DocumentSearch.h"
#include "archive/Leftovers.h"
#include "archive/Worker.h"
#include "document/DocumentUpgrade.h"
#include "file/DocumentError.h"
#include "file/FileIdentity.h"
#include "session/Messages.h"
#include "settings/UsageError.h"
#include "terminal/Interruption.h"
#include "terminal/Progress.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

void UseLanguage(const std::string& language, const fs::path& folder) {
  const std::vector<std::string> languages = standalone::Messages::LanguagesOf(folder);
  if (!languages.empty() && std::ranges::find(languages, language) == languages.end()) {
    throw UsageError(fmt::format("there are no messages in language \"{}\"; choose one of: {}", language,
                                 fmt::join(languages, ", ")));
  }
  standalone::Messages::RequireComplete(folder, language);
  standalone::Messages::Use(folder, language);
}

class UpgradeCommand {
 public:
  UpgradeCommand(const UpgradeArguments& arguments, const Places& places)
      : arguments_(arguments),
        installation_(places),
        selection_(installation_.Manager(), arguments.only, arguments.until),
        found_(FindDocuments(arguments.sources, arguments.outputDirectory)),
        destinations_(DestinationsOf(arguments, found_.documents)),
        emptyFolders_(arguments.dryRun ? std::vector<Destination>() : destinations_) {
    UseLanguage(arguments.language, DataFolder(places) / "messages");
    RemoveOldLeftovers(Targets(), arguments.quiet);
    MakeFolderForOthers();
    if (!arguments.trace.empty()) trace_.emplace(arguments.trace, arguments.force);
    if (!arguments.report.empty()) {
      RefuseTaken(arguments.report, arguments.force);
      report_.emplace(arguments.report, arguments.force);
    }
  }

  ExitCode Run() {
    ExitCode code = TellProblems(found_);
    const std::size_t count = found_.documents.size();
    for (std::size_t i = 0; i < count && code != ExitCode::kInterrupted; ++i) {
      results_.push_back(UpgradeOne(found_.documents[i].file, destinations_[i]));
      Tell(results_.back());
      code = MoreSerious(code, ExitCodeOf(results_.back()));
      // A document that was done all the same is no reason to begin the next.
      if (Interruption::Requested() && i + 1 < count) code = ExitCode::kInterrupted;
    }
    if (code == ExitCode::kInterrupted) {  // a report of half the documents would mislead
      if (results_.back().verdict != Verdict::kInterrupted)
        Complain(fmt::format("interrupted; {} not begun", Count(count - results_.size(), "document")));
      return code;
    }
    const std::string verdict = VerdictOnAll();
    if (!arguments_.quiet && count > 1) Say(verdict + "\n");
    return report_ ? FinishReport(verdict, code) : code;
  }

 private:
  // By now the documents are done, whatever becomes of the report.
  ExitCode FinishReport(const std::string& verdict, ExitCode code) {
    try {
      report_->Finish(results_, verdict, code, arguments_.dryRun);
    } catch (const standalone::DocumentError& error) {
      const bool wrote = !arguments_.dryRun && std::ranges::any_of(results_, &DocumentResult::Succeeded);
      Complain(
          fmt::format("{}: {}. The report is missing; {}", arguments_.report, error.Problem(),
                      wrote ? "what is said above of the documents holds, and results that were written are "
                              "in place"
                            : "no document was changed"));
      return MoreSerious(code, ExitCode::kUnwritable);
    }
    if (!arguments_.quiet) Say(fmt::format("  Report: {}\n", Printable(arguments_.report)));
    return code;
  }

  // The folder of the results is made with the first of them, but a report or trace in it comes earlier.
  void MakeFolderForOthers() const {
    if (arguments_.dryRun || arguments_.outputDirectory.empty()) return;
    const auto folderOf = [](const fs::path& file) {
      std::error_code error;
      return fs::weakly_canonical(fs::absolute(file), error).parent_path();
    };
    for (const std::string& other : {arguments_.report, arguments_.trace}) {
      const bool isFile = !other.empty() && other != "-";
      if (isFile && folderOf(other) == folderOf(fs::path(arguments_.outputDirectory) / "any"))
        MakeFolder(arguments_.outputDirectory);
    }
  }

  // Files that will be put in place.
  [[nodiscard]] std::vector<fs::path> Targets() const {
    std::vector<fs::path> targets;
    if (!arguments_.report.empty()) targets.emplace_back(arguments_.report);
    for (const Destination& destination : destinations_) {
      if (destination.file && !arguments_.dryRun) targets.push_back(*destination.file);
    }
    return targets;
  }

  DocumentResult UpgradeOne(const std::string& input, const Destination& destination) {
    const UpgradeTask task{.input = input,
                           .destination = destination,
                           .manager = installation_.Manager(),
                           .selection = selection_,
                           .dryRun = arguments_.dryRun,
                           .quiet = arguments_.quiet,
                           .strict = arguments_.strict,
                           .acceptFailures = arguments_.acceptFailures,
                           .failOnDrop = arguments_.failOnDrop,
                           .retry = arguments_.retry,
                           .keepResult = arguments_.keepResult,
                           .limits = arguments_.limits,
                           .report = report_ ? &*report_ : nullptr,
                           .trace = trace_ ? &*trace_ : nullptr};
    const auto timeout = TimeLimit(arguments_.limits, input);
    const auto before = IdentityOf(destination);
    const WorkerEnd end = RunInWorker(
        [&task](const AnnounceCommit& announceCommit) { return Pack(UpgradeDocument(task, announceCommit)); },
        timeout);
    DocumentResult result;
    if (end.kind == WorkerEnd::Kind::kFinished) {
      result = Unpack(end.result);
    } else {
      Progress::ClearLine();
      if (destination.file) RemoveLeftovers(*destination.file, end.process);
      if (end.committing && IsAnother(IdentityOf(destination), before)) {
        result = Unpack(end.announced);
        Complain(fmt::format("{}: the process ended ({}) when the result was in place, whole", input,
                             CauseOf(end)));
      } else {
        TellEnd(input, end, timeout, result);
      }
    }
    if (report_ && result.verdict != Verdict::kInterrupted) AddToReport(input, destination, result);
    return result;
  }

  static std::optional<standalone::FileIdentity> IdentityOf(const Destination& destination) {
    return destination.file ? standalone::FileIdentity::Of(*destination.file) : std::nullopt;
  }

  // Whether a file was put where there was none, or another one.
  static bool IsAnother(const std::optional<standalone::FileIdentity>& now,
                        const std::optional<standalone::FileIdentity>& before) {
    return now && !(before && now->IsSameFile(*before));
  }

  static std::string CauseOf(const WorkerEnd& end) {
    if (end.kind == WorkerEnd::Kind::kOutOfMemory) return "there is not enough memory";
    return end.cause.empty() ? "stopped" : end.cause;
  }

  // What the worker could not say itself.
  static void TellEnd(const std::string& input, const WorkerEnd& end,
                      std::optional<std::chrono::duration<double>> timeout, DocumentResult& result) {
    if (end.kind == WorkerEnd::Kind::kTimedOut) {
      result.verdict = Verdict::kTimedOut;
      result.problem = fmt::format(
          "{}: the upgrade was stopped after {:.6g} s (--timeout raises the limit). Nothing was written; "
          "--trace shows where it was",
          input, timeout->count());
    } else if (end.kind == WorkerEnd::Kind::kNotStarted) {
      result.verdict = Verdict::kAborted;
      result.problem =
          fmt::format("{}: not begun, since {}. Run the same command again when there are fewer processes",
                      input, end.cause);
    } else if (end.kind == WorkerEnd::Kind::kInterrupted) {
      result.verdict = Verdict::kInterrupted;
      result.problem = fmt::format("{}: interrupted. Nothing was written", input);
    } else if (end.kind == WorkerEnd::Kind::kOutOfMemory) {
      result.verdict = Verdict::kAborted;
      result.problem =
          fmt::format("{}: the upgrade was given up: there is not enough memory. Nothing was written", input);
    } else {
      result.verdict = Verdict::kCrashed;
      result.problem =
          fmt::format("{}: the upgrade crashed ({}). Its file was left alone; --trace shows where it was",
                      input, end.cause);
    }
  }

  void AddToReport(const std::string& input, const Destination& destination, DocumentResult& result) {
    if (!result.Succeeded()) {
      result.attention = AttentionOf(input, result);
      report_->Discard();  // what the worker wrote before it came to this
      report_->AddWithoutRun(input, result, destination, arguments_.dryRun);
    }
    report_->Keep();
  }

  void Tell(const DocumentResult& result) const {
    if (!result.Succeeded()) {
      Complain(result.problem);
    } else if (!arguments_.quiet) {
      Say(result.summary);
    } else if (!result.IsComplete()) {
      Complain(Unpainted(result.summary.substr(0, result.summary.find('\n'))));
    }
    FlushOutput();
  }

  [[nodiscard]] std::string VerdictOnAll() const {
    std::vector<std::string> parts;
    const auto part = [&](const auto& matches, std::string_view what) {
      const auto number = std::ranges::count_if(results_, matches);
      if (number != 0) parts.push_back(fmt::format("{} {}", number, what));
    };
    const auto is = [](Verdict verdict, bool complete) {
      return [verdict, complete](const DocumentResult& r) {
        return r.verdict == verdict && r.IsComplete() == complete;
      };
    };
    const char* const done = arguments_.dryRun ? "would be upgraded" : "upgraded";
    const auto isDone = [](const DocumentResult& r) {
      return r.verdict == Verdict::kCurrent || r.verdict == Verdict::kNothingChosen;
    };
    part(is(Verdict::kUpgraded, true), done);
    part(is(Verdict::kUpgraded, false), fmt::format("{} but in need of a person", done));
    part(is(Verdict::kHeldBack, false), "not written because in need of a person");
    part([&](const DocumentResult& r) { return isDone(r) && r.IsComplete(); }, "with nothing to do");
    part([&](const DocumentResult& r) { return isDone(r) && !r.IsComplete(); },
         "with nothing to do but in need of a person");
    const auto isChanged = [](const DocumentResult& r) { return r.verdict == Verdict::kChangedMeanwhile; };
    part(isChanged, "changed meanwhile");
    part([&](const DocumentResult& r) { return !r.Succeeded() && !isChanged(r); }, "given up");
    return fmt::format("{}: {}", Count(results_.size(), "document"), fmt::join(parts, ", "));
  }

  const UpgradeArguments& arguments_;
  Installation installation_;
  Selection selection_;
  FoundDocuments found_;
  std::vector<Destination> destinations_;
  EmptyFolders emptyFolders_;  // before what may write into them
  std::optional<Trace> trace_;
  std::optional<Report> report_;
  std::vector<DocumentResult> results_;
};

}  // namespace

ExitCode RunUpgrade(const UpgradeArguments& arguments, const Places& places) {
  Interruption::HoldBack();
  if (arguments.output == kStandardStream) KeepOutput();
  UpgradeCommand command(arguments, places);
  // Results that nobody reads are no reason to leave documents half done.
  std::signal(SIGPIPE, SIG_IGN);
  return command.Run();
}

}  // namespace tool
