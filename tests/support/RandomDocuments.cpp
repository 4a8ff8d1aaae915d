#include "support/RandomDocuments.h"

#include "support/UpgradeFixture.h"

namespace testing_support {
namespace {

using namespace standalone;

constexpr int kMissing = 12;  // features, each with what stands beneath it
constexpr int kOdd = 30;      // attributes

// A concentrated force whose list of sons is not as old releases wrote it keeps its upgrade going without
// end, on purpose; so those stay whole, and with them what everything stands beneath.
bool MayGo(const Feature& feature) {
  if (feature.father == nullptr || feature.type->IsAnalysisModel()) return false;
  return feature.TypeName() != "HVXConcentratedForce" &&
         feature.father->TypeName() != "HVXConcentratedForce" && Document::CountBeneath(feature) < 40;
}

// A value that stands where nobody expects it: of another kind, empty, or with an entry twice.
Value OddValue(Document& document, const Value& value, std::mt19937& random) {
  const auto list = [&document](const std::vector<Value>& entries) {
    return Value::List(document.Keep(std::span<const Value>(entries)));
  };
  switch (random() % 6) {
    case 0:
      return Value::String("odd");
    case 1:
      return Value::Integer(-1);
    case 2:
      return Value::Boolean(true);
    case 3:
      return Value::Link(document.Find(static_cast<FeatureId>(random() % document.FeatureCount()) + 1));
    case 4:
      return list({});
    default:
      if (value.Kind() != ValueKind::kList || value.Entries().empty()) return list({value, value});
      std::vector<Value> entries(value.Entries().begin(), value.Entries().end());
      entries.push_back(entries.front());
      return list(entries);
  }
}

}  // namespace

std::string DamagedExample(std::mt19937& random) {
  const char* const example = random() % 2 == 0 ? "bolted_bracket" : "heated_pipe";
  const DocumentPtr document = ExampleWithSmallMeshes(example);
  const auto count = static_cast<FeatureId>(document->FeatureCount());
  for (int i = 0; i < kMissing; ++i) {
    Feature* const feature = document->Find(static_cast<FeatureId>(random()) % count + 1);
    if (!feature->removed && MayGo(*feature)) document->Remove(*feature);
  }
  return LinesOf(*document.Get());
}

std::string OddExample(std::mt19937& random) {
  const char* const example = random() % 2 == 0 ? "bolted_bracket" : "heated_pipe";
  const DocumentPtr document = ExampleWithSmallMeshes(example);
  for (int i = 0; i < kOdd; ++i) {
    const auto id = static_cast<FeatureId>(random() % document->FeatureCount()) + 1;
    Feature& feature = *document->Find(id);
    if (feature.attributeCount == 0 || !MayGo(feature)) continue;
    const Attribute attribute = feature.Attributes()[random() % feature.attributeCount];
    document->SetAttribute(feature, attribute.key, OddValue(*document.Get(), attribute.value, random));
  }
  return LinesOf(*document.Get());
}

}  // namespace testing_support
