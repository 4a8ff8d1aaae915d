#include "archive/ArchiveUpgrade.h"

#include <fmt/format.h>

#include <csignal>

#include "archive/Leftovers.h"
#include "archive/Loads.h"
#include "file/DocumentError.h"
#include "report/Attention.h"
#include "settings/Machine.h"
#include "terminal/Interruption.h"
#include "terminal/Progress.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;
using standalone::FileIdentity;

RunProgress::Kind KindOf(const UpgradeArguments& arguments) {
  if (arguments.quiet || arguments.many.progress == "none") return RunProgress::Kind::kNone;
  return arguments.many.progress == "plain" ? RunProgress::Kind::kPlain : RunProgress::Kind::kAuto;
}

std::optional<FileIdentity> IdentityOf(const Destination& destination) {
  return destination.file ? FileIdentity::Of(*destination.file) : std::nullopt;
}

// Whether a file was put where there was none, or another one.
bool IsAnother(const std::optional<FileIdentity>& now, const std::optional<FileIdentity>& before) {
  return now && !(before && now->IsSameFile(*before));
}

std::string HowItEnded(const WorkEnd& end) {
  if (end.kind == WorkEnd::Kind::kOutOfMemory) return "there is not enough memory";
  return end.cause.empty() ? "stopped" : end.cause;
}

std::string AdviceOnCrash(const WorkEnd& end, const PlaceNote& place) {
  // Nobody but another program, or the system, ends a worker so.
  if (end.cause.starts_with(fmt::format("signal {},", SIGKILL))) return {};
  const std::string advice = place.Advice();
  return (advice.empty() ? "Report that with the document" : advice) + "; ";
}

// What the worker could not say itself.
DocumentResult ResultOfEnd(const std::string& input, const WorkEnd& end, const PlaceNote& place) {
  DocumentResult result;
  switch (end.kind) {
    case WorkEnd::Kind::kTimedOut:
      result.verdict = Verdict::kTimedOut;
      result.problem = fmt::format(
          "{}: the upgrade timed out after {:.6g} s (--timeout raises the limit){}. Nothing was written; "
          "--trace shows the calls of the host until then",
          input, std::chrono::duration<double>(end.limit.value_or(Clock::duration::zero())).count(),
          place.Where());
      break;
    case WorkEnd::Kind::kInterrupted:
      result.verdict = Verdict::kInterrupted;
      break;
    case WorkEnd::Kind::kOutOfMemory:
      result.verdict = Verdict::kAborted;
      result.problem =
          fmt::format("{}: the upgrade was stopped: there is not enough memory{}. Nothing was written", input,
                      place.Where());
      break;
    case WorkEnd::Kind::kFinished:
    case WorkEnd::Kind::kCrashed:
      result.verdict = Verdict::kCrashed;
      result.problem = fmt::format(
          "{}: the upgrade crashed ({}){}. Its file is as it was. {}--trace shows the calls of the host "
          "until "
          "then",
          input, end.cause, place.Where(), AdviceOnCrash(end, place));
      break;
  }
  return result;
}

}  // namespace

ArchiveUpgrade::ArchiveUpgrade(const ArchiveTask& task, RunSummary& summary)
    : task_(task),
      summary_(summary),
      isSingle_(task.documents.size() == 1),
      progress_(isSingle_ ? RunProgress::Kind::kNone : KindOf(task.arguments)),
      processes_({.work = [this](std::size_t document,
                                 const RequestCommit& announce) { return Work(document, announce); },
                  .prepare = [this] { PrepareWorker(); },
                  .onStart = [this](WorkerNumber worker) { workers_[worker] = std::move(own_); },
                  .onForget = [this](WorkerNumber worker) { workers_.erase(worker); },
                  .onGive = [this](std::size_t document) { NoteGiven(document); },
                  .close = [this](std::size_t document, const WorkEnd& end) { return Close(document, end); },
                  .onTick = [this] { TellProgress(); }}) {}

RunEnd ArchiveUpgrade::Run(const std::vector<std::size_t>& documents) {
  loads_.resize(task_.documents.size());
  for (const std::size_t document : documents) {
    loads_[document] = LoadOf(task_.documents[document].file, task_.arguments.limits);
    state_.bytes += loads_[document].bytes;
  }
  if (task_.arguments.inPlace) KeepNamesOfOneFileApart(documents);
  state_.documents = documents.size();
  Supervisor::Settings settings = SettingsFor(task_.arguments.many, documents.size());
  if (task_.trace != nullptr) settings.workers = 1;  // calls of several documents would mix
  const RunEnd end = Supervisor(processes_, loads_, settings).Run(documents);
  if (end == RunEnd::kInterrupted && documents.size() == 1 && state_.done == 0)
    Complain(fmt::format("{}: interrupted. Nothing was written", task_.documents[documents.front()].file));
  return end;
}

// Where a file has several names, replacing what one of them stands for changes the file, which the worker at
// another name would take for the doing of another program.
void ArchiveUpgrade::KeepNamesOfOneFileApart(const std::vector<std::size_t>& documents) {
  std::map<std::pair<dev_t, ino_t>, std::uint32_t> files;
  for (const std::size_t document : documents) {
    const fs::path file(task_.documents[document].file);
    std::error_code error;
    if (fs::hard_link_count(file, error) <= 1 || error) continue;
    const auto identity = FileIdentity::Of(file);
    if (!identity) continue;
    const auto next = static_cast<std::uint32_t>(files.size() + 1);
    loads_[document].apart = files.try_emplace({identity->device, identity->inode}, next).first->second;
  }
}

