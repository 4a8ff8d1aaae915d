#include <algorithm>
#include <exception>
#include <unordered_map>

#include "file/DocumentError.h"
#include "file/FeatureLines.h"
#include "file/FeatureParser.h"
#include "hvxupgrade/Reader.h"
#include "interface/Headers.h"
#include "interface/Translation.h"
#include "model/KeyedHash.h"

namespace hvxupgrade {
namespace {

namespace ondemand = simdjson::ondemand;

// Makes a value of its own of each line. Strings and lists of the line that was in its place before are used
// again.
class LineMaker : private standalone::FeatureParser<LineMaker, Value> {
 public:
  void Make(ondemand::object object, FeatureLine& line) {
    line_ = &line;
    line.name.clear();
    line.alias.clear();
    line.father = line.container = Link::kNothing;
    line.isUpToDate = true;
    line.physicalType.clear();
    count_ = 0;
    if (!places_.empty()) places_ = {};  // with its room, which costs time to be cleared
    Parse(object);
    line.attributes.resize(count_);
  }

 private:
  friend FeatureParser;

  void TakeId(FeatureId id) { line_->id = id; }
  void TakeType(std::string_view name) { line_->lateType = name; }
  void TakeName(std::string_view text) { line_->name = text; }
  void TakeAlias(std::string_view text) { line_->alias = text; }
  void TakePhysicalType(std::string_view text) { line_->physicalType = text; }
  void TakeUpToDate(bool upToDate) { line_->isUpToDate = upToDate; }
  void TakeFather(FeatureId to) { line_->father = to; }
  void TakeContainer(FeatureId to) { line_->container = to; }

  void BeginAttributes() {}
  bool AddAttribute(std::string_view key) {
    if (FindAttribute(key) != nullptr) return false;
    if (count_ == line_->attributes.size()) line_->attributes.emplace_back();
    FeatureLine::Attribute& added = line_->attributes[count_];
    added.key = key;
    added.mode = 0;
    ++count_;
    return true;
  }
  void TakeAttribute(Value value) { line_->attributes[count_ - 1].value = std::move(value); }
  void EndAttributes() {}

  // Most features have a few attributes. Of many, their places are kept; nobody can make that slow.
  FeatureLine::Attribute* FindAttribute(std::string_view key) {
    constexpr std::size_t kFew = 48;
    const std::span<FeatureLine::Attribute> met = std::span(line_->attributes).first(count_);
    if (count_ <= kFew) {
      const auto found = std::ranges::find(met, key, &FeatureLine::Attribute::key);
      return found == met.end() ? nullptr : &*found;
    }
    for (std::size_t i = places_.size(); i < count_; ++i) places_.emplace(met[i].key, i);
    const auto found = places_.find(key);
    return found == places_.end() ? nullptr : &met[found->second];
  }

  void BeginModes() { marked_.assign(count_, false); }
  bool MarkMode(const FeatureLine::Attribute& attribute) {
    const auto place = static_cast<std::size_t>(&attribute - line_->attributes.data());
    if (marked_[place]) return false;
    marked_[place] = true;
    return true;
  }

  static Value OfText(std::string_view text) { return text; }
  static Value OfInteger(std::int64_t number) { return number; }
  static Value OfReal(double number) { return number; }
  static Value OfFlag(bool flag) { return flag; }
  static Value OfNothing() { return {}; }
  static Value OfLink(FeatureId to) { return Link{to}; }
  static List BeginList() { return {}; }
  static void AddEntry(List& list, Value entry) { list.push_back(std::move(entry)); }
  static Value EndList(List& list) { return std::move(list); }

  FeatureLine* line_ = nullptr;
  std::size_t count_ = 0;  // of its attributes so far
  std::unordered_map<std::string, std::size_t, standalone::KeyedHash, std::equal_to<>> places_;
  std::vector<bool> marked_;
};

// About how much of a document is made into lines at a time, which then wait to be fetched.
constexpr std::size_t kBlockBytes = std::size_t{1} << 16;

}  // namespace

class LineReader::State {
 public:
  State(const std::filesystem::path& name, const ReadOptions& options)
      : file_(name), options_(options), reading_(Reading()), lines_(name, reading_, Take()) {
    while (!lines_.HasHeader()) ReadOn();
    header_ = HeaderOf(lines_.Header());
  }

  [[nodiscard]] const std::filesystem::path& File() const { return file_; }
  [[nodiscard]] const Header& GetHeader() const { return header_; }
  [[nodiscard]] std::size_t LineNumber() const { return lineNumber_; }

  bool Next(FeatureLine& line) {
    while (next_ == count_ && mayGoOn_) ReadOn();
    if (next_ < count_) {
      std::swap(line, waiting_[next_].line);
      lineNumber_ = waiting_[next_++].number;
      return true;
    }
    if (fault_ != nullptr) std::rethrow_exception(fault_);
    return false;
  }

 private:
  struct Waiting {
    FeatureLine line;
    std::size_t number = 0;
  };

  [[nodiscard]] standalone::ReadOptions Reading() const {
    standalone::ReadOptions reading = ReadingBy(options_);
    reading.blockBytes = kBlockBytes;
    return reading;
  }

  standalone::FeatureLines::Take Take() {
    return [this](ondemand::object object, std::size_t number) {
      if (count_ == waiting_.size()) waiting_.emplace_back();
      maker_.Make(object, waiting_[count_].line);
      waiting_[count_].number = number;
      ++count_;
    };
  }

  // A fault of the document is told when the lines before it were fetched, one of its header at once, and so
  // is whatever else ends the reading.
  void ReadOn() {
    next_ = count_ = 0;
    try {
      mayGoOn_ = lines_.ReadOn();
    } catch (const standalone::DocumentError&) {
      End();
      if (!lines_.HasHeader()) throw;
    } catch (...) {
      End();
      next_ = count_ = 0;
      throw;
    }
  }
  void End() {
    mayGoOn_ = false;
    fault_ = std::current_exception();
  }

  std::filesystem::path file_;
  ReadOptions options_;
  standalone::ReadOptions reading_;
  Header header_;
  LineMaker maker_;
  std::vector<Waiting> waiting_;
  std::size_t count_ = 0;  // of what waits
  std::size_t next_ = 0;   // of these, to be fetched
  std::size_t lineNumber_ = 1;
  bool mayGoOn_ = true;
  std::exception_ptr fault_;
  standalone::FeatureLines lines_;
};

LineReader::LineReader(const std::filesystem::path& file, const ReadOptions& options)
    : state_(Translated(Error::Kind::kUnreadable, file, [&] {
        RequireNamed(file, Error::Kind::kUnreadable);
        return std::make_unique<State>(file, options);
      })) {}

LineReader::~LineReader() = default;
LineReader::LineReader(LineReader&&) noexcept = default;
LineReader& LineReader::operator=(LineReader&&) noexcept = default;

const Header& LineReader::GetHeader() const {
  return state_->GetHeader();
}

bool LineReader::Next(FeatureLine& line) {
  return Translated(Error::Kind::kUnreadable, state_->File(), [&] { return state_->Next(line); });
}

std::size_t LineReader::LineNumber() const {
  return state_->LineNumber();
}

}  // namespace hvxupgrade
