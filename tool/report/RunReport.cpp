#include "report/RunReport.h"

#include <fcntl.h>
#include <fmt/ranges.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

#include "file/DocumentError.h"
#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::DocumentError;

// The same in every report, so that what a run left that was killed at once is known again.
const std::string kHeadBegins =
    fmt::format(R"({{"record":"run","report":"hvxupgrade","version":{})", kReportVersion);
constexpr std::chrono::seconds kBetweenSyncs{1};
constexpr std::chrono::seconds kUntilWorkersEnd{4};
constexpr std::chrono::milliseconds kBetweenLocks{20};

void AppendFile(fmt::memory_buffer& out, const std::string& path, const standalone::FileIdentity& identity,
                const std::string& sha256) {
  JsonObject object(out);
  object.Name("file", path);
  object.Number("bytes", static_cast<std::size_t>(identity.size));
  standalone::AppendJsonInteger(object.Key("modified"), identity.modified);
  if (!sha256.empty()) object.Text("sha256", sha256);
  object.Close();
}

void AppendRecord(fmt::memory_buffer& text, const DocumentRecord& record) {
  const DocumentResult& result = record.result;
  const Destination& destination = record.destination;
  JsonObject entry(text);
  entry.Text("record", "document");
  entry.Name("file", record.input);
  entry.Text("verdict", NameOf(result.verdict));
  if (!result.problem.empty()) entry.Text("problem", result.problem);
  if (!result.kept.empty()) entry.Name("kept", result.kept);
  if (!result.missing.empty()) entry.Value("missingLibraries", "[" + result.missing + "]");
  if (record.read) AppendFile(entry.Key("input"), record.input, *record.read, result.inputSha256);
  const bool leftAlone =
      result.verdict == Verdict::kHeldBack || (destination.inPlace && result.verdict != Verdict::kUpgraded);
  if (result.Succeeded() && destination.file && !record.dryRun && !leftAlone && record.wrote) {
    AppendFile(entry.Key("result"), destination.file->string(), *record.wrote, result.resultSha256);
    if (!destination.backupSuffix.empty()) entry.Name("backup", destination.Backup().string());
  }
  entry.Number("thingsForPerson", result.needsPerson);
  entry.Value("needsPerson", "[" + result.attention + "]");
  entry.Number("dropped", result.dropped);
  if (result.failsOnDrop) entry.Flag("failsOnDrop", true);
  JsonObject totals(entry.Key("totals"));
  totals.Number("features", result.features);
  AppendTotals(totals, result.totals);
  totals.Close();
  standalone::AppendRaw(entry.Key("seconds"), fmt::format("{:.3f}", record.seconds));
  if (result.peakMemory != 0) entry.Number("peakMemory", result.peakMemory);
}

void AppendOrigin(JsonObject& line, const RunOrigin& origin) {
  line.Text("time", origin.time);
  line.Name("host", origin.host);
  line.Name("user", origin.user);
  line.Names("commandLine", origin.commandLine);
  line.Names("otherArguments", origin.otherArguments);
  if (!origin.language.empty()) line.Text("language", origin.language);
  AppendLibraries(line, origin.libraries);
}

}  // namespace

std::string HeadLine(const ReportHead& head) {
  fmt::memory_buffer text;
  standalone::AppendRaw(text, kHeadBegins);
  JsonObject line(text, JsonObject::GoOn());
  line.Text("tool", head.tool);
  line.Name("folder", head.folder);
  line.Names("arguments", head.arguments);
  AppendOrigin(line, head.origin);
  line.Close();
  text.push_back('\n');
  return fmt::to_string(text);
}

std::string ContinuedLine(const RunOrigin& origin) {
  fmt::memory_buffer text;
  JsonObject line(text);
  line.Text("record", "continued");
  AppendOrigin(line, origin);
  line.Close();
  text.push_back('\n');
  return fmt::to_string(text);
}

