// Meshes, groups and the properties of connections: what all cases share.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kGroupKinds[] = {"mesh", "supports"};
constexpr std::string_view kContactKinds[] = {"standard", "explicit dynamics"};

// The points and products of a connection; where they are not listed, those that its supports connect.
template <bool kPoints>
void ReadConnected(Reader& reader, Feature& feature, const Item& item) {
  if (reader.AttributeOf(feature, item.current.key) != nullptr) {
    ReadLinks(reader, feature, item);
    return;
  }
  std::uint32_t index = 0;
  for (const Value& entry : reader.ListIn(feature, "Supports")) {
    if (entry.Kind() != ValueKind::kLink || entry.Target() == nullptr) continue;
    Feature* const connected = reader.LinkedBy(*entry.Target(), kPoints ? "FirstObject" : "SecondObject");
    if (connected == nullptr) continue;
    reader.Enter(item, {.index = ++index, .standing = Standing::kDefault, .value = Value::Link(connected)});
  }
}

constexpr Item Listed(Quantity quantity, std::string_view key,
                      void (*read)(Reader&, Feature&, const Item&) = ReadLinks) {
  Item item = Custom(quantity, read);
  item.current = Attribute(key);
  return item;
}
constexpr Item Numbers(std::string_view name, std::string_view key) {
  return {.quantity = {name}, .as = As::kList, .current = Attribute(key)};
}
constexpr Source Fit(std::string_view key) {
  return Behind("InterferenceFit", Attribute(key));
}

constexpr Item kMeshItems[] = {
    Words("mesh type", Attribute("MeshType")),
    kSupportItem,
    Integer("elements", Attribute("ElementCount"), Number(0)),
    Numbers("element numbers", "ElementUserNumbers"),
    Integer("nodes", Attribute("NodeCount")),
    Numbers("node numbers", "NodeUserNumbers"),
    Listed({"exclusion region", {}, true}, "ExclusionRegions"),
};
constexpr Item kGroupItems[] = {
    Integer("group of", Attribute("GroupKind"), Number(0), {kGroupKinds}),
    Flag("defined on a mesh", Attribute("DefinedOnMeshPart")),
    Listed({"member", {}, true}, "Members"),
};
constexpr Item kProximityItems[] = {Listed({"member", {}, true}, "Members"),
                                    Real("distance", Dimension::kLength, Attribute("Distance"))};
constexpr Item kContactPropertyItems[] = {
    kSupportItem,
    Integer("contact kind", Attribute("ContactKind"), Number(1), {kContactKinds, 1}),
    Flag("clearance prescribed", Attribute("ClearanceFlag")),
    Real("clearance", Dimension::kLength, Attribute("Clearance"), {}, Number(0)),
    Integer("fit type", Fit("FitType"), Number(0)),
    Integer("fit definition", Fit("Definition"), Number(0)),
    Real("fit value", Dimension::kLength, Fit("Value"), {}, Number(0)),
};
constexpr Item kConnectionItems[] = {kSupportItem};
constexpr Item kDesignItems[] = {
    kSupportItem,
    Listed({"point", "point"}, "Points", ReadConnected<true>),
    Listed({"product", "product"}, "Products", ReadConnected<false>),
};

constexpr Description kDescriptions[] = {
    {"MSHMeshPart", {"mesh", Chapter::kMesh}, kMeshItems},
    {"SAMGroup", {"group", Chapter::kGroup}, kGroupItems},
    {"SAMProximityGroup", {"proximity group", Chapter::kGroup}, kProximityItems},
    {"SAMFaceFaceContact", {"contact property", Chapter::kConnection}, kContactPropertyItems},
    {"SAMFaceFaceFastened", {"fastened property", Chapter::kConnection}, kConnectionItems},
    {"ConstraintASM", {"assembly constraint", Chapter::kConnection}, kConnectionItems},
    {"SAMGenericConnDesign", {"connection", Chapter::kConnection}, kDesignItems},
};

}  // namespace

std::span<const Description> MeshDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
