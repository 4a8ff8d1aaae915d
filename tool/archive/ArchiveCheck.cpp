#include "archive/ArchiveCheck.h"

#include <fmt/ranges.h>

#include <numeric>

#include "archive/Loads.h"
#include "document/DocumentCheck.h"
#include "document/Reading.h"
#include "file/DocumentError.h"
#include "record/Packing.h"
#include "report/CheckText.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

RunProgress::Kind KindOf(const CheckArguments& arguments, std::size_t documents) {
  if (documents == 1 || arguments.many.progress == "none") return RunProgress::Kind::kNone;
  return arguments.many.progress == "plain" ? RunProgress::Kind::kPlain : RunProgress::Kind::kAuto;
}

// A check changes nothing, and who pipes a document into it may be slow.
constexpr Limits kAsLongAsItTakes{.seconds = 0, .features = {}, .megabytes = {}, .unpacked = {}};

std::string ProblemOf(const std::string& file, const WorkEnd& end) {
  if (end.kind == WorkEnd::Kind::kOutOfMemory)
    return fmt::format("{}: the check was stopped: there is not enough memory", file);
  return fmt::format("{}: the check crashed ({})", file, end.cause);
}

}  // namespace

ArchiveCheck::ArchiveCheck(const CheckArguments& arguments, const standalone::VersionManager& manager,
                           const std::vector<GivenDocument>& documents)
    : arguments_(arguments),
      manager_(manager),
      documents_(documents),
      entries_(arguments.WantsEntries() ? documents.size() : 0),
      progress_(KindOf(arguments, documents.size())),
      processes_({.work = [this](std::size_t document, const RequestCommit&) { return Work(document); },
                  .prepare = [] {},
                  .onStart = [](WorkerNumber) {},
                  .onForget = [](WorkerNumber) {},
                  .onGive = [this](std::size_t document) { atWork_[document] = true; },
                  .close = [this](std::size_t document, const WorkEnd& end) { return Close(document, end); },
                  .onTick = [this] { TellProgress(); }}) {}

RunEnd ArchiveCheck::Run() {
  for (const GivenDocument& document : documents_) {
    loads_.push_back(LoadOf(document.file, kAsLongAsItTakes));
    state_.bytes += loads_.back().bytes;
  }
  state_.documents = documents_.size();
  std::vector<std::size_t> all(documents_.size());
  std::iota(all.begin(), all.end(), 0);
  return Supervisor(processes_, loads_, SettingsFor(arguments_.many, documents_.size())).Run(all);
}

std::string ArchiveCheck::Work(std::size_t document) const {
  const std::string& file = documents_[document].file;
  CheckOutcome outcome;
  fmt::memory_buffer text;
  fmt::memory_buffer entry;
  try {
    const CheckedDocument checked = CheckDocument(file, manager_, documents_.size() == 1);
    outcome.isChecked = true;
    outcome.code = checked.Code();
    outcome.isNotLoaded = checked.isRefused && checked.unknown.AreOnlyNotLoaded();
    AppendHeadline(text, checked);
    outcome.headline = fmt::to_string(text);
    text.clear();
    if (!arguments_.json) AppendText(text, checked, arguments_.all);
    if (arguments_.WantsEntries()) AppendJson(entry, checked);
  } catch (const standalone::DocumentError& error) {
    outcome.code = ExitCodeOf(error);
    outcome.problem = error.what();
    AppendUnreadable(entry, file, VerdictOf(error), error.what());
  }
  outcome.entry = fmt::to_string(entry);
  outcome.text = fmt::to_string(text);
  return PackFields(outcome);
}

bool ArchiveCheck::Close(std::size_t document, const WorkEnd& end) {
  atWork_.erase(document);
  progress_.Clear();
  if (end.kind == WorkEnd::Kind::kInterrupted) return true;
  CheckOutcome outcome;
  if (end.kind == WorkEnd::Kind::kFinished) {
    outcome = UnpackFields<CheckOutcome>(end.result);
  } else {
    outcome.problem = ProblemOf(documents_[document].file, end);
    fmt::memory_buffer entry;
    const bool isOutOfMemory = end.kind == WorkEnd::Kind::kOutOfMemory;
    AppendUnreadable(entry, documents_[document].file, isOutOfMemory ? Verdict::kAborted : Verdict::kCrashed,
                     outcome.problem);
    outcome.entry = fmt::to_string(entry);
  }
  ++state_.done;
  state_.bytesDone += loads_[document].bytes;
  if (outcome.code != ExitCode::kDone && outcome.code != ExitCode::kUpgradeNeeded) ++state_.needPerson;
  code_ = MoreSerious(code_, outcome.code);
  if (outcome.isNotLoaded) {
    ++notLoaded_;
  } else if (outcome.isChecked) {
    ++counts_[outcome.code];
  } else {
    ++unchecked_;
  }
  if (arguments_.WantsEntries()) entries_[document] = outcome.entry;
  Tell(outcome);
  return true;
}

void ArchiveCheck::Tell(const CheckOutcome& outcome) const {
  if (!outcome.isChecked) {
    Complain(outcome.problem);
  } else if (arguments_.json) {
    return;
  } else if (documents_.size() == 1 || arguments_.many.verbose || arguments_.all) {
    Say(outcome.text);
  } else if (outcome.code != ExitCode::kDone && outcome.code != ExitCode::kUpgradeNeeded) {
    Say(outcome.headline);
  }
  FlushOutput();
}

void ArchiveCheck::TellProgress() {
  state_.atWork.clear();
  for (const auto& [document, at] : atWork_) state_.atWork.push_back(documents_[document].file);
  progress_.Update(state_);
}

std::string ArchiveCheck::Verdict() const {
  constexpr std::pair<ExitCode, const char*> kWords[] = {
      {ExitCode::kDone, "conform"},
      {ExitCode::kUpgradeNeeded, "need an upgrade"},
      {ExitCode::kNeedsPerson, "need a person"},
      {ExitCode::kNewer, "newer or with unknown upgrades"},
  };
  std::vector<std::string> parts;
  for (const auto& [code, words] : kWords) {
    const auto count = counts_.find(code);
    if (count != counts_.end()) parts.push_back(fmt::format("{} {}", count->second, words));
  }
  if (notLoaded_ != 0)
    parts.push_back(fmt::format("{} upgraded by a library that is not loaded", notLoaded_));
  if (unchecked_ != 0) parts.push_back(fmt::format("{} unreadable or broken", unchecked_));
  return fmt::format("{}: {}", Count(state_.done, "document"), fmt::join(parts, ", "));
}

}  // namespace tool
