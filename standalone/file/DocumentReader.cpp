#include "file/DocumentReader.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <memory_resource>
#include <unordered_set>

#include "file/DocumentError.h"
#include "file/DocumentFormat.h"
#include "file/LineBlocks.h"
#include "file/LineValues.h"
#include "model/LargePages.h"

namespace standalone {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

class Reader {
 public:
  Reader(const std::filesystem::path& file, const ReadOptions& options)
      : file_(file.string()), options_(options), document_(Document::Create(file.filename().string())) {}

  DocumentPtr Read() {
    LineBlocks blocks(file_, options_.blockBytes, options_.maxLineBytes);
    bytesTotal_ = blocks.BytesTotal();
    identity_ = blocks.Identity();
    while (blocks.Next(line_)) {
      ReadBlock(blocks.Block(), blocks.ParserCapacity());
      if (options_.onProgress) options_.onProgress(blocks.BytesRead(), blocks.BytesTotal());
    }
    if (!headerRead_) Fail(0, "the file is empty", "Give a document: a header line and one line per feature");
    CheckCount(line_ - 1);
    ResolveForwardLinks();
    if (fatherFollowsSon_) RelinkSons();
    return document_;
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

  // The first line of the block is `line_`; so is, in the end, the line after it.
  void ReadBlock(std::string_view block, std::size_t parserCapacity) {
    const std::size_t firstLine = line_;
    std::size_t next = 0;  // where the line after the last record begins
    try {
      ondemand::document_stream lines = parser_.iterate_many(block.data(), block.size(), parserCapacity);
      for (auto line = lines.begin(); line != lines.end(); ++line) {
        // The index of the first record does not count the blanks before it.
        const std::size_t at =
            std::min(block.find_first_not_of(kBlanks, line.current_index()), block.size() - 1);
        GoToRecord(block, next, at);
        next = std::min(block.find('\n', at), block.size() - 1) + 1;
        ondemand::document_reference record;
        if ((*line).get(record) != simdjson::SUCCESS) LocateError(block, firstLine);
        ondemand::object object;
        if (record.get_object().get(object) != simdjson::SUCCESS) {
          Fail(line_, "the line is not a JSON object", kSeeFormat);
        }
        if (headerRead_) {
          ReadFeature(object);
        } else {
          ReadHeader(object);
        }
      }
      if (lines.truncated_bytes() != 0) LocateError(block, firstLine);
      GoToRecord(block, next, block.size());
    } catch (const Unsound& unsound) {
      Fail(line_, unsound.problem, unsound.advice);
    } catch (const simdjson::simdjson_error&) {
      LocateError(block, firstLine);
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

  // The parser works on whole blocks and does not tell where it failed, so the lines are tried one by one.
  [[noreturn]] void LocateError(std::string_view block, std::size_t line) const {
    simdjson::dom::parser parser;
    while (!block.empty()) {
      const std::size_t end = std::min(block.find('\n'), block.size());
      const std::string_view text = block.substr(0, end);
      const bool blank = text.find_first_not_of(" \t\r") == std::string_view::npos;
      const auto error = blank ? simdjson::SUCCESS : parser.parse(text.data(), text.size(), true).error();
      if (error == simdjson::UTF8_ERROR) {
        Fail(line, "the line is not valid UTF-8", "Convert the file to UTF-8 or restore it from a backup");
      }
      if (error != simdjson::SUCCESS && end == block.size()) {
        Fail(line, "the file ends within a line", "It was cut off; restore it from a backup");
      }
      if (error == simdjson::DEPTH_ERROR) Fail(line, "values are nested too deeply", kSeeFormat);
      if (error != simdjson::SUCCESS) {
        Fail(line, fmt::format("the line is not valid JSON ({})", simdjson::error_message(error)),
             kSeeFormat);
      }
      block.remove_prefix(std::min(end + 1, block.size()));
      ++line;
    }
    Fail(line_, "the line is not valid JSON", kSeeFormat);
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
    const std::vector<std::string>& recorded = document_->Upgrades();
    if (std::ranges::find(recorded, identifier) != recorded.end()) {
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
    const std::size_t firstForward = forwardLinks_.size();
    forwardAttributes_.clear();
    for (auto field : TakeObject(value, format::kAttributes)) {
      const std::string_view key = TakeKey(field);
      const NameId name = names_.Intern(key);
      if (name == kNoName) Refuse("an attribute has an empty key");
      if (std::ranges::find(attributes_, name, &Attribute::key) != attributes_.end()) {
        Refuse(fmt::format("attribute \"{}\" stands twice", key));
      }
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

  void ReadModes(Feature& feature, ondemand::value value) const {
    std::vector<NameId> met;
    for (auto field : TakeObject(value, format::kModes)) {
      const std::string_view key = TakeKey(field);
      const auto attributes = feature.Attributes();
      const auto found = std::ranges::find(attributes, NameTable::Find(key), &Attribute::key);
      if (found == attributes.end())
        Refuse(fmt::format("\"modes\" names \"{}\", which is no attribute", key));
      if (std::ranges::find(met, found->key) != met.end())
        Refuse(fmt::format("\"modes\" names \"{}\" twice", key), "Leave one of the two");
      met.push_back(found->key);
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

  void ResolveForwardLinks() const {
    for (const ForwardLink& link : forwardLinks_) {
      Feature* const target = document_->Find(link.to);
      if (target == nullptr) {
        Fail(link.line,
             fmt::format("feature {} links to feature {}, which does not exist", link.from->id, link.to),
             "Restore that feature's line or remove the link");
      }
      if (link.place != nullptr) {
        *link.place = target;
      } else {
        *link.value = Value::Link(target);
      }
      if (link.place != &link.from->father) document_->NoteLinkRead(*link.from, *target);
    }
  }

  // Sons stand beneath their father in the order of their lines. Only where a father follows a son can the
  // links lead in a circle.
  void RelinkSons() const {
    document_->RelinkSonsRead();
    std::size_t reached = 0;
    for (const Feature* root = document_->First(); root != nullptr; root = root->next) {
      if (root->father == nullptr) reached += Document::CountBeneath(*root) + 1;
    }
    if (reached == document_->FeatureCount()) return;
    Fail(0, fmt::format("feature {} is an ancestor of itself", MemberOfCycle().id),
         "Correct \"father\" in its line or in a line above it in the tree");
  }

  // What no root reaches stands in a cycle or beneath one; following the fathers far enough leads into it.
  const Feature& MemberOfCycle() const {
    std::unordered_set<const Feature*> reached;
    for (const Feature* root = document_->First(); root != nullptr; root = root->next) {
      if (root->father != nullptr) continue;
      for (const Feature* each = root; each != nullptr; each = NextBeneath(*root, *each))
        reached.insert(each);
    }
    const Feature* feature = document_->First();
    while (reached.contains(feature)) feature = feature->next;
    for (std::size_t step = 0; step < document_->FeatureCount(); ++step) feature = feature->father;
    return *feature;
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

}  // namespace standalone
