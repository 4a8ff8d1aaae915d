#include "file/DocumentReader.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <memory_resource>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "file/DocumentError.h"
#include "file/DocumentFormat.h"
#include "file/ForeignFile.h"
#include "file/LineBlocks.h"
#include "file/LineValues.h"
#include "model/LargePages.h"

namespace standalone {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The parser looks for its best form on this processor when it is first asked, allocates for that, and ends
// the program where it gets no memory. Asked while the library is loaded, it never does so with a document at
// work.
[[maybe_unused]] const bool isParserChosen = !simdjson::get_active_implementation()->name().empty();

class Reader {
 public:
  Reader(const std::filesystem::path& file, const ReadOptions& options)
      : file_(file.string()), options_(options), document_(Document::Create(file.filename().string())) {}

  DocumentPtr Read() {
    LineBlocks blocks(file_, options_.blockBytes, options_.maxLineBytes);
    bytesTotal_ = blocks.BytesTotal();
    identity_ = blocks.Identity();
    while (blocks.Next(line_)) {
      if (!headerRead_) RefuseForeign(blocks.Block());
      ReadBlock(blocks.Block(), blocks.ParserCapacity());
      if (options_.onProgress) options_.onProgress(blocks.BytesRead(), blocks.BytesTotal());
    }
    if (!headerRead_) RefuseEmpty();
    CheckLinks();
    return document_;
  }

  DocumentHeader ReadFirstLine() {
    constexpr std::size_t kBlockBytes = 4096;  // about what a header takes
    LineBlocks blocks(file_, kBlockBytes, options_.maxLineBytes);
    while (!headerRead_ && blocks.Next(line_)) {
      const std::string_view block = blocks.Block();
      RefuseForeign(block);
      const std::size_t start = block.find_first_not_of(kBlanks);
      const std::size_t end = start == std::string_view::npos ? start : block.find('\n', start);
      ReadBlock(block.substr(0, end), blocks.ParserCapacity());
    }
    if (!headerRead_) RefuseEmpty();
    return {document_, static_cast<std::uint64_t>(announced_)};
  }

 private:
  // A link to a feature that stands further down in the file.
  struct ForwardLink {
    Value* value;     // where the link goes, or
    Feature** place;  // the father or container
    Feature* from;
    FeatureId to;
    std::size_t line;
  };

  [[noreturn]] void Fail(std::size_t line, std::string_view problem, std::string_view advice,
                         DocumentError::Kind kind = DocumentError::Kind::kInvalid) const {
    throw DocumentError(kind, file_, line, problem, advice);
  }

  [[noreturn]] void RefuseEmpty() const {
    Fail(0, "the file is empty", "Give a document: a header line and one line per feature");
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
      Fail(line_, unsound.problem, unsound.advice);
    } catch (const simdjson::simdjson_error& error) {
      if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
      if (isRead) ++line_;
      LocateError(block.substr(isRead ? next : lineStart), isBegun);
    }
  }

  template <class Record>
  void ReadRecord(Record& record) {
    ondemand::object object;
    if (record.get_object().get(object) != simdjson::SUCCESS)
      Refuse("the line is not a JSON object", kSeeFormat);
    if (headerRead_) {
      ReadFeature(object);
    } else {
      ReadHeader(object);
    }
  }

  // Goes on from `next`, where the line after the last record begins (0 for none), to the record at `at`. The
  // parser would take records that share lines; then it would depend on where blocks end what is read.
  void GoToRecord(std::string_view block, std::size_t next, std::size_t at) {
    if (at < next) Refuse("a second value stands in the line", "Give every feature a line of its own");
    const std::string_view between = block.substr(next, at - next);
    if (between.find_first_not_of(kBlanks) != std::string_view::npos) {
      Refuse("the value goes on in the next line", "Give every feature one line");
    }
    line_ += static_cast<std::size_t>(std::ranges::count(between, '\n')) + (next == 0 ? 0 : 1);
  }

