#include "DocumentGenerator.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <unordered_map>

#include "file/DocumentReader.h"

namespace bench {
namespace {

using namespace standalone;

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  // Makes one more copy of the pattern; `repetition` counts those that there are already.
  void Repeat(Document& pattern, std::size_t repetition) {
    repetition_ = repetition;
    std::vector<const Feature*> made;
    for (Feature* feature = pattern.First(); feature != nullptr; feature = feature->next) {
      Feature*& copy = copies_[feature];
      Feature*& shared = IsOfModel(*feature) ? model_[feature->TypeName()] : copy;
      if (shared == nullptr || !IsFrame(*feature)) {
        shared = &Append(*feature);
        made.push_back(feature);
      }
      copy = shared;
    }
    for (const Feature* const feature : made) Fill(*feature, *copies_.at(feature));
  }

  [[nodiscard]] const DocumentPtr& Result() const { return document_; }

 private:
  // What the whole document has once, whichever patterns it is made of.
  static bool IsOfModel(const Feature& feature) {
    return feature.type->IsAnalysisModel() || feature.TypeName() == "SAMContainer";
  }

  // What the document has once for each pattern: the sets outside of its cases, and the connection
  // properties with what stands beneath them. Cases repeat, and so do geometry, meshes, other properties.
  static bool IsFrame(const Feature& feature) {
    if (IsOfModel(feature)) return true;
    if (feature.type->MetaClass().IsAKindOf(kind::kAnalysisCase) || feature.father == nullptr) return false;
    if (!IsFrame(*feature.father)) return false;
    return feature.type->IsAnalysisSet() || feature.father->TypeName() == "PropertySet" ||
           !feature.father->type->IsAnalysisSet();
  }

  // The nodes and elements of a mesh, which cost by their own number and not by that of the features.
  static bool IsOfMesh(const Attribute& attribute) {
    static const std::array keys{NameTable::Intern("ElementCount"), NameTable::Intern("ElementUserNumbers"),
                                 NameTable::Intern("NodeCount"), NameTable::Intern("NodeUserNumbers")};
    return std::ranges::find(keys, attribute.key) != keys.end();
  }

  Feature& Append(const Feature& feature) {
    Feature& copy = document_->AppendRead(document_->NextId(), *feature.type);
    copy.name = document_->Keep(feature.name);
    copy.externalName = document_->Keep(NameOfCopy(feature.externalName));
    copy.physicalType = Own(feature.physicalType);
    copy.upToDate = feature.upToDate;
    return copy;
  }

  // Numbered names go on counting, so that they stay unique.
  [[nodiscard]] std::string NameOfCopy(std::string_view name) const {
    const std::size_t digits = name.find_last_not_of("0123456789") + 1;
    if (repetition_ == 0 || digits == name.size()) return std::string(name);
    constexpr std::size_t kMostInPattern = 1000;
    return fmt::format("{}{}", name.substr(0, digits),
                       std::stoull(std::string(name.substr(digits))) + repetition_ * kMostInPattern);
  }

  void Fill(const Feature& feature, Feature& copy) {
    if (feature.father != nullptr) document_->SetFatherRead(copy, *copies_.at(feature.father));
    if (feature.container != nullptr) copy.container = copies_.at(feature.container);
    std::vector<Attribute> attributes(feature.Attributes().begin(), feature.Attributes().end());
    if (repetition_ > 0) std::erase_if(attributes, IsOfMesh);
    for (Attribute& attribute : attributes) {
      attribute.key = Own(attribute.key);
      attribute.value = Copy(attribute.value);
    }
    document_->SetAttributesRead(copy, attributes);
  }

  // The pattern's names go with it.
  NameId Own(NameId name) { return document_->NameFor(NameTable::Text(name)); }

  Value Copy(const Value& value) {
    switch (value.Kind()) {
      case ValueKind::kString:
        return Value::String(document_->Keep(value.AsString()));
      case ValueKind::kReal:
        return Value::Real(value.AsReal() * (1.0 + 1e-6 * static_cast<double>(random_() % 1000)));
      case ValueKind::kLink:
        return Value::Link(value.Target() == nullptr ? nullptr : copies_.at(value.Target()));
      case ValueKind::kList: {
        std::vector<Value> entries;
        for (const Value& entry : value.Entries()) entries.push_back(Copy(entry));
        return Value::List(document_->Keep(std::span<const Value>(entries)));
      }
      default:
        return value;
    }
  }

  DocumentPtr document_ = Document::Create("generated.hvxdoc");
  std::mt19937_64 random_;
  std::size_t repetition_ = 0;
  std::unordered_map<const Feature*, Feature*> copies_;  // the last of each feature of each pattern
  std::map<std::string_view, Feature*> model_;
};

}  // namespace

DocumentPtr GenerateDocument(const std::vector<DocumentPtr>& patterns, std::size_t featureCount,
                             std::uint64_t seed) {
  Generator generator(seed);
  for (std::size_t i = 0; generator.Result()->FeatureCount() < featureCount; ++i) {
    generator.Repeat(*patterns[i % patterns.size()].Get(), i / patterns.size());
  }
  return generator.Result();
}

std::vector<DocumentPtr> ExamplePatterns(const std::filesystem::path& sourceFolder) {
  return {ReadDocument(sourceFolder / "examples/bolted_bracket.hvxdoc"),
          ReadDocument(sourceFolder / "examples/heated_pipe.hvxdoc")};
}

}  // namespace bench
