#include "file/DocumentReader.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <new>

#include "file/DocumentError.h"
#include "file/FeatureLines.h"
#include "file/FeatureReader.h"
#include "file/ForeignFile.h"
#include "file/ForwardLinks.h"
#include "file/HeaderReader.h"
#include "file/LineBlocks.h"
#include "file/LineFault.h"
#include "file/LineValues.h"

namespace standalone {
namespace {

// The parser looks for its best form on this processor when it is first asked, allocates for that, and ends
// the program where it gets no memory. Asked while the library is loaded, it never does so with a document at
// work.
[[maybe_unused]] const bool isParserChosen = !simdjson::get_active_implementation()->name().empty();

// Makes features of the lines, or leaves it to somebody else to take them.
class Reader {
 public:
  Reader(const std::filesystem::path& file, const ReadOptions& options, FeatureLines::Take take = {})
      : file_(file.string()),
        options_(options),
        take_(std::move(take)),
        blocks_(file_, options_),
        document_(Document::Create(file.filename().string())),
        likelyBytes_(blocks_.Text().LikelyBytes()),
        identity_(blocks_.Text().File().Identity()) {
    if (options_.compression != nullptr) *options_.compression = blocks_.Text().File().Stored();
  }

  DocumentPtr Read() {
    while (ReadOn()) continue;
    return document_;
  }

  /// Goes on with the next block; after the last one, with what only all of them show, and gives false.
  bool ReadOn() {
    InputFile& file = blocks_.Text().File();
    try {
      if (blocks_.Next(line_)) {
        if (!headerRead_) RefuseForeign(blocks_.Block());
        ReadBlock(blocks_.Block(), blocks_.ParserCapacity());
        if (options_.onProgress) options_.onProgress(file.BytesRead(), file.BytesTotal());
        return true;
      }
      if (!headerRead_) RefuseEmpty();
      CheckLinks();
    } catch (const DocumentError& error) {
      if (error.GetKind() == DocumentError::Kind::kInvalid) RefuseChanged(file);
      if (error.Line() != 0) blocks_.Text().RefuseDamaged();
      throw;
    }
    RefuseChanged(file);
    if (options_.digest != nullptr) *options_.digest = file.Digest();
    return false;
  }

  DocumentHeader ReadFirstLine() {
    while (!headerRead_ && blocks_.Next(line_)) {
      const std::string_view block = blocks_.Block();
      RefuseForeign(block);
      const std::size_t start = block.find_first_not_of(kBlanks);
      const std::size_t end = start == std::string_view::npos ? start : block.find('\n', start);
      ReadBlock(block.substr(0, end), blocks_.ParserCapacity());
    }
    if (!headerRead_) RefuseEmpty();
    return Header();
  }

  [[nodiscard]] bool HasHeader() const { return headerRead_; }
  [[nodiscard]] DocumentHeader Header() const { return {document_, static_cast<std::uint64_t>(announced_)}; }

 private:
  [[noreturn]] void Fail(std::size_t line, std::string_view problem, std::string_view advice,
                         DocumentError::Kind kind = DocumentError::Kind::kInvalid) const {
    throw DocumentError(kind, file_, line, problem, advice);
  }

  [[noreturn]] void RefuseEmpty() const {
    Fail(0, "the file is empty", "Give a document: a header line and one line per feature");
  }

  // Half of the one state and half of the other is no document, sound or not.
  void RefuseChanged(const InputFile& file) const {
    if (file.WasWrittenTo())
      throw ChangedMeanwhile(file_, "while it was being read another program wrote to it", "",
                             "Wait until that is done, then start again");
  }

  void RefuseForeign(std::string_view start) const {
    if (const ForeignFile* const known = ForeignFile::Of(start)) Fail(1, known->problem, known->advice);
  }

  // The first line of the block is `line_`; so is, in the end, the line after it.
  void ReadBlock(std::string_view block, std::size_t parserCapacity) {
    std::size_t next = 0;  // where the line after the last record begins
    // For `line_`: where it begins, whether its record was begun, and whether it was read to its end.
    std::size_t lineStart = 0;
    bool isBegun = false;
    bool isRead = false;
    try {
      ondemand::document_stream lines = parser_.iterate_many(block.data(), block.size(), parserCapacity);
      for (auto line = lines.begin(); line != lines.end(); ++line) {
        // The index of the first record does not count the blanks before it.
        const std::size_t at =
            std::min(block.find_first_not_of(kBlanks, line.current_index()), block.size() - 1);
        GoToRecord(block, next, at);
        lineStart = block.rfind('\n', at) + 1;
        isRead = false;
        ondemand::document_reference record = *line;
        isBegun = true;
        ReadRecord(record);
        isBegun = false;
        isRead = true;
        next = std::min(block.find('\n', at), block.size() - 1) + 1;
      }
      if (lines.truncated_bytes() != 0) throw simdjson::simdjson_error(simdjson::INCOMPLETE_ARRAY_OR_OBJECT);
      GoToRecord(block, next, block.size());
    } catch (const Unsound& unsound) {
      Fail(line_, unsound.problem, unsound.advice, unsound.kind);
    } catch (const simdjson::simdjson_error& error) {
      if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
      if (isRead) ++line_;
      FailIn(block.substr(isRead ? next : lineStart), isBegun);
    }
  }