void ArchiveUpgrade::PrepareWorker() {
  own_ = {.record = nullptr, .place = std::make_shared<PlaceNote>()};
  if (task_.report != nullptr) own_.record = task_.report->MakeRecordFile();
}

std::string ArchiveUpgrade::Work(std::size_t document, const RequestCommit& requestCommit) {
  workers_.clear();  // which are other workers'
  const UpgradeArguments& arguments = task_.arguments;
  const bool isRunOfMany = !isSingle_ || task_.isSearched;
  const Destination destination = task_.destinations.Of(document);
  const UpgradeTask task{
      .input = task_.documents[document].file,
      .destination = destination,
      .manager = task_.manager,
      .selection = task_.selection,
      .dryRun = arguments.dryRun,
      .quiet = arguments.quiet || !isSingle_ || arguments.many.progress != "auto",
      .strict = arguments.strict,
      .acceptFailures = arguments.acceptFailures,
      .failOnDrop = arguments.failOnDrop,
      .sheet = arguments.sheet,
      .retry = arguments.retry,
      .keepResult = arguments.keepResult,
      .skipsDone = isRunOfMany,
      .skipsCurrent = isRunOfMany && !(task_.report != nullptr && task_.report->IsGoingOn()),
      .tellsAll = !arguments.quiet && (isSingle_ || arguments.many.verbose),
      .verbose = arguments.many.verbose,
      .limits = arguments.limits,
      .record = own_.record.get(),
      .trace = task_.trace,
      .place = own_.place.get()};
  ResetPeakMemory();
  DocumentResult result = UpgradeDocument(task, requestCommit);
  result.peakMemory = PeakMemory();
  return Pack(result);
}

void ArchiveUpgrade::NoteGiven(std::size_t document) {
  atWork_[document] = {.read = FileIdentity::Of(fs::path(task_.documents[document].file)),
                       .destination = IdentityOf(task_.destinations.Of(document)),
                       .begun = Clock::now()};
}

bool ArchiveUpgrade::Close(std::size_t document, const WorkEnd& end) {
  const AtWork before = atWork_[document];
  atWork_.erase(document);
  progress_.Clear();
  const DocumentResult result = ResultOf(document, end, before);
  if (result.verdict == Verdict::kInterrupted) return true;
  summary_.Add(task_.documents[document].file, result);
  ++state_.done;
  state_.bytesDone += loads_[document].bytes;
  if (!result.IsComplete()) ++state_.needPerson;
  Tell(result);
  if (isSingle_) table_ = result.table;
  return task_.report == nullptr || AddToReport(document, end, before, result);
}

DocumentResult ArchiveUpgrade::ResultOf(std::size_t document, const WorkEnd& end,
                                        const AtWork& before) const {
  if (end.kind == WorkEnd::Kind::kFinished) return Unpack(end.result);
  Progress::ClearLine();
  const std::string& input = task_.documents[document].file;
  const Destination destination = task_.destinations.Of(document);
  if (destination.file) RemoveLeftovers(*destination.file, Processes::ProcessOf(end.worker));
  if (!end.committing || !IsAnother(IdentityOf(destination), before.destination))
    return ResultOfEnd(input, end, *workers_.at(end.worker).place);
  Complain(
      fmt::format("{}: the process ended ({}) after the result was in place, whole", input, HowItEnded(end)));
  return Unpack(end.ready);
}

bool ArchiveUpgrade::AddToReport(std::size_t document, const WorkEnd& end, const AtWork& before,
                                 const DocumentResult& result) {
  const std::string& input = task_.documents[document].file;
  const Destination destination = task_.destinations.Of(document);
  DocumentResult told = result;
  if (!result.Succeeded()) {
    told.attention = AttentionOf(input, result);
    told.needsPerson = 1;  // which is that
  }
  const auto worker = workers_.find(end.worker);
  RecordFile* const record =
      result.Succeeded() && worker != workers_.end() ? worker->second.record.get() : nullptr;
  try {
    task_.report->Append({.input = input,
                          .result = told,
                          .destination = destination,
                          .dryRun = task_.arguments.dryRun,
                          .read = before.read,
                          .wrote = IdentityOf(destination),
                          .seconds = std::chrono::duration<double>(Clock::now() - before.begun).count()},
                         record);
    return true;
  } catch (const standalone::DocumentError& error) {
    const bool wrote = summary_.Wrote();
    Complain(fmt::format(
        "{}: {}. The report has no record of {} and of what follows; {}", task_.arguments.ReportName(),
        error.Problem(), input,
        wrote ? "the lines above about documents are right, and results that were written are in place"
              : "no document was changed"));
    return false;
  }
}

void ArchiveUpgrade::Tell(const DocumentResult& result) const {
  const auto firstLine = [&result] { return result.summary.substr(0, result.summary.find('\n')); };
  if (!result.Succeeded()) {
    Complain(result.problem);
  } else if (task_.arguments.quiet) {
    if (!result.IsComplete()) Complain(Unpainted(firstLine()));
  } else if (isSingle_ || task_.arguments.many.verbose) {
    Say(result.summary);
    if (!isSingle_) Say(result.table);
  } else if (!result.IsComplete()) {
    Say(firstLine() + "\n");
  }
  FlushOutput();
}

void ArchiveUpgrade::TellProgress() {
  state_.atWork.clear();
  for (const auto& [document, at] : atWork_) state_.atWork.push_back(task_.documents[document].file);
  progress_.Update(state_);
}

}  // namespace tool
