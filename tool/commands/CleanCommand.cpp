#include "commands/CleanCommand.h"

#include <fmt/format.h>

#include <set>
#include <vector>

#include "archive/Leftovers.h"
#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;
using standalone::Maker;

// What became of one leftover.
enum class Outcome { kRemoved, kWouldBeRemoved, kInUse, kOfOtherHost, kFailed };

std::string_view NameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kRemoved:
      return "removed";
    case Outcome::kWouldBeRemoved:
      return "wouldBeRemoved";
    case Outcome::kInUse:
      return "inUse";
    case Outcome::kOfOtherHost:
      return "ofOtherHost";
    case Outcome::kFailed:
      break;
  }
  return "failed";
}

class CleanCommand {
 public:
  explicit CleanCommand(const CleanArguments& arguments) : arguments_(arguments) {}

  ExitCode Run() {
    JsonObject top(json_);
    top.Text("clean", "hvxupgrade");
    top.Number("version", kJsonVersion);
    top.Flag("dryRun", arguments_.dryRun);
    JsonList leftovers(top.Key("leftovers"));
    for (const std::string& folder : arguments_.folders) CleanBeneath(folder, leftovers);
    leftovers.Close();
    JsonObject totals(top.Key("totals"));
    totals.Number("removed", removed_);
    totals.Number("bytes", bytes_);
    totals.Close();
    top.Close();
    if (arguments_.json) {
      Say({json_.data(), json_.size()});
      Say("\n");
    } else {
      Say(fmt::format("{} {}, {}\n", Count(removed_, "leftover"),
                      arguments_.dryRun ? "would be removed" : "removed", Count(bytes_, "byte")));
    }
    return code_;
  }

 private:
  void CleanBeneath(const fs::path& top, JsonList& list) {
    std::vector<fs::path> folders = {top};
    while (!folders.empty()) {
      const fs::path folder = std::move(folders.back());
      folders.pop_back();
      std::error_code error;
      const fs::path real = fs::canonical(folder, error);
      if (!error && !visited_.insert(real).second) continue;
      const FolderContent content = ContentOf(folder, error);
      for (const Leftover& leftover : content.leftovers) Tell(leftover, Clean(leftover), list);
      folders.insert(folders.end(), content.subfolders.rbegin(), content.subfolders.rend());
      if (!error) continue;
      Complain(fmt::format("{}: the folder cannot be read ({}). Check the path and the permissions",
                           folder.string(), error.message()));
      code_ = MoreSerious(code_, ExitCode::kBadInput);
    }
  }

  Outcome Clean(const Leftover& leftover) {
    if (leftover.maker == Maker::kElsewhere) return Outcome::kOfOtherHost;
    if (leftover.maker == Maker::kRuns) return Outcome::kInUse;
    std::error_code error;
    if (!arguments_.dryRun && !fs::remove(leftover.file, error) && error) {
      Complain(fmt::format("{}: cannot be removed ({}). Check the permissions of its folder",
                           leftover.file.string(), error.message()));
      code_ = MoreSerious(code_, ExitCode::kUnwritable);
      return Outcome::kFailed;
    }
    ++removed_;
    bytes_ += leftover.bytes;
    return arguments_.dryRun ? Outcome::kWouldBeRemoved : Outcome::kRemoved;
  }

  void Tell(const Leftover& leftover, Outcome outcome, JsonList& list) const {
    if (arguments_.json) {
      JsonObject entry(list.Entry());
      entry.Name("file", leftover.file.string());
      entry.Number("bytes", leftover.bytes);
      entry.Name("host", leftover.name.host);
      entry.Number("process", static_cast<std::size_t>(leftover.name.process));
      entry.Text("outcome", NameOf(outcome));
      entry.Close();
      return;
    }
    const std::string file = Printable(leftover.file.string());
    switch (outcome) {
      case Outcome::kRemoved:
      case Outcome::kWouldBeRemoved:
        Say(fmt::format("{}: {} ({})\n", file, outcome == Outcome::kRemoved ? "removed" : "would be removed",
                        Count(leftover.bytes, "byte")));
        break;
      case Outcome::kInUse:
        Say(fmt::format("{}: skipped, process {} is using it\n", file, leftover.name.process));
        break;
      case Outcome::kOfOtherHost:
        Say(fmt::format("{}: skipped, it belongs to host {} or to a container there; clean it from there\n",
                        file, Printable(leftover.name.host)));
        break;
      case Outcome::kFailed:
        break;  // told as an error
    }
  }

  const CleanArguments& arguments_;
  fmt::memory_buffer json_;
  std::set<fs::path> visited_;  // folders that are given twice, or with one above them, count once
  ExitCode code_ = ExitCode::kDone;
  std::size_t removed_ = 0;
  std::uintmax_t bytes_ = 0;
};

}  // namespace

ExitCode RunClean(const CleanArguments& arguments) {
  return CleanCommand(arguments).Run();
}

}  // namespace tool