std::string EndLine(const RunSummary& summary, ExitCode code, std::size_t left) {
  fmt::memory_buffer text;
  JsonObject line(text);
  line.Text("record", "end");
  line.Text("time", TimeNow());
  line.Text("words", summary.Verdict());
  line.Number("exitCode", static_cast<std::size_t>(code));
  line.Number("left", left);
  JsonObject totals(line.Key("totals"));
  totals.Number("documents", summary.Documents());
  totals.Number("features", summary.Features());
  AppendTotals(totals, summary.All());
  totals.Close();
  line.Close();
  text.push_back('\n');
  return fmt::to_string(text);
}

RunReport::RunReport(const std::filesystem::path& file, const ReportHead& head, bool anew,
                     ReportDetail detail, const std::function<void(const ReportLine&)>& onRecord)
    : file_(file), detail_(detail) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::none) {
    errno = error.value();
    Fail();
  }
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    Refuse("this is not a regular file", "Give the name of a file");
  if (!std::filesystem::exists(status) &&
      std::filesystem::is_symlink(std::filesystem::symlink_status(file, error)))
    Refuse("this is a link to a file that does not exist", "Give the report another name");
  bool isMade = status.type() == std::filesystem::file_type::not_found;
  try {
    isMade = Open(anew) || isMade;
    if (HoldsOnlyPartOfHead()) {  // or nothing: more was not there when a run was killed
      isTorn_ = true;
      AppendLine([&] { Write(HeadLine(head)); });
      Sync();
    } else {
      Continue(head, onRecord);
    }
  } catch (...) {
    if (isMade && descriptor_ >= 0 && end_ == 0) unlink(file_.c_str());
    close(descriptor_);
    throw;
  }
}

RunReport::RunReport(const ReportHead& head, ReportDetail detail)
    : file_("standard output"), detail_(detail) {
  AppendLine([&] { Write(HeadLine(head)); });
}

RunReport::~RunReport() {
  if (!IsStream()) close(descriptor_);
}

// True when it took the place of another. That is locked until the new one is, so that a run that is writing
// it is noticed.
bool RunReport::Open(bool anew) {
  OpenAndLock();
  if (!anew || lseek(descriptor_, 0, SEEK_END) == 0) return false;
  const int replaced = std::exchange(descriptor_, -1);
  try {
    if (unlink(file_.c_str()) != 0) Fail();
    OpenAndLock();
  } catch (...) {
    close(replaced);
    throw;
  }
  close(replaced);
  return true;
}

// Workers share the lock. Those of a run that was killed end soon.
bool RunReport::Lock() const {
  const auto until = std::chrono::steady_clock::now() + kUntilWorkersEnd;
  while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    if (errno == ENOSYS || errno == EOPNOTSUPP || errno == ENOLCK)
      return true;  // a file system without locks
    if (errno != EWOULDBLOCK) Fail();
    if (std::chrono::steady_clock::now() >= until) return false;
    std::this_thread::sleep_for(kBetweenLocks);
  }
  return true;
}

void RunReport::OpenAndLock() {
  descriptor_ = open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_APPEND, 0666);
  if (descriptor_ < 0) Fail();
  if (Lock() && IsInPlace()) return;
  close(std::exchange(descriptor_, -1));
  Refuse("another run is writing this report", "Wait for its end, or give the report another name");
}

bool RunReport::IsInPlace() const {
  errno = 0;
  const auto here = standalone::FileIdentity::Of(descriptor_);
  const auto there = standalone::FileIdentity::Of(file_);
  if ((!here || !there) && errno != 0 && errno != ENOENT && errno != ENOTDIR) Fail();
  return here && there && here->IsSameFile(*there);
}

bool RunReport::HoldsOnlyPartOfHead() const {
  std::string there(kHeadBegins.size(), '\0');
  const ssize_t got = pread(descriptor_, there.data(), there.size(), 0);
  if (got < 0) Fail();
  there.resize(static_cast<std::size_t>(got));
  return kHeadBegins.starts_with(there) && (there.size() < kHeadBegins.size() || !HasFirstLine(file_));
}

