#include "analysis/Supports.h"

#include <fmt/format.h>

namespace standalone {
namespace {

constexpr std::string_view kDefaultConnector = "GeometrySmartConnector";

}  // namespace

const Key kSupports("Supports");
const Key kFirstObject("FirstObject");
const Key kSecondObject("SecondObject");

bool IsConnector(const Feature& feature) {
  return feature.type->MetaClass().IsAKindOf(kind::kConnector);
}

Feature& MakeConnector(Feature& beside, std::string_view type, Feature* first, Feature* second) {
  Document& document = *beside.document;
  const LateType& lateType = LateType::Of(type.empty() ? kDefaultConnector : type);
  // Beneath nothing, so that it cannot be refused.
  Feature& connector = *document.Create(lateType, fmt::format("{}.{}", lateType.Name(), document.NextId()),
                                        nullptr, beside.container);
  document.ReserveAttributes(connector, 2);
  WriteLink(connector, kFirstObject, first);
  WriteLink(connector, kSecondObject, second);
  return connector;
}

void EnterSupport(Feature& feature, Feature& connector, int position) {
  Document& document = *feature.document;
  static_cast<void>(document.PlaceBeneath(connector, feature));
  if (document.FindAttribute(feature, kSupports.Id()) == nullptr) WriteLinks(feature, kSupports, {});
  std::vector<Feature*> supports = LinkedFeatures(feature, kSupports);
  if (position < 1 || static_cast<std::size_t>(position) > supports.size()) {
    document.AppendToList(feature, kSupports.Id(), Value::Link(&connector));
    return;
  }
  supports.insert(supports.begin() + position - 1, &connector);
  WriteLinks(feature, kSupports, supports);
}

}  // namespace standalone
