#include "analysis/Supports.h"

#include <fmt/format.h>

#include <algorithm>

#include "analysis/Frame.h"

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
  const LateType& lateType = document.LateTypeFor(type.empty() ? kDefaultConnector : type);
  // Beneath nothing, so that it cannot be refused.
  Feature& connector = *document.Create(lateType, fmt::format("{}.{}", lateType.Name(), document.NextId()),
                                        nullptr, beside.container);
  document.ReserveAttributes(connector, 2);
  WriteLink(connector, kFirstObject, first);
  WriteLink(connector, kSecondObject, second);
  return connector;
}

bool EnterSupports(Feature& feature, std::span<Feature* const> connectors, int position) {
  if (feature.removed || !CanHoldList(feature, kSupports)) return false;
  for (Feature* const connector : connectors) {
    if (connector->removed || StandsBeneath(feature, *connector)) return false;
  }
  if (connectors.empty()) return true;
  Document& document = *feature.document;
  for (Feature* const old : document.ReplaceListSetAside(feature, kSupports.Id())) {
    if (std::ranges::find(connectors, old) == connectors.end()) TakeSupportOut(feature, *old);
  }
  for (Feature* const connector : connectors) {
    static_cast<void>(document.PlaceBeneath(*connector, feature));
    InsertLink(feature, kSupports, *connector, position);
  }
  return true;
}

void PrepareSupports(Feature& feature) {
  feature.document->SetListAside(feature, kSupports.Id());
}

void TakeSupportOut(Feature& feature, Feature& support) {
  Document& document = *feature.document;
  DropLink(feature, kSupports, support);
  const bool isOwn = IsConnector(support) && support.father == &feature;
  if (isOwn && !document.IsLinkedFromElsewhere(support, feature)) document.Remove(support);
}

}  // namespace standalone
