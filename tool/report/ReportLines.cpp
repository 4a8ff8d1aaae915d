#include "report/ReportLines.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>

#include "file/DocumentError.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

using simdjson::dom::element;
using standalone::DocumentError;

// What is long of a record, many times longer than the document, and read by nobody here: what stands behind
// the first of these that is there. The second is a field of the record, the first one of its "sheet".
constexpr std::string_view kDifferences = ",\"differences\":[";
constexpr std::string_view kChanges = ",\"changed\":[";

std::string TextIn(element object, const char* key) {
  std::string_view text;
  return object[key].get(text) == simdjson::SUCCESS ? std::string(text) : std::string();
}

std::string NameIn(element object, const char* key) {
  return NameFromUtf8(TextIn(object, key));
}

std::vector<std::string> NamesIn(element object, const char* key) {
  std::vector<std::string> names;
  simdjson::dom::array list;
  if (object[key].get(list) != simdjson::SUCCESS) return names;
  for (const element each : list) {
    std::string_view text;
    if (each.get(text) == simdjson::SUCCESS) names.push_back(NameFromUtf8(text));
  }
  return names;
}

std::vector<LibraryFile> LibrariesIn(element object) {
  std::vector<LibraryFile> libraries;
  simdjson::dom::array list;
  if (object["libraries"].get(list) != simdjson::SUCCESS) return libraries;
  for (const element each : list)
    libraries.push_back(
        {TextIn(each, "name"), TextIn(each, "version"), NameIn(each, "file"), TextIn(each, "sha256")});
  return libraries;
}

std::size_t NumberIn(element object, const char* key) {
  std::uint64_t number = 0;
  return object[key].get(number) == simdjson::SUCCESS ? number : 0;
}

std::optional<RecordedFile> FileIn(element record, const char* key) {
  element object;
  if (record[key].get(object) != simdjson::SUCCESS) return std::nullopt;
  RecordedFile file{.path = NameIn(object, "file"), .bytes = NumberIn(object, "bytes"), .modified = 0};
  if (object["modified"].get(file.modified) != simdjson::SUCCESS) return std::nullopt;
  return file;
}

ReportLine LineOf(element record) {
  ReportLine line;
  line.file = NameIn(record, "file");
  DocumentResult& result = line.result;
  result.verdict = VerdictNamed(TextIn(record, "verdict"));
  result.problem = TextIn(record, "problem");
  result.kept = NameIn(record, "kept");
  result.needsPerson = NumberIn(record, "thingsForPerson");
  result.dropped = NumberIn(record, "dropped");
  if (record["failsOnDrop"].get(result.failsOnDrop) != simdjson::SUCCESS) result.failsOnDrop = false;
  if (simdjson::dom::array list; record["needsPerson"].get(list) == simdjson::SUCCESS) {
    const std::string text = simdjson::minify(list);
    result.attention = text.substr(1, text.size() - 2);
  }
  if (element totals; record["totals"].get(totals) == simdjson::SUCCESS) {
    result.features = NumberIn(totals, "features");
    result.totals = {.concerned = NumberIn(totals, "concerned"),
                     .changed = NumberIn(totals, "changed"),
                     .created = NumberIn(totals, "created"),
                     .removed = NumberIn(totals, "removed"),
                     .failed = NumberIn(totals, "failed")};
  }
  line.input = FileIn(record, "input");
  line.output = FileIn(record, "result");
  return line;
}

// None for what is no head.
std::optional<ReportHead> HeadOf(element line) {
  if (TextIn(line, "record") != "run" || TextIn(line, "report") != "hvxupgrade" ||
      NumberIn(line, "version") != kReportVersion)
    return std::nullopt;
  return ReportHead{.tool = TextIn(line, "tool"),
                    .folder = NameIn(line, "folder"),
                    .arguments = NamesIn(line, "arguments"),
                    .origin = {.time = TextIn(line, "time"),
                               .host = NameIn(line, "host"),
                               .user = NameIn(line, "user"),
                               .commandLine = NamesIn(line, "commandLine"),
                               .libraries = LibrariesIn(line),
                               .language = TextIn(line, "language"),
                               .otherArguments = NamesIn(line, "otherArguments")}};
}

