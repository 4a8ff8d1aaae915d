#include "commands/UpgradeCommand.h"

#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "archive/ArchiveUpgrade.h"
#include "archive/DocumentSearch.h"
#include "archive/DoneDocuments.h"
#include "archive/Leftovers.h"
#include "archive/Shards.h"
#include "file/DocumentError.h"
#include "file/TemporaryName.h"
#include "page/PageFile.h"
#include "page/RunPage.h"
#include "session/Messages.h"
#include "settings/CommandText.h"
#include "settings/DecidingArguments.h"
#include "settings/UsageError.h"
#include "terminal/Interruption.h"
#include "terminal/Terminal.h"
#include "terminal/VisibleText.h"

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
  UpgradeCommand(const UpgradeArguments& arguments, const Arguments& all)
      : arguments_(arguments),
        places_(all.places),
        data_(DataFolder(all.places)),
        installation_(all.places),
        selection_(installation_.Manager(), arguments.only, arguments.until),
        found_(FindDocuments(arguments.sources, arguments.outputDirectory, arguments.backupSuffix)),
        destinations_(arguments, found_.documents),
        emptyFolders_(arguments.outputDirectory.empty() || arguments.dryRun ? std::set<fs::path>()
                                                                            : destinations_.Folders()),
        summary_(arguments.dryRun) {
    UseLanguage(arguments.language, data_ / "messages");
    RemoveOldLeftovers(FoldersOfTemporaries(), arguments.quiet);
    MakeFolderForOthers();
    if (!arguments.trace.empty()) trace_.emplace(arguments.trace, arguments.force);
    todo_ = DocumentsOfShard(found_.documents, arguments.shard.value_or(Shard()), arguments.inPlace);
    if (!arguments.html.empty()) page::CheckPlace(arguments.html, arguments.force);
    if (!arguments.report.empty() || !arguments.html.empty()) OpenReport(all);
  }
  ~UpgradeCommand() {
    if (!temporaryReport_.empty()) unlink(temporaryReport_.c_str());
  }
  UpgradeCommand(const UpgradeCommand&) = delete;
  UpgradeCommand& operator=(const UpgradeCommand&) = delete;

  ExitCode Run() {
    const ExitCode code = TellProblems(found_);
    if (summary_.Documents() != 0 && !arguments_.quiet) {
      Say(fmt::format("resuming {}: {} done before, {} left\n", Printable(arguments_.report),
                      Count(summary_.Documents(), "document"), todo_.size()));
    }
    const ArchiveTask task{.arguments = arguments_,
                           .manager = installation_.Manager(),
                           .selection = selection_,
                           .documents = found_.documents,
                           .destinations = destinations_,
                           .isSearched = found_.areSearched,
                           .report = report_ ? &*report_ : nullptr,
                           .trace = trace_ ? &*trace_ : nullptr};
    ArchiveUpgrade upgrade(task, summary_);
    const RunEnd end = upgrade.Run(todo_);
    const ExitCode ended =
        TellEnd(end, MoreSerious(code, summary_.Code()), todo_.size() - upgrade.Done(), upgrade);
    if (!arguments_.quiet) Say(upgrade.Table());
    return ended;
  }

 private:
  void OpenReport(const Arguments& all) {
    const ReportHead head{.tool = HVXUPGRADE_VERSION,
                          .folder = fs::current_path().string(),
                          .arguments = DecidingArguments(arguments_),
                          .origin = OriginOf(all, arguments_, installation_)};
    const ReportDetail detail = arguments_.reportDetail == "full"      ? ReportDetail::kFull
                                : arguments_.reportDetail == "changes" ? ReportDetail::kChanges
                                                                       : ReportDetail::kSummary;
    if (arguments_.ReportsToStream()) {
      report_.emplace(head, detail);
      return;
    }
    if (arguments_.report.empty()) MakeTemporaryReport();
    DoneDocuments done(found_.documents, arguments_.again);
    report_.emplace(ReportName(), head, arguments_.force, detail,
                    [&done](const ReportLine& line) { done.Add(line); });
    done.AddTo(summary_, ReportName());
    std::erase_if(todo_, [&done](std::size_t document) { return done.IsDone(document); });
    // What this run's own report names as its result may be replaced by the next.
    for (const std::size_t document : todo_) {
      if (done.IsOwnResult(document)) destinations_.AllowReplacing(document);
    }
  }

  // A page alone is wanted: it is made from a report that nobody gets to see.
  void MakeTemporaryReport() {
    const int descriptor = standalone::MakeTemporary(arguments_.html, temporaryReport_);
    if (descriptor < 0)
      throw standalone::DocumentError(standalone::DocumentError::Kind::kUnwritable, arguments_.html, 0,
                                      fmt::format("the page cannot be written ({})", std::strerror(errno)),
                                      "Check the folder, its permissions and the room on its disk");
    close(descriptor);
  }
  [[nodiscard]] const std::string& ReportName() const {
    return temporaryReport_.empty() ? arguments_.report : temporaryReport_;
  }

  ExitCode TellEnd(RunEnd end, ExitCode code, std::size_t left, const ArchiveUpgrade& upgrade) {
    switch (end) {
      case RunEnd::kDone:
        break;
      case RunEnd::kInterrupted:
        code = ExitCode::kInterrupted;
        if (todo_.size() > 1 || left == 0)
          Complain(fmt::format("interrupted; {} not done. The same command resumes the run",
                               Count(left, "document")));
        break;
      case RunEnd::kUnrecordable:
        code = MoreSerious(code, ExitCode::kUnwritable);
        if (left != 0)
          Complain(
              fmt::format("{} not done. The same command resumes the run, once the report can be written",
                          Count(left, "document")));
        break;
      case RunEnd::kNoWorkers:
        code = MoreSerious(code, ExitCode::kFailedFeatures);
        Complain(fmt::format(
            "{} not begun, since {}. Run the same command again when there are fewer "
            "processes",
            todo_.size() == 1 ? found_.documents[todo_.front()].file + ":" : Count(left, "document"),
            upgrade.StartFailure()));
        break;
    }
    const bool isEmptyList = found_.documents.empty() && found_.problems.empty();
    const bool areSeveral = found_.documents.size() > 1 || summary_.Documents() > 1;
    if (!arguments_.quiet && (areSeveral || isEmptyList)) TellAll(left);
    return report_ && end != RunEnd::kUnrecordable ? FinishReport(code, left) : code;
  }

  // A short run has told it all already.
  void TellAll(std::size_t left) const {
    constexpr std::size_t kShort = 20;
    if (summary_.Documents() > kShort && !arguments_.many.verbose)
      Say(summary_.ClosingList(arguments_.ReportsToStream() ? ""
                               : arguments_.report.empty()  ? arguments_.html
                                                            : arguments_.report) +
          ListOfProblems(found_));
    Say(summary_.Verdict() + (left == 0 ? "\n" : fmt::format("; {} left\n", left)));
    if (!summary_.NeedsPerson() || left != 0 || arguments_.many.verbose) return;
    if (arguments_.ReportsToStream()) return;
    if (arguments_.report.empty() && AreOldGone()) {
      if (arguments_.html.empty())
        Say("  The old documents are gone, and the results do not show all that each needs: another time, "
            "give --report FILE to keep that\n");
      return;
    }
    const ProposedCommand next = NextCommand();
    const std::size_t named = summary_.FirstInNeed().size();
    const bool isOfFirst = next.namesFirst && named < summary_.CountInNeed();
    Say(fmt::format("  Next: {} shows what {}\n", next.text,
                    isOfFirst ? fmt::format("the first {} of them need", named) : "each needs"));
  }

  // Whether no command can show any more what the upgrades of some document left for a person.
  [[nodiscard]] bool AreOldGone() const {
    return arguments_.inPlace && arguments_.backupSuffix.empty() && summary_.NeedsMoreThanCheck() &&
           summary_.CountWrittenInNeed() != 0;
  }

  // What shows of each document all that needs a person.
  [[nodiscard]] ProposedCommand NextCommand() const {
    if (!arguments_.report.empty()) return {"hvxupgrade report " + ShellWord(arguments_.report)};
    DocumentsInNeed inNeed;
    for (const RunSummary::InNeed& each : summary_.FirstInNeed()) inNeed.first.push_back(each.file);
    if (!arguments_.dryRun && !summary_.NeedsMoreThanCheck())
      return CheckOf(places_, arguments_, inNeed.first);
    if (!arguments_.backupSuffix.empty()) {
      inNeed.haveBackups = summary_.CountWrittenInNeed() != 0;
      inNeed.allHaveBackups = summary_.CountWrittenInNeed() == summary_.CountInNeed();
      for (std::size_t i = 0; i < inNeed.first.size(); ++i) {
        if (summary_.FirstInNeed()[i].isWritten) inNeed.first[i] += arguments_.backupSuffix;
      }
    }
    return DryRunOf(places_, arguments_, inNeed);
  }

  // By now the documents are done, whatever becomes of the report.
  ExitCode FinishReport(ExitCode code, std::size_t left) {
    try {
      report_->Finish(summary_, code, left);
    } catch (const standalone::DocumentError& error) {
      Complain(fmt::format(
          "{}: {}. The lines above about documents are right, and {}",
          arguments_.report.empty() ? arguments_.html : arguments_.ReportName(), error.Problem(),
          summary_.Wrote() ? "results that were written are in place" : "no document was changed"));
      return MoreSerious(code, ExitCode::kUnwritable);
    }
    if (!arguments_.quiet && !arguments_.report.empty() && !arguments_.ReportsToStream())
      Say(fmt::format("  Report: {}\n", Printable(arguments_.report)));
    return arguments_.html.empty() ? code : WritePage(code);
  }

  // The same holds for the page.
  [[nodiscard]] ExitCode WritePage(ExitCode code) const {
    try {
      Reports reports;
      reports.push_back(std::make_unique<ReportFile>(ReportName(), std::vector<std::string>()));
      page::PutPage(arguments_.html, arguments_.force, [&](const Writer& write) {
        page::WriteRunPage(reports, temporaryReport_.empty(), installation_.Manager(), Explanations(data_),
                           write);
      });
    } catch (const standalone::DocumentError& error) {
      Complain(fmt::format("{}. The lines above about documents are right", error.what()));
      return MoreSerious(code, ExitCode::kUnwritable);
    }
    if (!arguments_.quiet) Say(fmt::format("  Page: {}\n", Printable(arguments_.html)));
    return code;
  }

  // The folder of the results is made with the first of them, but a report or trace in it comes earlier.
  void MakeFolderForOthers() const {
    if (arguments_.dryRun || arguments_.outputDirectory.empty()) return;
    const auto folderOf = [](const fs::path& file) { return RealPathOf(file).parent_path(); };
    for (const std::string& other : {arguments_.report, arguments_.trace, arguments_.html}) {
      const bool isFile = !other.empty() && other != "-";
      if (isFile && folderOf(other) == folderOf(fs::path(arguments_.outputDirectory) / "any"))
        MakeFolder(arguments_.outputDirectory);
    }
  }

  // Where temporary files come up.
  [[nodiscard]] std::set<fs::path> FoldersOfTemporaries() const {
    std::set<fs::path> folders;
    if (!arguments_.dryRun) folders = destinations_.Folders();
    if (!arguments_.report.empty() && !arguments_.ReportsToStream())
      folders.insert(RealPathOf(arguments_.report).parent_path());
    if (!arguments_.html.empty()) folders.insert(RealPathOf(arguments_.html).parent_path());
    return folders;
  }

  const UpgradeArguments& arguments_;
  const Places& places_;
  fs::path data_;
  Installation installation_;
  Selection selection_;
  FoundDocuments found_;
  Destinations destinations_;
  EmptyFolders emptyFolders_;  // before what may write into them
  std::optional<Trace> trace_;
  RunSummary summary_;
  std::vector<std::size_t> todo_;  // documents, by their places
  std::string temporaryReport_;
  std::optional<RunReport> report_;
};

}  // namespace

ExitCode RunUpgrade(const UpgradeArguments& arguments, const Arguments& all) {
  Interruption::HoldBack();
  if (arguments.output == kStandardStream || arguments.ReportsToStream()) KeepOutput();
  UpgradeCommand command(arguments, all);
  // Results that nobody reads are no reason to leave documents half done.
  std::signal(SIGPIPE, SIG_IGN);
  return command.Run();
}

}  // namespace tool
