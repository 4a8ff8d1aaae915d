#include "StatusCommand.h"

#include "JsonOutput.h"
#include "Reading.h"
#include "Terminal.h"

namespace tool {
namespace {

using standalone::KnownUpgrade;
using standalone::VersionManager;

struct Status {
  std::string file;
  std::size_t features = 0;
  std::vector<std::string> pending;
  std::vector<std::string> done;
  std::vector<std::string> unknown;  // recorded, but of a later release

  [[nodiscard]] std::string_view Verdict() const {
    if (!unknown.empty()) return "newer than this program";
    return pending.empty() ? "current" : "upgrade needed";
  }
};

Status StatusOf(const std::string& file, const VersionManager& manager) {
  const standalone::DocumentPtr document = ReadWithProgress(file);
  Status status;
  status.file = file;
  status.features = document->FeatureCount();
  status.pending = manager.Pending(*document.Get());
  status.unknown = manager.Unknown(*document.Get());
  for (const KnownUpgrade& known : manager.Known()) {
    if (document->HasRecorded(known.identifier)) status.done.push_back(known.identifier);
  }
  return status;
}

void AppendIdentifiers(fmt::memory_buffer& out, std::string_view title,
                       const std::vector<std::string>& identifiers) {
  if (identifiers.empty()) return;
  fmt::format_to(std::back_inserter(out), "  {}:\n", title);
  for (const std::string& identifier : identifiers)
    fmt::format_to(std::back_inserter(out), "    {}\n", Word(identifier));
}

void AppendText(fmt::memory_buffer& out, const Status& status) {
  const Colour colour = !status.unknown.empty()  ? Colour::kRed
                        : status.pending.empty() ? Colour::kGreen
                                                 : Colour::kYellow;
  auto to = std::back_inserter(out);
  fmt::format_to(to, "{}: {}, {} pending, {} done", Printable(status.file),
                 Paint(stdout, colour, status.Verdict()), status.pending.size(), status.done.size());
  if (!status.unknown.empty()) fmt::format_to(to, ", {} unknown here", status.unknown.size());
  fmt::format_to(to, " ({})\n", Count(status.features, "feature"));
  AppendIdentifiers(out, "Pending", status.pending);
  AppendIdentifiers(out, "Done", status.done);
  AppendIdentifiers(out, "Unknown here (use a newer release of this program)", status.unknown);
}

void AppendJson(fmt::memory_buffer& out, const Status& status) {
  JsonObject entry(out);
  entry.Text("file", status.file);
  entry.Text("verdict", status.Verdict());
  entry.Number("features", status.features);
  entry.Texts("pending", status.pending);
  entry.Texts("done", status.done);
  entry.Texts("unknown", status.unknown);
  entry.Close();
}

ExitCode CodeOf(const Status& status, bool check) {
  if (!status.unknown.empty()) return ExitCode::kNewer;
  return check && !status.pending.empty() ? ExitCode::kUpgradeNeeded : ExitCode::kDone;
}

}  // namespace

ExitCode RunStatus(const StatusArguments& arguments, const VersionManager& manager) {
  ExitCode code = ExitCode::kDone;
  fmt::memory_buffer out;
  JsonObject top(out);
  top.Text("status", "hvxupgrade");
  top.Number("version", kJsonVersion);
  JsonList documents(top.Key("documents"));
  if (!arguments.json) out.clear();
  for (const std::string& file : arguments.files) {
    try {
      const Status status = StatusOf(file, manager);
      code = MoreSerious(code, CodeOf(status, arguments.check));
      if (arguments.json) {
        AppendJson(documents.Entry(), status);
        continue;
      }
      AppendText(out, status);
      Say({out.data(), out.size()});
      std::fflush(stdout);
      out.clear();
    } catch (const standalone::DocumentError& error) {
      code = MoreSerious(code, ExitCodeOf(error));
      Complain(error.what());
      if (arguments.json) AppendUnreadable(documents.Entry(), file, error);
    }
  }
  if (arguments.json) {
    documents.Close();
    top.Close();
    out.push_back('\n');
    Say({out.data(), out.size()});
  }
  return code;
}

}  // namespace tool