// The lines of a file, each with its line feed; one that is cut off is left out.
class Lines {
 public:
  explicit Lines(const std::filesystem::path& file)
      : file_(file), stream_(std::fopen(file.c_str(), "re"), &std::fclose) {
    if (stream_ == nullptr) Fail();
  }
  ~Lines() { std::free(line_); }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  bool Next(std::string_view& line) {
    const ssize_t got = getline(&line_, &capacity_, stream_.get());
    // What cannot be read must not be taken for the end, where the report goes on.
    if (std::ferror(stream_.get()) != 0 || (got < 0 && std::feof(stream_.get()) == 0)) Fail();
    if (got <= 0 || line_[got - 1] != '\n') return false;
    line = {line_, static_cast<std::size_t>(got)};
    return true;
  }

  [[noreturn]] void Fail() const {
    throw DocumentError(DocumentError::Kind::kUnreadable, file_.string(), 0,
                        fmt::format("the report cannot be read ({})", std::strerror(errno)),
                        "Check the path and the permissions");
  }

 private:
  std::filesystem::path file_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream_;
  char* line_ = nullptr;
  std::size_t capacity_ = 0;
};

// Quotes within texts are escaped: what reads like a key is one.
std::string ShortPartOf(std::string_view line) {
  if (const std::size_t end = line.find(kDifferences); end != std::string_view::npos)
    return std::string(line.substr(0, end)) + "}}";
  const std::size_t end = line.find(kChanges);
  return end == std::string_view::npos ? std::string(line) : std::string(line.substr(0, end)) + "}";
}

// The line as JSON; nothing when it is none. Lack of memory says nothing about the line.
std::optional<element> Parsed(simdjson::dom::parser& parser, std::string_view line) {
  element top;
  const auto error = parser.parse(line.data(), line.size()).get(top);
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  return error == simdjson::SUCCESS ? std::optional(top) : std::nullopt;
}

}  // namespace

bool HasFirstLine(const std::filesystem::path& file) {
  std::string_view line;
  return Lines(file).Next(line);
}

ReportHead ReadReportHead(const std::filesystem::path& file) {
  Lines lines(file);
  std::string_view line;
  simdjson::dom::parser parser;
  if (!lines.Next(line)) return {};
  const std::optional<element> top = Parsed(parser, line);
  return top ? HeadOf(*top).value_or(ReportHead()) : ReportHead();
}

ReadReportResult ReadReport(const std::filesystem::path& file,
                            const std::function<void(const ReportLine&)>& onRecord, std::string_view name) {
  ReadReportResult result;
  Lines lines(file);
  simdjson::dom::parser parser;
  std::size_t number = 0;
  const auto refuse = [&](std::string_view problem) {
    throw DocumentError(DocumentError::Kind::kInvalid, name.empty() ? file.string() : std::string(name),
                        number, problem, "Give the file of a --report of this program's upgrade");
  };
  std::int64_t offset = 0;
  for (std::string_view line; lines.Next(line);) {
    ++number;
    const std::string text = ShortPartOf(line);
    const std::optional<element> parsed = Parsed(parser, text);
    if (!parsed) refuse("this is not a line of a report");
    const element top = *parsed;
    const std::string kind = TextIn(top, "record");
    if (number == 1) {
      const auto head = HeadOf(top);
      if (!head) refuse("this is not a report of this release of hvxupgrade");
      result.head = *head;
      result.headLine = line;
    } else if (kind == "document") {
      if (result.isFinished) refuse("a record follows the end of the report");
      ReportLine record = LineOf(top);
      record.begin = offset;
      record.size = static_cast<std::int64_t>(line.size());
      record.text = text;
      onRecord(record);
    } else if (kind == "continued" || kind == "joined") {
      if (result.isFinished) refuse("a record follows the end of the report");
      result.otherLines.emplace_back(line);
    } else if (kind == "end") {
      result.isFinished = true;
      result.left = NumberIn(top, "left");
      result.exitCode = NumberIn(top, "exitCode");
      result.time = TextIn(top, "time");
    } else {
      refuse("this is not a line of a report");
    }
    offset += static_cast<std::int64_t>(line.size());
    if (!result.isFinished) result.end = offset;
  }
  if (number == 0) refuse("this is not a report of this release of hvxupgrade");
  return result;
}

}  // namespace tool
