#include "check/Integrity.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_set>

#include "check/IdSet.h"
#include "file/DocumentFormat.h"
#include "file/DocumentReader.h"
#include "file/FeatureText.h"

namespace standalone {
namespace {

const NameId kFather = NameTable::Intern("father");
const NameId kContainer = NameTable::Intern("container");

bool IsUtf8(std::string_view text) {
  // Most texts are ASCII, and too short for a call to be worth its while.
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (; end - at >= 8; at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    if ((word & kHighBits) != 0) return simdjson::validate_utf8(text.data(), text.size());
  }
  for (; at != end; ++at) {
    if (static_cast<unsigned char>(*at) >= 0x80) return simdjson::validate_utf8(text.data(), text.size());
  }
  return true;
}

class Integrity {
 public:
  Integrity(Document& document, std::size_t most)
      : document_(document), most_(most), met_(document.NextId(), document.FeatureCount()) {}

  std::vector<std::string> Run() {
    CheckHeader();
    std::size_t count = 0;
    for (const Feature* feature = document_.First(); feature != nullptr; feature = feature->next) {
      if (faults_.size() >= most_) return std::move(faults_);
      // Where the order leads in a circle, the count tells.
      if (++count > document_.FeatureCount()) break;
      CheckFeature(*feature);
    }
    if (count != document_.FeatureCount()) {
      Add(fmt::format("the document counts {} features and holds {}", document_.FeatureCount(),
                      count > document_.FeatureCount() ? "more" : fmt::to_string(count)));
    }
    if (fatherFollowsSon_) CheckForCycles();
    return std::move(faults_);
  }

 private:
  void Add(std::string fault) {
    if (faults_.size() < most_) faults_.push_back(std::move(fault));
  }
  template <class... Texts>
  void AddOf(const Feature& feature, fmt::format_string<Texts...> format, Texts&&... texts) {
    Add(fmt::format("feature {}: {}", feature.id, fmt::format(format, std::forward<Texts>(texts)...)));
  }

  void CheckHeader() {
    std::unordered_set<std::string_view, KeyedHash> recorded(document_.Upgrades().size());
    for (const std::string& identifier : document_.Upgrades()) {
      if (!IsUtf8(identifier)) Add("a name among the recorded upgrades is not UTF-8");
      if (!recorded.insert(identifier).second)
        Add(fmt::format("the upgrade \"{}\" is recorded twice", identifier));
    }
    if (document_.NextId() - 1 > format::kMaxId)
      Add(fmt::format("ids above {} were given to features", format::kMaxId));
  }

  void CheckFeature(const Feature& feature) {
    if (feature.removed) AddOf(feature, "it was removed and is still in the document");
    if (feature.id < 1 || feature.id > format::kMaxId) AddOf(feature, "ids go from 1 to {}", format::kMaxId);
    if (!met_.Insert(feature.id)) AddOf(feature, "another feature has the same id");
    CheckName(feature, feature.type->Id(), "late type");
    if (feature.physicalType != kNoName) CheckName(feature, feature.physicalType, "physical type");
    CheckText(feature, feature.name, "name");
    CheckText(feature, feature.externalName, "external name");
    if (feature.father != nullptr) {
      CheckTarget(feature, *feature.father, kFather);
      fatherFollowsSon_ =
          fatherFollowsSon_ || feature.father == &feature || !met_.Contains(feature.father->id);
    }
    if (feature.container != nullptr) CheckTarget(feature, *feature.container, kContainer);
    CheckAttributes(feature);
  }

  void CheckAttributes(const Feature& feature) {
    const std::span<const Attribute> attributes = feature.Attributes();
    constexpr std::size_t kMostBytesOfKey = 256;
    bytes_ = kMostBytesOfKey * attributes.size();
    for (const Attribute& attribute : attributes) {
      CheckName(feature, attribute.key, "attribute key");
      CheckValue(feature, attribute.key, attribute.value, 0);
    }
    if (HasRepeatedKey(attributes)) AddOf(feature, "two attributes have one key");
    // The texts and values take this at the most; only a feature that is really large is written to be sure.
    constexpr std::size_t kMostBytesPerName = 6;  // of a character that must be escaped
    bytes_ += kMostBytesPerName * (feature.name.size() + feature.externalName.size());
    if (bytes_ + kNoSmallLine > ReadOptions().maxLineBytes) CheckLineLength(feature);
  }

