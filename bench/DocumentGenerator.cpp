#include "DocumentGenerator.h"

#include <random>
#include <unordered_map>

#include "file/DocumentReader.h"

namespace bench {
namespace {

using namespace standalone;

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  void Repeat(Document& pattern) {
    copies_.clear();
    std::vector<const Feature*> made;
    for (Feature* feature = pattern.First(); feature != nullptr; feature = feature->next) {
      if (!TakeShared(*feature)) made.push_back(feature);
      copies_.emplace(feature, IsShared(*feature) ? shared_.at(feature->TypeName()) : &Append(*feature));
    }
    for (const Feature* const feature : made) Fill(*feature, *copies_.at(feature));
  }

  [[nodiscard]] const DocumentPtr& Result() const { return document_; }

 private:
  static bool IsShared(const Feature& feature) {
    return feature.type->IsAnalysisModel() || feature.TypeName() == "SAMContainer";
  }

  // True when the document has the one feature of this kind already.
  bool TakeShared(const Feature& feature) {
    if (!IsShared(feature)) return false;
    if (shared_.contains(feature.TypeName())) return true;
    Feature& copy = Append(feature);
    shared_.emplace(feature.TypeName(), &copy);
    copies_.emplace(&feature, &copy);
    for (const Attribute& attribute :
         feature.Attributes()) {  // they hold no links yet in documents to upgrade
      document_->SetAttribute(copy, attribute.key, Copy(attribute.value));
    }
    return true;
  }

  Feature& Append(const Feature& feature) {
    Feature& copy = document_->AppendRead(document_->NextId(), *feature.type);
    copy.name = document_->Keep(feature.name);
    copy.externalName = document_->Keep(feature.externalName);
    copy.physicalType = feature.physicalType;
    copy.upToDate = feature.upToDate;
    return copy;
  }

  void Fill(const Feature& feature, Feature& copy) {
    if (feature.father != nullptr) document_->SetFatherRead(copy, *copies_.at(feature.father));
    if (feature.container != nullptr) copy.container = copies_.at(feature.container);
    std::vector<Attribute> attributes(feature.Attributes().begin(), feature.Attributes().end());
    for (Attribute& attribute : attributes) attribute.value = Copy(attribute.value);
    document_->SetAttributesRead(copy, attributes);
  }

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
  std::unordered_map<const Feature*, Feature*> copies_;  // of the pattern at work
  std::unordered_map<std::string_view, Feature*> shared_;
};

}  // namespace

DocumentPtr GenerateDocument(const std::vector<DocumentPtr>& patterns, std::size_t featureCount,
                             std::uint64_t seed) {
  Generator generator(seed);
  for (std::size_t i = 0; generator.Result()->FeatureCount() < featureCount; ++i) {
    generator.Repeat(*patterns[i % patterns.size()].Get());
  }
  return generator.Result();
}

std::vector<DocumentPtr> ExamplePatterns(const std::filesystem::path& sourceFolder) {
  return {ReadDocument(sourceFolder / "examples/bolted_bracket.hvxdoc"),
          ReadDocument(sourceFolder / "examples/heated_pipe.hvxdoc")};
}

}  // namespace bench
