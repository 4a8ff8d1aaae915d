#include "commands/ReportCommand.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <optional>
#include <set>
#include <utility>

#include "file/AtomicFile.h"
#include "file/FileIdentity.h"
#include "page/PageFile.h"
#include "page/RunPage.h"
#include "record/Destination.h"
#include "report/ReportForms.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

void WriteForm(const ReportArguments& arguments, const Places& places, const Reports& reports,
               const Writer& write) {
  if (arguments.format == "text") return WriteText(reports, write);
  if (arguments.format == "json") return WriteJson(reports, write);
  if (arguments.format == "csv") return WriteCsv(reports, write);
  const Installation installation(places);
  page::WriteRunPage(reports, true, installation.Manager(), Explanations(DataFolder(places)), write);
}

Reports Read(const ReportArguments& arguments) {
  Reports reports;
  // Given twice, its documents would count twice.
  std::set<std::pair<dev_t, ino_t>> met;
  for (const std::string& each : arguments.reports) {
    const auto file = standalone::FileIdentity::Of(fs::path(each));
    if (!file || met.emplace(file->device, file->inode).second)
      reports.push_back(std::make_unique<ReportFile>(each, arguments.documents));
  }
  std::vector<std::string> missing = arguments.documents;
  for (const auto& report : reports) missing = report->NotThere(missing);
  if (!missing.empty())
    throw UsageError(fmt::format("{} of no document of that name: {}",
                                 reports.size() == 1 ? "the report tells" : "the reports tell",
                                 fmt::join(missing, ", ")));
  return reports;
}

// Not even with --force: it would be gone before it is read.
void RefuseReports(const ReportArguments& arguments) {
  const auto output = standalone::FileIdentity::Of(fs::path(arguments.output));
  for (const std::string& each : arguments.reports) {
    const auto report = standalone::FileIdentity::Of(fs::path(each));
    if (output && report && output->IsSameFile(*report))
      throw UsageError(fmt::format("the output would replace {}", each));
  }
}

}  // namespace

ExitCode RunReports(const ReportArguments& arguments, const Places& places) {
  const Reports reports = Read(arguments);
  if (arguments.output.empty() || arguments.output == kStandardStream) {
    WriteForm(arguments, places, reports, [](std::string_view bytes) { Say(bytes); });
    return ExitCode::kDone;
  }
  RefuseReports(arguments);
  const auto writeForm = [&](const Writer& write) { WriteForm(arguments, places, reports, write); };
  if (arguments.format == "html") {
    page::PutPage(arguments.output, arguments.force, writeForm);
    return ExitCode::kDone;
  }
  RefuseTaken(arguments.output, arguments.force);
  standalone::WriteOptions options;
  options.overwrite = arguments.force;
  standalone::AtomicFile output(arguments.output, options);
  writeForm([&output](std::string_view bytes) { output.Write(bytes); });
  output.Commit();
  return ExitCode::kDone;
}

}  // namespace tool