  // Few features have more than a handful of attributes.
  static bool HasRepeatedKey(std::span<const Attribute> attributes) {
    constexpr std::size_t kHandful = 24;
    if (attributes.size() > kHandful) {
      std::unordered_set<NameId, KeyedHash> keys;
      return std::ranges::any_of(attributes,
                                 [&keys](const Attribute& each) { return !keys.insert(each.key).second; });
    }
    for (std::size_t i = 1; i < attributes.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (attributes[i].key == attributes[j].key) return true;
      }
    }
    return false;
  }

  void CheckLineLength(const Feature& feature) {
    fmt::memory_buffer line;
    AppendFeature(line, feature);
    if (line.size() >= ReadOptions().maxLineBytes) AddOf(feature, "its line would be too long to be read");
  }

  void CheckValue(const Feature& feature, NameId key, const Value& value, int depth) {
    constexpr std::size_t kMostBytesOfValue = 32;  // a link, a number and what stands around them
    bytes_ += kMostBytesOfValue;
    switch (value.Kind()) {
      case ValueKind::kString:
        bytes_ += 6 * value.AsString().size();
        if (!IsUtf8(value.AsString()))
          AddOf(feature, "the text of \"{}\" is not UTF-8", NameTable::Text(key));
        break;
      case ValueKind::kReal:
        if (!std::isfinite(value.AsReal())) AddOf(feature, "\"{}\" is not finite", NameTable::Text(key));
        break;
      case ValueKind::kLink:
        if (value.Target() != nullptr) CheckTarget(feature, *value.Target(), key);
        break;
      case ValueKind::kList:
        if (depth == format::kMaxListDepth) {
          AddOf(feature, "\"{}\" nests lists more than {} deep", NameTable::Text(key), format::kMaxListDepth);
          break;
        }
        for (const Value& entry : value.Entries()) CheckValue(feature, key, entry, depth + 1);
        break;
      default:
        break;
    }
  }

  // Most links lead to what was met before: that much is told by what lies at the front of the target.
  void CheckTarget(const Feature& feature, const Feature& target, NameId as) {
    if (target.document == &document_ && met_.Contains(target.id)) return;
    if (target.removed) {
      AddOf(feature, "\"{}\" leads to feature {}, which was removed", NameTable::Text(as), target.id);
    } else if (target.document != &document_) {
      AddOf(feature, "\"{}\" leads to a feature of another document", NameTable::Text(as));
    }
  }

  void CheckText(const Feature& feature, std::string_view text, std::string_view what) {
    if (!IsUtf8(text)) AddOf(feature, "its {} is not UTF-8", what);
  }

  // Names are few, so each is looked at once.
  void CheckName(const Feature& feature, NameId name, std::string_view what) {
    if (name >= names_.size()) names_.resize(name + std::size_t{64}, Soundness::kNotKnown);
    if (names_[name] == Soundness::kNotKnown)
      names_[name] = IsUtf8(NameTable::Text(name)) ? Soundness::kSound : Soundness::kUnsound;
    if (names_[name] == Soundness::kUnsound) AddOf(feature, "a {} is not UTF-8", what);
    if (name == kNoName) AddOf(feature, "a {} is empty", what);
  }

  // Each feature is followed upwards until one that is known to end at a root.
  void CheckForCycles() {
    std::unordered_set<const Feature*> ends;
    std::vector<const Feature*> way;
    std::size_t left = document_.FeatureCount();
    for (const Feature* feature = document_.First(); feature != nullptr && left-- > 0;
         feature = feature->next) {
      way.clear();
      const Feature* above = feature;
      while (above != nullptr && !ends.contains(above)) {
        if (way.size() > document_.FeatureCount()) {
          AddOf(*feature, "it is beneath a feature that is an ancestor of itself");
          return;
        }
        way.push_back(above);
        above = above->father;
      }
      ends.insert(way.begin(), way.end());
    }
  }

  enum class Soundness : std::uint8_t { kNotKnown, kSound, kUnsound };
  static constexpr std::size_t kNoSmallLine = std::size_t{1} << 16;

  Document& document_;
  std::size_t most_;
  IdSet met_;
  std::vector<Soundness> names_;
  std::size_t bytes_ = 0;  // what the attributes of the feature at hand take at the most
  bool fatherFollowsSon_ = false;
  std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> FindFaults(Document& document, std::size_t most) {
  document.DropAllDeadLinks();
  return Integrity(document, most).Run();
}

}  // namespace standalone
