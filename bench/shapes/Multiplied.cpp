#include "Multiplied.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace bench {
namespace {

using namespace standalone;

FatherAndSon PairOf(const Feature& feature) {
  return {feature.father == nullptr ? "" : std::string(feature.father->TypeName()),
          std::string(feature.TypeName())};
}

// One feature and all beneath it, as often as wanted.
class Multiplication {
 public:
  Multiplication(Document& document, Feature& original) : document_(document) {
    for (Feature* each = &original; each != nullptr; each = NextBeneath(original, *each))
      originals_.push_back(each);
  }

  void MakeCopy(std::size_t number) {
    Copies& copies = copies_.emplace_back();
    for (Feature* const original : originals_) {
      Feature& copy = document_.AppendRead(document_.NextId(), *original->type);
      copy.name = original->name;
      copy.externalName = document_.Keep(NameOfCopy(original->externalName, number));
      copy.physicalType = original->physicalType;
      copy.upToDate = original->upToDate;
      copies.emplace(original, &copy);
    }
    for (Feature* const original : originals_) {
      Feature& copy = *copies.at(original);
      if (original->father != nullptr) document_.SetFatherRead(copy, *CopyOf(original->father, copies));
      if (original->container != nullptr) copy.container = CopyOf(original->container, copies);
      std::vector<Attribute> attributes(original->Attributes().begin(), original->Attributes().end());
      for (Attribute& attribute : attributes) attribute.value = Copied(attribute.value, copies);
      document_.SetAttributesRead(copy, attributes);
    }
  }

  // Whatever lists one of the originals lists its copies too.
  void ExtendLists() {
    std::vector<std::pair<Feature*, NameId>> lists;
    for (Feature* feature = document_.First(); feature != nullptr; feature = feature->next) {
      if (std::ranges::find(originals_, feature) != originals_.end() || feature->id >= FirstCopy()) continue;
      for (const Attribute& attribute : feature->Attributes()) {
        if (attribute.value.Kind() == ValueKind::kList) lists.emplace_back(feature, attribute.key);
      }
    }
    for (const auto& [feature, key] : lists) Extend(*feature, key);
  }

 private:
  using Copies = std::unordered_map<const Feature*, Feature*>;

  [[nodiscard]] FeatureId FirstCopy() const {
    return copies_.empty() ? document_.NextId() : copies_.front().at(originals_.front())->id;
  }

  static std::string NameOfCopy(std::string_view name, std::size_t number) {
    return name.empty() ? std::string() : fmt::format("{} copy {}", name, number);
  }

  static Feature* CopyOf(Feature* feature, const Copies& copies) {
    const auto found = copies.find(feature);
    return found == copies.end() ? feature : found->second;
  }

  Value Copied(const Value& value, const Copies& copies) {
    if (value.Kind() == ValueKind::kLink) return Value::Link(CopyOf(value.Target(), copies));
    if (value.Kind() != ValueKind::kList) return value;
    std::vector<Value> entries;
    for (const Value& entry : value.Entries()) entries.push_back(Copied(entry, copies));
    return Value::List(document_.Keep(std::span<const Value>(entries)));
  }

  void Extend(Feature& feature, NameId key) {
    const std::span<const Value> entries = document_.FindAttribute(feature, key)->value.Entries();
    std::vector<const Feature*> listed;
    for (const Value& entry : entries) {
      if (entry.Kind() == ValueKind::kLink && copies_.front().contains(entry.Target()))
        listed.push_back(entry.Target());
    }
    if (listed.empty()) return;
    for (const Copies& copies : copies_) {
      for (const Feature* const each : listed)
        document_.AppendToList(feature, key, Value::Link(copies.at(each)));
    }
  }

  Document& document_;
  std::vector<Feature*> originals_;
  std::vector<Copies> copies_;
};

}  // namespace

std::vector<FatherAndSon> PairsOf(const Document& document) {
  std::vector<FatherAndSon> pairs;
  std::set<FatherAndSon> known;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (known.insert(PairOf(*feature)).second) pairs.push_back(PairOf(*feature));
  }
  return pairs;
}

void Multiply(Document& document, const FatherAndSon& pair, std::size_t times) {
  Feature* original = document.First();
  while (original != nullptr && PairOf(*original) != pair) original = original->next;
  if (original == nullptr) throw std::invalid_argument("there is no " + pair.Name());
  if (times < 2) return;
  Multiplication multiplication(document, *original);
  for (std::size_t i = 1; i < times; ++i) multiplication.MakeCopy(i);
  document.RelinkSonsRead();
  multiplication.ExtendLists();
}

}  // namespace bench
