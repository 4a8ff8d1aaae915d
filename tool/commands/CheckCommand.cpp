#include "commands/CheckCommand.h"

#include <csignal>

#include "archive/ArchiveCheck.h"
#include "archive/DocumentSearch.h"
#include "page/CheckPage.h"
#include "page/PageFile.h"
#include "report/JsonOutput.h"
#include "terminal/Interruption.h"
#include "terminal/Terminal.h"

namespace tool {

ExitCode RunCheck(const CheckArguments& arguments, const Places& places,
                  const standalone::VersionManager& manager) {
  if (!arguments.html.empty()) page::CheckPlace(arguments.html, false);
  Interruption::HoldBack();
  std::signal(SIGPIPE, SIG_IGN);
  const FoundDocuments found = FindDocuments(arguments.sources);
  ExitCode code = TellProblems(found);
  ArchiveCheck check(arguments, manager, found.documents);
  const RunEnd end = check.Run();
  code = MoreSerious(code, check.Code());
  if (end == RunEnd::kInterrupted) {
    Complain(fmt::format("interrupted; {} not checked", Count(check.Left(), "document")));
    code = ExitCode::kInterrupted;
    if (!arguments.WantsEntries()) return code;
  } else if (end != RunEnd::kDone) {
    Complain(fmt::format("{} not checked, since {}", Count(check.Left(), "document"), check.StartFailure()));
    code = MoreSerious(code, ExitCode::kNeedsPerson);
  }
  if (!arguments.html.empty()) {
    page::PutPage(arguments.html, false, [&](const Writer& write) {
      page::WriteCheckPage(check.Entries(), check.Left(), manager, Explanations(DataFolder(places)), write);
    });
  }
  if (!arguments.json) {
    if (found.documents.size() > 1) Say(check.Verdict() + "\n");
    if (check.HidesFindings())
      Say("  What is found in each: --verbose, or the check of that document alone\n");
    if (!arguments.html.empty()) Say(fmt::format("  Page: {}\n", Printable(arguments.html)));
    return code;
  }
  fmt::memory_buffer out;
  JsonObject top(out);
  top.Text("check", "hvxupgrade");
  top.Number("version", kJsonVersion);
  JsonList documents(top.Key("documents"));
  for (const std::string& entry : check.Entries()) {
    if (!entry.empty()) standalone::AppendRaw(documents.Entry(), entry);
  }
  documents.Close();
  top.Number("left", check.Left());
  top.Flag("interrupted", end == RunEnd::kInterrupted);
  top.Close();
  out.push_back('\n');
  Say({out.data(), out.size()});
  return code;
}

}  // namespace tool