void RunReport::Continue(const ReportHead& head, const std::function<void(const ReportLine&)>& onRecord) {
  // Nothing is taken over from the report of something else.
  const ReportHead there = ReadReportHead(file_);
  if (there.tool.empty()) Refuse("the file exists already, and is not a report of this program");
  if (there.tool != head.tool)
    Refuse(fmt::format("the report belongs to another release of this program ({})", there.tool));
  if (!there.IsOfCommand(head))
    Refuse(fmt::format("the report belongs to another command (in {}: {})", there.folder,
                       fmt::join(there.arguments, " ")));
  if (!there.origin.HasLibrariesOf(head.origin)) {
    std::vector<std::string> libraries;
    for (const LibraryFile& each : there.origin.libraries)
      libraries.push_back(
          fmt::format("{} {} in {}, SHA-256 {}", each.name, each.version, each.file, each.sha256));
    Refuse(fmt::format("the report belongs to a run with other upgrade libraries ({})",
                       fmt::join(libraries, "; ")),
           "Resume with those, give the report another name, or --force to replace it");
  }
  goesOn_ = true;
  end_ = ReadReport(file_, onRecord).end;
  if (ftruncate(descriptor_, end_) != 0) Fail();
  AppendLine([&] { Write(ContinuedLine(head.origin)); });
  Sync();
}

std::unique_ptr<RecordFile> RunReport::MakeRecordFile() const {
  return std::make_unique<RecordFile>(
      IsStream() ? std::filesystem::temp_directory_path() / "hvxupgrade-report" : file_, detail_);
}

void RunReport::Append(const DocumentRecord& record, const RecordFile* rest) {
  fmt::memory_buffer text;
  AppendRecord(text, record);
  AppendLine([&] {
    Write({text.data(), text.size()});
    if (rest != nullptr) TakeOver(*rest);
    Write("}\n");
  });
  if (std::chrono::steady_clock::now() - synced_ >= kBetweenSyncs) Sync();
}

// What was written of a line that does not get whole goes again; until then none follows.
void RunReport::AppendLine(const std::function<void()>& write) {
  if (IsStream()) {  // what was put there stays
    if (std::exchange(isTorn_, true)) Fail();
    write();
    isTorn_ = false;
    return;
  }
  const std::int64_t before = end_;
  if (isTorn_ && ftruncate(descriptor_, before) != 0) Fail();
  isTorn_ = true;
  try {
    write();
  } catch (...) {
    end_ = before;
    isTorn_ = ftruncate(descriptor_, before) != 0;
    throw;
  }
  isTorn_ = false;
}

void RunReport::Finish(const RunSummary& summary, ExitCode code, std::size_t left) {
  if (!IsStream() && !IsInPlace()) {
    throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0,
                        "the report was removed or replaced while it was written",
                        "Run the same command again");
  }
  AppendLine([&] { Write(EndLine(summary, code, left)); });
  Sync();
}

void RunReport::Write(std::string_view bytes) {
  if (IsStream()) {
    const bool isWhole = Put(stdout, bytes);
    FlushOutput();
    if (isWhole && OutputError() == 0) return;
    errno = OutputError() == 0 ? EPIPE : OutputError();
    Fail();
  }
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail();
    bytes.remove_prefix(static_cast<std::size_t>(written));
    end_ += written;
  }
}

void RunReport::TakeOver(const RecordFile& rest) {
  off_t from = 0;
  std::array<char, std::size_t{1} << 16U> block{};
  for (;;) {
    const ssize_t got = pread(rest.Descriptor(), block.data(), block.size(), from);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail();
    if (got == 0) return;
    Write({block.data(), static_cast<std::size_t>(got)});
    from += got;
  }
}

void RunReport::Sync() {
  if (IsStream()) return;
  if (fdatasync(descriptor_) != 0 && errno != EINVAL && errno != EROFS) Fail();
  synced_ = std::chrono::steady_clock::now();
}

void RunReport::Fail() const {
  throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0,
                      fmt::format("the report cannot be written ({})", std::strerror(errno)),
                      "Check the folder, its permissions and the room on its disk");
}

void RunReport::Refuse(std::string_view problem, std::string_view advice) const {
  throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0, problem, advice);
}

}  // namespace tool