  // The parser works on whole blocks, and what it fails at may stand far behind the line that it was at. So
  // the lines from `line_` on, which `rest` holds, are read one by one: of several faults the first is told.
  // Of a line that was begun, features are made already.
  [[noreturn]] void LocateError(std::string_view rest, bool isBegun) {
    ondemand::parser parser;
    simdjson::padded_string line;
    for (; !rest.empty(); ++line_) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      const std::string_view text = rest.substr(0, end);
      if (text.find_first_not_of(kBlanks) != std::string_view::npos) {
        if (isBegun) TellError(text, end == rest.size());
        try {
          line = simdjson::padded_string(text);
          ondemand::document record = parser.iterate(line);
          ReadRecord(record);
          if (record.current_location().error() != simdjson::OUT_OF_BOUNDS)
            TellError(text, end == rest.size());
        } catch (const Unsound& unsound) {
          Fail(line_, unsound.problem, unsound.advice);
        } catch (const simdjson::simdjson_error& error) {
          if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
          TellError(text, end == rest.size());
        }
      }
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    Fail(line_, "the line is not valid JSON", kSeeFormat);
  }

  // Tells why the line cannot be read; `isLast` when nothing follows it, not even its end.
  [[noreturn]] void TellError(std::string_view text, bool isLast) const {
    simdjson::dom::parser parser;
    const auto error = parser.parse(text.data(), text.size(), true).error();
    if (error == simdjson::MEMALLOC) throw std::bad_alloc();
    if (error == simdjson::UTF8_ERROR)
      Fail(line_, "the line is not valid UTF-8", "Convert the file to UTF-8 or restore it from a backup");
    if (error != simdjson::SUCCESS && isLast)
      Fail(line_, "the file ends within a line", "It was cut off; restore it from a backup");
    if (error == simdjson::DEPTH_ERROR) Fail(line_, "values are nested too deeply", kSeeFormat);
    Fail(line_,
         error == simdjson::SUCCESS
             ? "the line is not valid JSON"
             : fmt::format("the line is not valid JSON ({})", simdjson::error_message(error)),
         kSeeFormat);
  }

  void ReadHeader(ondemand::object object) {
    static constexpr KnownKey kKeys[] = {format::kFormat, format::kVersionKey, format::kUpgrades,
                                         format::kFeatures};
    Keys keys(kKeys);
    for (auto field : object) {
      const std::string_view key = TakeKey(field);
      if (keys.HasMetNone() && key != format::kFormat) {
        Refuse("this is not an analysis document: its first line does not begin with \"format\"",
               "Give a file with the extension .hvxdoc");
      }
      switch (keys.Meet(key)) {
        case 0:
          if (TakeText(field.value(), key) != format::kFormatName) {
            Refuse("this is not an analysis document: its format is not \"hvxdoc\"",
                   "Give a file with the extension .hvxdoc");
          }
          break;
        case 1:
          CheckVersion(TakeInteger(field.value(), key));
          break;
        case 2:
          Expect(field.value(), ondemand::json_type::array, key);
          for (auto identifier : field.value().get_array()) TakeUpgrade(identifier.value());
          break;
        default:
          announced_ = TakeInteger(field.value(), key);
          if (announced_ < 0) Refuse(fmt::format("\"features\" is {}; it counts from 0", announced_));
      }
    }
    if (!keys.HasMetAll())
      Refuse("the header must have \"format\", \"version\", \"upgrades\" and \"features\"");
    headerRead_ = true;
    if (options_.onHeader) options_.onHeader(*document_.Get(), identity_);
    // No file holds more features than this, whatever it announces.
    constexpr std::size_t kLeastBytesOfFeature = sizeof(R"({"id":1,"type":"T"})");
    document_->ExpectRead(std::min(static_cast<std::size_t>(announced_), bytesTotal_ / kLeastBytesOfFeature));
  }

  void TakeUpgrade(ondemand::value value) {
    if (value.type() != ondemand::json_type::string) {
      Refuse(R"("upgrades" must be a list of texts)");
    }
    const std::string_view identifier = TakeText(value, format::kUpgrades);
    if (document_->HasRecorded(identifier)) {
      Refuse(fmt::format(R"("upgrades" names "{}" twice)", identifier), "Leave one of the two");
    }
    document_->RecordUpgrade(identifier);
  }

