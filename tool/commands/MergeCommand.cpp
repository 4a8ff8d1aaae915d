#include "commands/MergeCommand.h"

#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <utility>

#include "archive/DocumentSearch.h"
#include "file/AtomicFile.h"
#include "file/DocumentError.h"
#include "file/FileIdentity.h"
#include "report/JsonOutput.h"
#include "report/ReportLines.h"
#include "report/RunReport.h"
#include "report/RunSummary.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;
using standalone::DocumentError;

// Where a document's record stands.
struct Place {
  std::size_t report;
  std::int64_t begin;
  std::int64_t size;
};

class MergeCommand {
 public:
  MergeCommand(const MergeArguments& arguments, const std::vector<std::string>& commandLine)
      : arguments_(arguments),
        commandLine_(commandLine),
        reports_(EachOnce(arguments.reports)),
        summary_(false) {
    const auto unbegun = std::stable_partition(reports_.begin(), reports_.end(), HasFirstLine);
    if (unbegun == reports_.begin()) return;  // of none can be told but that it is no report
    unbegun_.assign(unbegun, reports_.end());
    reports_.erase(unbegun, reports_.end());
  }

  ExitCode Run() {
    for (std::size_t i = 0; i < reports_.size(); ++i) ReadPlaces(i);
    for (std::size_t i = 0; i < reports_.size(); ++i) Summarize(i);
    const std::vector<std::string> problems = Problems();
    Say(summary_.ClosingList(arguments_.report));
    Say(fmt::format("{}\n", summary_.Verdict()));
    ExitCode code = summary_.Code();
    for (const std::string& problem : problems) Complain(problem);
    if (!problems.empty()) code = MoreSerious(code, ExitCode::kFailedFeatures);
    if (isUnsearched_) code = MoreSerious(code, ExitCode::kBadInput);
    if (isLeft_) code = ExitCode::kInterrupted;
    if (!arguments_.report.empty()) WriteReport(code);
    return code;
  }

 private:
  static std::vector<std::string> EachOnce(const std::vector<std::string>& reports) {
    std::vector<std::string> once;
    std::set<std::pair<dev_t, ino_t>> met;
    for (const std::string& report : reports) {
      const auto file = standalone::FileIdentity::Of(fs::path(report));
      if (!file || met.emplace(file->device, file->inode).second) once.push_back(report);
    }
    return once;
  }

  void ReadPlaces(std::size_t number) {
    const std::string& file = reports_[number];
    const ReadReportResult read = ReadReport(file, [this, number](const ReportLine& line) {
      std::vector<Place>& places = places_[line.file];
      std::erase_if(places, [number](const Place& place) { return place.report == number; });
      places.push_back({number, line.begin, line.size});
    });
    ReportHead head = read.head;
    lines_.push_back(JoinedLine(file, read.headLine));
    std::ranges::copy(read.otherLines, std::back_inserter(lines_));
    NoteLibraries(head.origin);
    Shard shard;
    Arguments command;
    std::vector<const char*> texts{"hvxupgrade"};
    for (const std::string& text : head.arguments) texts.push_back(text.c_str());
    if (ParseArguments(static_cast<int>(texts.size()), texts.data(), command))
      throw UsageError(fmt::format("{}: the command in its first line is not of this program", file));
    if (!std::holds_alternative<UpgradeArguments>(command.verb))
      throw UsageError(fmt::format("{}: the command in its first line is not an upgrade", file));
    const auto& upgrade = std::get<UpgradeArguments>(command.verb);
    if (upgrade.shard) shard = *upgrade.shard;
    TakeShardOut(head.arguments);
    if (number == 0) {
      head_ = head;
      command_ = upgrade;
      firstArguments_ = read.head.arguments;
      shards_.resize(shard.of);
    }
    if (!head.IsOfCommand(head_) || shards_.size() != shard.of) {
      throw UsageError(fmt::format("{} and {} are not reports of shards of one run: {} in {}, and {} in {}",
                                   reports_.front(), file, fmt::join(firstArguments_, " "), head_.folder,
                                   fmt::join(read.head.arguments, " "), head.folder));
    }
    shards_[shard.number - 1].push_back(file);
    shardOf_.push_back(shard.number);
    if (!read.isFinished || read.left != 0) unfinished_.push_back(file);
  }

  // The first line of a report that is merged, which it says.
  static std::string JoinedLine(const std::string& file, const std::string& headLine) {
    constexpr std::string_view kRun = R"({"record":"run")";
    fmt::memory_buffer text;
    standalone::AppendRaw(text, R"({"record":"joined")");
    JsonObject line(text, JsonObject::GoOn());
    line.Name("file", file);
    if (headLine.starts_with(kRun))
      standalone::AppendRaw(text, std::string_view(headLine).substr(kRun.size()));
    return fmt::to_string(text);
  }

  void NoteLibraries(const RunOrigin& origin) {
    if (libraries_.empty()) firstOrigin_ = origin;
    haveOtherLibraries_ = haveOtherLibraries_ || !origin.HasLibrariesOf(firstOrigin_);
    for (const LibraryFile& each : origin.libraries) {
      if (std::ranges::find(libraries_, each.sha256, &LibraryFile::sha256) == libraries_.end())
        libraries_.push_back(each);
    }
  }

  static void TakeShardOut(std::vector<std::string>& texts) {
    const auto option = std::ranges::find(texts, "--shard");
    if (option != texts.end() && option + 1 != texts.end()) texts.erase(option, option + 2);
  }

  // Of a document that several shards did, the last report's record counts.
  void Summarize(std::size_t number) {
    ReadReport(reports_[number], [this, number](const ReportLine& line) {
      const Place& last = places_.at(line.file).back();
      if (last.report == number && last.begin == line.begin) summary_.Add(line.file, line.result);
    });
  }

