#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "commands/CheckCommand.h"
#include "commands/CleanCommand.h"
#include "commands/DiffCommand.h"
#include "commands/IdentifiersCommand.h"
#include "commands/MergeCommand.h"
#include "commands/ReportCommand.h"
#include "commands/SheetCommand.h"
#include "commands/ShowCommand.h"
#include "commands/StatusCommand.h"
#include "commands/UpgradeCommand.h"
#include "document/Reading.h"
#include "settings/Arguments.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

ExitCode RunVerb(const Arguments& arguments) {
  if (const auto* const show = std::get_if<ShowArguments>(&arguments.verb)) return RunShow(*show);
  if (const auto* const upgrade = std::get_if<UpgradeArguments>(&arguments.verb))
    return RunUpgrade(*upgrade, arguments);
  if (const auto* const diff = std::get_if<DiffArguments>(&arguments.verb))
    return RunDiff(*diff, arguments.places);
  if (const auto* const clean = std::get_if<CleanArguments>(&arguments.verb)) return RunClean(*clean);
  if (const auto* const merge = std::get_if<MergeArguments>(&arguments.verb))
    return RunMerge(*merge, arguments.commandLine);
  if (const auto* const report = std::get_if<ReportArguments>(&arguments.verb))
    return RunReports(*report, arguments.places);
  const Installation installation(arguments.places);
  if (const auto* const status = std::get_if<StatusArguments>(&arguments.verb))
    return RunStatus(*status, installation.Manager());
  if (const auto* const check = std::get_if<CheckArguments>(&arguments.verb))
    return RunCheck(*check, arguments.places, installation.Manager());
  if (const auto* const sheet = std::get_if<SheetArguments>(&arguments.verb))
    return RunSheet(*sheet, arguments.places, installation.Manager());
  return RunIdentifiers(std::get<IdentifiersArguments>(arguments.verb), arguments.places, installation);
}

ExitCode RunChecked(const Arguments& arguments) {
  try {
    return RunVerb(arguments);
  } catch (const UsageError& error) {
    Complain(error.what());
    return ExitCode::kUsage;
  } catch (const standalone::DocumentError& error) {
    Complain(error.what());
    return ExitCodeOf(error);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {  // such as an upgrade library that cannot be loaded
    Complain(error.what());
    return ExitCode::kBadInput;
  }
}

// A file that this program opens must not come to stand where a stream was closed. Opened for reading, what
// is written there fails as before.
void FillStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0) static_cast<void>(open("/dev/null", O_RDONLY));
  }
}

ExitCode FinishOutput(ExitCode code) {
  FlushOutput();
  if (OutputError() == 0 && std::ferror(stdout) == 0) return code;
  const bool isKnown = OutputError() != 0;
  Complain(fmt::format("standard output cannot be written{}",
                       isKnown ? fmt::format(" ({})", std::strerror(OutputError())) : ""));
  return MoreSerious(code, ExitCode::kUnwritable);
}

ExitCode Run(int count, const char* const* texts) {
  Arguments arguments;
  if (const auto ended = ParseArguments(count, texts, arguments)) return FinishOutput(*ended);
  return FinishOutput(RunChecked(arguments));
}

}  // namespace
}  // namespace tool

int main(int count, char** texts) {
  tool::FillStandardStreams();
  // A file that may not grow is one that cannot be written, and told as that.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return static_cast<int>(tool::Run(count, texts));
  } catch (const std::bad_alloc&) {  // also when one was to be told of another error
    tool::ComplainOfMemory();
    return static_cast<int>(tool::ExitCode::kBadInput);
  }
}
