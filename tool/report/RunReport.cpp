#include "report/RunReport.h"

#include <fcntl.h>
#include <fmt/ranges.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "file/DocumentError.h"
#include "report/JsonOutput.h"

namespace tool {
namespace {

using standalone::DocumentError;

constexpr std::chrono::seconds kBetweenSyncs{1};

void AppendFile(fmt::memory_buffer& out, const std::string& path, const standalone::FileIdentity& identity) {
  JsonObject object(out);
  object.Text("file", path);
  object.Number("bytes", static_cast<std::size_t>(identity.size));
  standalone::AppendJsonInteger(object.Key("modified"), identity.modified);
  object.Close();
}

void AppendRecord(fmt::memory_buffer& text, const DocumentRecord& record) {
  const DocumentResult& result = record.result;
  const Destination& destination = record.destination;
  JsonObject entry(text);
  entry.Text("record", "document");
  entry.Text("file", record.input);
  entry.Text("verdict", NameOf(result.verdict));
  if (!result.problem.empty()) entry.Text("problem", result.problem);
  if (!result.kept.empty()) entry.Text("kept", result.kept);
  if (record.read) AppendFile(entry.Key("input"), record.input, *record.read);
  const bool leftAlone =
      result.verdict == Verdict::kHeldBack || (destination.inPlace && result.verdict != Verdict::kUpgraded);
  if (result.Succeeded() && destination.file && !record.dryRun && !leftAlone && record.wrote) {
    AppendFile(entry.Key("result"), destination.file->string(), *record.wrote);
    if (!destination.backupSuffix.empty()) entry.Text("backup", destination.Backup().string());
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

}  // namespace

std::string HeadLine(const ReportHead& head) {
  fmt::memory_buffer text;
  JsonObject line(text);
  line.Text("record", "run");
  line.Text("report", "hvxupgrade");
  line.Number("version", kReportVersion);
  line.Text("tool", head.tool);
  line.Text("folder", head.folder);
  line.Texts("arguments", head.arguments);
  line.Close();
  text.push_back('\n');
  return fmt::to_string(text);
}

std::string EndLine(const RunSummary& summary, ExitCode code, std::size_t left) {
  fmt::memory_buffer text;
  JsonObject line(text);
  line.Text("record", "end");
  line.Text("verdict", summary.Verdict());
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
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    Refuse("this is not a regular file");
  if (!std::filesystem::exists(status) &&
      std::filesystem::is_symlink(std::filesystem::symlink_status(file, error)))
    Refuse("this is a link to a file that does not exist");
  if (anew) unlink(file.c_str());
  descriptor_ = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_APPEND, 0666);
  if (descriptor_ < 0) Fail();
  if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    const bool isTaken = errno == EWOULDBLOCK;
    const int cause = errno;
    close(descriptor_);
    descriptor_ = -1;
    errno = cause;
    if (isTaken) Refuse("another run is writing this report");
    Fail();
  }
  try {
    if (lseek(descriptor_, 0, SEEK_END) > 0) {
      Continue(head, onRecord);
      return;
    }
    Write(HeadLine(head));
    Sync();
  } catch (...) {
    close(descriptor_);
    throw;
  }
}

RunReport::~RunReport() {
  close(descriptor_);
}

void RunReport::Continue(const ReportHead& head, const std::function<void(const ReportLine&)>& onRecord) {
  // Nothing is taken over from the report of something else.
  const ReportHead there = ReadReportHead(file_);
  if (there.tool.empty()) Refuse("the file exists already, and is no report of this program");
  if (there.tool != head.tool)
    Refuse(fmt::format("the report is of another release of this program ({})", there.tool));
  if (there.folder != head.folder || there.arguments != head.arguments)
    Refuse(fmt::format("the report is of another command (in {}: {})", there.folder,
                       fmt::join(there.arguments, " ")));
  goesOn_ = true;
  end_ = ReadReport(file_, onRecord).end;
  if (ftruncate(descriptor_, end_) != 0) Fail();
}

std::unique_ptr<RecordFile> RunReport::MakeRecordFile() const {
  return std::make_unique<RecordFile>(file_, detail_);
}

void RunReport::Append(const DocumentRecord& record, const RecordFile* rest) {
  fmt::memory_buffer text;
  AppendRecord(text, record);
  const std::int64_t before = end_;
  try {
    Write({text.data(), text.size()});
    if (rest != nullptr) TakeOver(*rest);
    Write("}\n");
  } catch (const DocumentError&) {
    end_ = before;
    if (ftruncate(descriptor_, before) != 0)
      end_ = before;  // a cut-off line at the end is left out by readers
    throw;
  }
  if (std::chrono::steady_clock::now() - synced_ >= kBetweenSyncs) Sync();
}

void RunReport::Finish(const RunSummary& summary, ExitCode code, std::size_t left) {
  const auto here = standalone::FileIdentity::Of(descriptor_);
  const auto there = standalone::FileIdentity::Of(file_);
  if (!here || !there || !here->IsSameFile(*there)) {
    throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0,
                        "the report was removed or replaced while it was written",
                        "Run the same command again");
  }
  Write(EndLine(summary, code, left));
  Sync();
}

void RunReport::Write(std::string_view bytes) {
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
  if (fdatasync(descriptor_) != 0 && errno != EINVAL && errno != EROFS) Fail();
  synced_ = std::chrono::steady_clock::now();
}

void RunReport::Fail() const {
  throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0,
                      fmt::format("the report cannot be written ({})", std::strerror(errno)),
                      "Check the folder, its permissions and the room on its disk");
}

void RunReport::Refuse(std::string_view problem) const {
  throw DocumentError(DocumentError::Kind::kUnwritable, file_.string(), 0, problem,
                      "Give the report another name, or --force to begin it anew");
}

}  // namespace tool