  [[nodiscard]] std::vector<std::string> Problems() {
    std::vector<std::string> problems;
    // What is left to be done, unless told otherwise.
    const auto add = [&](const std::vector<std::string>& names, std::string_view what, bool isLeft = true) {
      constexpr std::size_t kNamed = 20;
      if (names.empty()) return;
      isLeft_ = isLeft_ || isLeft;
      const std::vector<std::string> first(
          names.begin(), names.begin() + static_cast<std::ptrdiff_t>(std::min(kNamed, names.size())));
      problems.push_back(
          fmt::format("{}: {}{}", what, fmt::join(first, ", "),
                      names.size() > kNamed ? fmt::format(", and {} more", names.size() - kNamed) : ""));
    };
    std::vector<std::string> missing;
    std::vector<std::string> repeated;
    for (std::size_t i = 0; i < shards_.size(); ++i) {
      if (shards_[i].size() == 1) continue;
      (shards_[i].empty() ? missing : repeated).push_back(fmt::format("{}/{}", i + 1, shards_.size()));
    }
    add(missing, "no report of these shards was given");
    add(unbegun_, "these runs ended before they wrote anything; run their shards again");
    add(unfinished_, "these shards are not finished; the same command resumes each");
    add(repeated,
        "several reports of these shards were given; for each document the last one's record counts", false);
    if (haveOtherLibraries_)
      problems.emplace_back(
          "these shards were upgraded with different upgrade libraries, which the first lines of their "
          "reports name; run those again that used the wrong ones");
    std::vector<std::string> several;
    for (const auto& [file, places] : places_) {
      const auto isOfOther = [&, first = shardOf_[places.front().report]](const Place& place) {
        return shardOf_[place.report] != first;
      };
      if (std::ranges::any_of(places, isOfOther)) several.push_back(file);
    }
    add(several, "several shards did these documents, so the archive changed while they ran", false);
    add(DoneByNone(problems), "no shard did these documents");
    return problems;
  }

  // Where that cannot be seen, tells it as problems.
  [[nodiscard]] std::vector<std::string> DoneByNone(std::vector<std::string>& problems) {
    std::vector<std::string> none;
    if (command_.sources.list == "-") return none;  // which is gone
    const fs::path here = fs::current_path();
    if (chdir(head_.folder.c_str()) != 0) {
      isUnsearched_ = true;
      problems.push_back(
          fmt::format("{}: the folder of the run cannot be entered ({}), so it is not known whether shards "
                      "skipped documents. Run the same command again where the folder exists",
                      head_.folder, std::strerror(errno)));
      return none;
    }
    const FoundDocuments found =
        FindDocuments(command_.sources, command_.outputDirectory, command_.backupSuffix);
    for (const GivenDocument& document : found.documents) {
      if (!places_.contains(document.file)) none.push_back(document.file);
    }
    isUnsearched_ = !found.problems.empty();
    problems.insert(problems.end(), found.problems.begin(), found.problems.end());
    if (chdir(here.c_str()) != 0)
      throw DocumentError(DocumentError::Kind::kUnreadable, here.string(), 0, "can no longer be entered",
                          "Run the same command again in a folder that exists");
    return none;
  }

  void WriteReport(ExitCode code) const {
    standalone::WriteOptions options;
    options.overwrite = arguments_.force;
    RefuseTaken(arguments_.report, arguments_.force);
    standalone::AtomicFile output(arguments_.report, options);
    ReportHead head = head_;
    head.origin = OriginOf(commandLine_);
    head.origin.libraries = libraries_;
    head.origin.language = firstOrigin_.language;
    output.Write(HeadLine(head));
    for (const std::string& line : lines_) output.Write(line);
    std::vector<std::ifstream> reports;
    for (const std::string& file : reports_) reports.emplace_back(file, std::ios::binary);
    std::vector<char> block(std::size_t{1} << 16U);
    for (const auto& [file, places] : places_) {
      const Place& place = places.back();
      std::ifstream& report = reports[place.report];
      report.seekg(place.begin);
      for (std::int64_t left = place.size; left > 0;) {
        const auto size = std::min<std::int64_t>(left, static_cast<std::int64_t>(block.size()));
        if (!report.read(block.data(), size))
          throw DocumentError(DocumentError::Kind::kUnreadable, reports_[place.report], 0,
                              "the report was changed while it was read", "Run the same command again");
        output.Write({block.data(), static_cast<std::size_t>(size)});
        left -= size;
      }
    }
    output.Write(EndLine(summary_, code, 0));
    output.Commit();
    Say(fmt::format("  Report: {}\n", Printable(arguments_.report)));
  }

  const MergeArguments& arguments_;
  const std::vector<std::string>& commandLine_;
  std::vector<std::string> reports_;
  RunSummary summary_;
  ReportHead head_;                          // without the shard
  UpgradeArguments command_;                 // of the first report,
  std::vector<std::string> firstArguments_;  // with its shard
  std::vector<std::string> lines_;           // about the runs, of all reports
  RunOrigin firstOrigin_;
  std::vector<LibraryFile> libraries_;  // of all
  bool haveOtherLibraries_ = false;
  std::map<std::string, std::vector<Place>> places_;
  std::vector<std::vector<std::string>> shards_;  // the reports of each
  std::vector<std::size_t> shardOf_;              // of each report
  std::vector<std::string> unbegun_;
  std::vector<std::string> unfinished_;
  bool isLeft_ = false;        // something is not done yet
  bool isUnsearched_ = false;  // there may be documents that no shard saw
};

}  // namespace

ExitCode RunMerge(const MergeArguments& arguments, const std::vector<std::string>& commandLine) {
  return MergeCommand(arguments, commandLine).Run();
}

}  // namespace tool