  void CheckVersion(std::int64_t version) const {
    if (version > format::kVersion) {
      Fail(line_,
           fmt::format("the document has format version {}; this program knows versions up to {}", version,
                       format::kVersion),
           "Use a newer release of this program", DocumentError::Kind::kNewer);
    }
    if (version < 1) Refuse(fmt::format("format version {} does not exist", version));
  }

  void ReadFeature(ondemand::object object) {
    static constexpr KnownKey kKeys[] = {
        format::kId,        format::kType,     format::kName,         format::kAlias,      format::kFather,
        format::kContainer, format::kUpToDate, format::kPhysicalType, format::kAttributes, format::kModes};
    Keys keys(kKeys);
    Feature* feature = nullptr;
    FeatureId id = 0;
    for (auto field : object) {
      const std::size_t index = keys.Meet(field);
      const std::string_view key = kKeys[index].Text();
      if (index >= 2 && feature == nullptr) Refuse("a feature must begin with \"id\" and \"type\"");
      switch (index) {
        case 0:
          id = TakeNewId(field.value());
          break;
        case 1:
          if (id == 0) Refuse("a feature must begin with \"id\" and \"type\"");
          feature = &document_->AppendRead(id, TypeOf(TakeText(field.value(), key)));
          break;
        case 2:
          feature->name = document_->Keep(TakeText(field.value(), key));
          break;
        case 3:
          feature->externalName = document_->Keep(TakeText(field.value(), key));
          break;
        case 4:
          TakeFather(*feature, TakeRef(field.value(), key));
          break;
        case 5:
          TakeContainer(*feature, TakeRef(field.value(), key));
          break;
        case 6:
          Expect(field.value(), ondemand::json_type::boolean, key);
          feature->upToDate = field.value().get_bool();
          break;
        case 7:
          feature->physicalType = NameTable::Intern(TakeText(field.value(), key));
          break;
        case 8:
          ReadAttributes(*feature, field.value());
          break;
        default:
          ReadModes(*feature, field.value());
      }
    }
    if (feature == nullptr) Refuse("a feature must begin with \"id\" and \"type\"");
  }

  FeatureId TakeNewId(ondemand::value value) const {
    const FeatureId id = TakeInteger(value, format::kId);
    if (id < 1 || id > format::kMaxId) {
      Refuse(fmt::format("\"id\" is {}; ids go from 1 to {}", id, format::kMaxId));
    }
    if (document_->Find(id) != nullptr) {
      Refuse(fmt::format("a second feature has id {}", id), "Give every feature an id of its own");
    }
    return id;
  }

  const LateType& TypeOf(std::string_view name) {
    if (name.empty()) Refuse("\"type\" is empty");
    const NameId id = names_.Intern(name);
    if (id >= types_.size()) types_.resize(id + 1);
    if (types_[id] == nullptr) types_[id] = &LateType::Of(name);
    return *types_[id];
  }

  void TakeFather(Feature& feature, FeatureId to) {
    if (Feature* const father = document_->Find(to); father != nullptr && father != &feature) {
      document_->SetFatherRead(feature, *father);
      return;
    }
    forwardLinks_.push_back({nullptr, &feature.father, &feature, to, line_});
    fatherFollowsSon_ = true;
  }

  void TakeContainer(Feature& feature, FeatureId to) {
    feature.container = document_->Find(to);
    if (feature.container == nullptr) {
      forwardLinks_.push_back({nullptr, &feature.container, &feature, to, line_});
    } else {
      document_->NoteLinkRead(feature, *feature.container);
    }
  }

  void ReadAttributes(Feature& feature, ondemand::value value) {
    attributes_.clear();
    marks_.Clear();
    const std::size_t firstForward = forwardLinks_.size();
    forwardAttributes_.clear();
    for (auto field : TakeObject(value, format::kAttributes)) {
      const std::string_view key = TakeKey(field);
      const NameId name = names_.Intern(key);
      if (name == kNoName) Refuse("an attribute has an empty key");
      if (!marks_.Set(name)) Refuse(fmt::format("attribute \"{}\" stands twice", key));
      Attribute& attribute = attributes_.emplace_back();
      attribute.key = name;
      FeatureId forward = 0;
      attribute.value = TakeValue(field.value(), key, feature, 0, forward);
      if (forward != 0) {
        forwardLinks_.push_back({nullptr, nullptr, &feature, forward, line_});
        forwardAttributes_.push_back(attributes_.size() - 1);
      }
    }
    document_->SetAttributesRead(feature, attributes_);
    auto index = forwardAttributes_.begin();
    for (std::size_t i = firstForward; i < forwardLinks_.size(); ++i) {
      ForwardLink& link = forwardLinks_[i];
      if (link.value == nullptr) link.value = &feature.attributes[*index++].value;
    }
  }

