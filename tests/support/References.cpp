#include "support/References.h"

#include <fmt/format.h>

#include "analysis/Supports.h"

namespace testing_support {

using namespace standalone;

namespace {

bool IsThere(const Feature& feature, const Document& document) {
  return !feature.removed && feature.document == &document && document.Find(feature.id) == &feature;
}

void CheckValue(const Feature& feature, std::string_view key, const Value& value,
                std::vector<std::string>& broken) {
  if (value.Kind() == ValueKind::kList) {
    for (const Value& entry : value.Entries()) CheckValue(feature, key, entry, broken);
  } else if (value.Kind() == ValueKind::kLink && value.Target() != nullptr &&
             !IsThere(*value.Target(), *feature.document)) {
    broken.push_back(fmt::format("#{}: \"{}\" holds removed #{}", feature.id, key, value.Target()->id));
  }
}

}  // namespace

std::vector<std::string> BrokenReferences(Document& document) {
  std::vector<std::string> broken;
  document.DropAllDeadLinks();
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (feature->removed) broken.push_back(fmt::format("#{} is removed and still listed", feature->id));
    for (const Feature* const other : {feature->father, feature->container}) {
      if (other != nullptr && !IsThere(*other, document))
        broken.push_back(fmt::format("#{}: father or container #{} is removed", feature->id, other->id));
    }
    for (const Attribute& attribute : feature->Attributes())
      CheckValue(*feature, NameTable::Text(attribute.key), attribute.value, broken);
    for (Feature* const connector : LinkedFeatures(*feature, kSupports)) {
      if (!IsConnector(*connector) || connector->father != feature)
        broken.push_back(
            fmt::format("#{}: support #{} is no connector of its own", feature->id, connector->id));
      if (LinkedFeature(*connector, kFirstObject) == nullptr)
        broken.push_back(fmt::format("#{}: support #{} connects nothing", feature->id, connector->id));
    }
  }
  return broken;
}

}  // namespace testing_support