  // The parser cannot read what stands there, from `line_` on.
  [[noreturn]] void FailIn(std::string_view rest, bool isBegun) {
    try {
      LocateFault(rest, isBegun, line_, [this](ondemand::document_reference record) { ReadRecord(record); });
    } catch (const Unsound& unsound) {
      Fail(line_, unsound.problem, unsound.advice, unsound.kind);
    }
  }

  void ReadRecord(ondemand::document_reference record) {
    ondemand::object object;
    if (record.get_object().get(object) != simdjson::SUCCESS)
      Refuse("the line is not a JSON object", kSeeFormat);
    if (!headerRead_) {
      ReadHeader(object);
    } else if (take_) {
      take_(object, line_);
      ++taken_;
    } else {
      features_.Read(object, line_);
    }
  }

  // Goes on from `next`, where the line after the last record begins (0 for none), to the record at `at`. The
  // parser would take records that share lines; then it would depend on where blocks end what is read.
  void GoToRecord(std::string_view block, std::size_t next, std::size_t at) {
    if (at < next) Refuse("the line has a second value", "Give every feature a line of its own");
    const std::string_view between = block.substr(next, at - next);
    if (between.find_first_not_of(kBlanks) != std::string_view::npos) {
      Refuse("the value continues in the next line", "Give every feature one line");
    }
    line_ += static_cast<std::size_t>(std::ranges::count(between, '\n')) + (next == 0 ? 0 : 1);
  }

  void ReadHeader(ondemand::object object) {
    announced_ = HeaderReader(*document_.Get()).Read(object);
    headerRead_ = true;
    if (options_.onHeader) options_.onHeader(*document_.Get(), identity_);
    // No file holds more features than this, whatever it announces.
    constexpr std::size_t kLeastBytesOfFeature = sizeof(R"({"id":1,"type":"T"})");
    document_->ExpectRead(
        std::min(static_cast<std::size_t>(announced_), likelyBytes_ / kLeastBytesOfFeature));
  }

  [[nodiscard]] std::int64_t FeatureCount() const {
    return static_cast<std::int64_t>(take_ ? taken_ : document_->FeatureCount());
  }

  void CheckCount(std::size_t lastLine) const {
    const std::int64_t found = FeatureCount();
    if (found == announced_) return;
    Fail(lastLine,
         fmt::format("the header announces {} feature{} but the file holds {}", announced_,
                     announced_ == 1 ? "" : "s", found),
         found < announced_
             ? "If it was cut off, restore it from a backup; if lines were taken out on purpose, "
               "correct \"features\" in the first line"
             : "If the added lines are wanted, correct \"features\" in the first line");
  }

  // Of several faults that show only now, the one in the first line is told. One that ends all others is that
  // lines are missing.
  void CheckLinks() {
    if (FeatureCount() < announced_) CheckCount(line_ - 1);
    if (const auto fault = forwardLinks_.Resolve(*document_.Get()))
      Fail(fault->line, fault->problem, fault->advice);
    CheckCount(line_ - 1);
  }

  std::string file_;
  const ReadOptions& options_;
  FeatureLines::Take take_;
  std::size_t taken_ = 0;  // features
  LineBlocks blocks_;
  DocumentPtr document_;
  ondemand::parser parser_;
  bool headerRead_ = false;
  std::int64_t announced_ = 0;
  std::size_t likelyBytes_;  // of the text; 0 when the file does not tell
  std::optional<FileIdentity> identity_;
  std::size_t line_ = 1;
  ForwardLinks forwardLinks_;
  FeatureReader features_{*document_.Get(), forwardLinks_};
};

}  // namespace

DocumentPtr ReadDocument(const std::filesystem::path& file, const ReadOptions& options) {
  return Reader(file, options).Read();
}

struct FeatureLines::Source : Reader {
  using Reader::Reader;
};

FeatureLines::FeatureLines(const std::filesystem::path& file, const ReadOptions& options, Take take)
    : source_(std::make_unique<Source>(file, options, std::move(take))) {}

FeatureLines::~FeatureLines() = default;

bool FeatureLines::HasHeader() const {
  return source_->HasHeader();
}

DocumentHeader FeatureLines::Header() const {
  return source_->Header();
}

bool FeatureLines::ReadOn() {
  return source_->ReadOn();
}

DocumentHeader ReadHeader(const std::filesystem::path& file) {
  ReadOptions options;
  options.blockBytes = 4096;  // about what a header takes
  return Reader(file, options).ReadFirstLine();
}

}  // namespace standalone