  // A link to a feature that is not read yet comes back as an empty link, with the feature's id in `forward`.
  Value TakeValue(ondemand::value value, std::string_view key, Feature& owner, int depth,
                  FeatureId& forward) {
    switch (value.type()) {
      case ondemand::json_type::string:
        return Value::String(document_->Keep(TakeText(value, key)));
      case ondemand::json_type::number:
        return TakeNumber(value, key);
      case ondemand::json_type::boolean:
        return Value::Boolean(value.get_bool());
      case ondemand::json_type::null:
        if (!value.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
        return Value::Link(nullptr);
      case ondemand::json_type::object: {
        const FeatureId to = TakeRef(value, key);
        Feature* const target = document_->Find(to);
        if (target == nullptr) {
          forward = to;
        } else {
          document_->NoteLinkRead(owner, *target);
        }
        return Value::Link(target);
      }
      case ondemand::json_type::array:
        return TakeList(value, key, owner, depth);
    }
    Refuse(fmt::format("attribute \"{}\" holds no value", key));
  }

  Value TakeList(ondemand::value value, std::string_view key, Feature& owner, int depth) {
    if (depth == format::kMaxListDepth) {
      Refuse(fmt::format("attribute \"{}\" nests lists more than {} deep", key, format::kMaxListDepth));
    }
    // What lies above these belongs to this list, what lies below to the lists that it stands in.
    const std::size_t first = entries_.size();
    const std::size_t firstForward = forwardEntries_.size();
    for (auto entry : value.get_array()) {
      FeatureId forward = 0;
      const Value taken = TakeValue(entry.value(), key, owner, depth + 1, forward);
      if (forward != 0) forwardEntries_.emplace_back(entries_.size() - first, forward);
      entries_.push_back(taken);
    }
    const std::span<Value> kept = document_->Keep(std::span<const Value>(entries_).subspan(first));
    for (std::size_t i = firstForward; i < forwardEntries_.size(); ++i) {
      const auto& [index, to] = forwardEntries_[i];
      forwardLinks_.push_back({&kept[index], nullptr, &owner, to, line_});
    }
    entries_.resize(first);
    forwardEntries_.resize(firstForward);
    return Value::List(kept);
  }

  static Value TakeNumber(ondemand::value value, std::string_view key) {
    ondemand::number number;
    if (value.get_number().get(number) != simdjson::SUCCESS || number.is_uint64()) {
      Refuse(fmt::format("the number of attribute \"{}\" is out of range or malformed", key),
             "Give an integer within 64 bits, signed, or a finite real");
    }
    return number.is_int64() ? Value::Integer(number.get_int64()) : Value::Real(number.get_double());
  }

  void ReadModes(Feature& feature, ondemand::value value) {
    marks_.Clear();
    for (auto field : TakeObject(value, format::kModes)) {
      const std::string_view key = TakeKey(field);
      Attribute* const found = document_->FindAttribute(feature, NameTable::Find(key));
      if (found == nullptr) Refuse(fmt::format("\"modes\" names \"{}\", which is no attribute", key));
      if (!marks_.Set(found->key))
        Refuse(fmt::format("\"modes\" names \"{}\" twice", key), "Leave one of the two");
      const std::int64_t mode = TakeInteger(field.value(), key);
      if (mode != static_cast<std::int32_t>(mode))
        Refuse(fmt::format("the mode of \"{}\" exceeds 32 bits", key));
      found->mode = static_cast<std::int32_t>(mode);
    }
  }

  void CheckCount(std::size_t lastLine) const {
    const auto found = static_cast<std::int64_t>(document_->FeatureCount());
    if (found == announced_) return;
    Fail(lastLine,
         fmt::format("the header announces {} feature{} but the file holds {}", announced_,
                     announced_ == 1 ? "" : "s", found),
         found < announced_ ? "It was cut off; restore it from a backup"
                            : "If the added lines are wanted, correct \"features\" in the first line");
  }

  // Of several faults that show only now, the one in the first line is told. One that ends all others is that
  // lines are missing.
  void CheckLinks() {
    const bool isCutOff = static_cast<std::int64_t>(document_->FeatureCount()) < announced_;
    if (isCutOff) CheckCount(line_ - 1);
    const ForwardLink* const unresolved = ResolveForwardLinks();
    const ForwardLink* const circular = fatherFollowsSon_ ? RelinkSons() : nullptr;
    if (circular != nullptr && (unresolved == nullptr || circular->line < unresolved->line)) {
      Fail(circular->line, fmt::format("feature {} is an ancestor of itself", circular->from->id),
           "Correct \"father\" in the line, or in that of a feature above it in the tree");
    }
    if (unresolved != nullptr) {
      Fail(unresolved->line,
           fmt::format("feature {} links to feature {}, which does not exist", unresolved->from->id,
                       unresolved->to),
           "Restore that feature's line or remove the link");
    }
    CheckCount(line_ - 1);
  }

  // Gives the first that leads nowhere; null when all lead somewhere.
  const ForwardLink* ResolveForwardLinks() const {
    const ForwardLink* unresolved = nullptr;
    for (const ForwardLink& link : forwardLinks_) {
      Feature* const target = document_->Find(link.to);
      if (target == nullptr) {
        if (unresolved == nullptr) unresolved = &link;
        continue;
      }
      if (link.place != nullptr) {
        *link.place = target;
      } else {
        *link.value = Value::Link(target);
      }
      if (link.place != &link.from->father) document_->NoteLinkRead(*link.from, *target);
    }
    return unresolved;
  }

  // Sons stand beneath their father in the order of their lines. Only where a father follows a son can the
  // links lead in a circle: gives the first such link in one, null without.
  const ForwardLink* RelinkSons() const {
    document_->RelinkSonsRead();
    std::size_t reached = 0;
    for (const Feature* root = document_->First(); root != nullptr; root = root->next) {
      if (root->father == nullptr) reached += Document::CountBeneath(*root) + 1;
    }
    if (reached == document_->FeatureCount()) return nullptr;
    std::unordered_map<const Feature*, const ForwardLink*> met;  // from where each was reached first
    std::unordered_set<const Feature*> inCircle;
    for (const ForwardLink& link : forwardLinks_) {
      if (link.place != &link.from->father) continue;
      const Feature* above = link.from;
      while (above != nullptr && met.try_emplace(above, &link).second) above = above->father;
      // Back where this way has been: a circle that no other way has come to.
      if (above != nullptr && met[above] == &link) {
        while (inCircle.insert(above).second) above = above->father;
      }
      if (inCircle.contains(link.from)) return &link;
    }
    return nullptr;
  }

  std::string file_;
  const ReadOptions& options_;
  DocumentPtr document_;
  ondemand::parser parser_;
  bool headerRead_ = false;
  std::int64_t announced_ = 0;
  std::size_t bytesTotal_ = 0;  // 0 when the file does not tell
  std::optional<FileIdentity> identity_;
  std::size_t line_ = 1;
  bool fatherFollowsSon_ = false;
  NameCache names_;
  NameMarks marks_;
  std::vector<const LateType*> types_;  // by the number of their name
  std::vector<Attribute> attributes_;   // of the feature being read
  std::vector<std::size_t> forwardAttributes_;
  std::vector<Value> entries_;  // of the lists being read, the innermost last
  std::vector<std::pair<std::size_t, FeatureId>> forwardEntries_;
  std::pmr::monotonic_buffer_resource linkArena_{std::size_t{1} << 16, &LargePages::Instance()};
  std::pmr::deque<ForwardLink> forwardLinks_{&linkArena_};  // there may be millions
};

}  // namespace

DocumentPtr ReadDocument(const std::filesystem::path& file, const ReadOptions& options) {
  return Reader(file, options).Read();
}

DocumentHeader ReadHeader(const std::filesystem::path& file) {
  const ReadOptions options;
  return Reader(file, options).ReadFirstLine();
}

}  // namespace standalone
