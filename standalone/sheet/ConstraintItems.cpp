// Rigid bodies, couplings, springs, dampers and rigid surfaces.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

// What the connection mesh of a constraint is made from.
void ReadMeshSupports(Reader& reader, Feature& feature, const Item& item) {
  Feature* const mesh = reader.LinkedBy(feature, "MeshPart");
  if (mesh != nullptr) ReadSupports(reader, *mesh, item);
}

void ReadMeshExclusions(Reader& reader, Feature& feature, const Item& item) {
  Feature* const mesh = reader.LinkedBy(feature, "MeshPart");
  if (mesh != nullptr) ReadLinks(reader, *mesh, item);
}

void ReadReference(Reader& reader, Feature& feature, const Item& item) {
  const Value* const value = reader.AttributeOf(feature, "ReferenceConnector");
  if (value == nullptr || (value->Kind() == ValueKind::kLink && value->Target() == nullptr)) {
    reader.Enter(item, {});
  } else {
    reader.SetConnected(item, *value);
  }
}

void ReadList(Reader& reader, Feature& feature, const Item& item) {
  Item one = item;
  one.as = As::kList;
  reader.Enter(item, reader.FactAt(feature, one, item.current, {}));
}

constexpr Item Links(Quantity quantity, std::string_view key,
                     void (*read)(Reader&, Feature&, const Item&) = ReadLinks) {
  Item item = Custom(quantity, read);
  item.current = Attribute(key);
  return item;
}

constexpr Item kReference = Custom({"reference"}, ReadReference);
constexpr Item kMeshSupports = Custom({"connection mesh on", {}, true}, ReadMeshSupports);
constexpr Item kExclusions = Links({"exclusion region", {}, true}, "ExclusionRegions");
constexpr Item kMeshExclusions =
    Links({"exclusion region of the mesh", {}, true}, "ExclusionRegions", ReadMeshExclusions);
constexpr Item kCoupledDof = Links({"coupled degrees of freedom"}, "CoupledDof", ReadList);
constexpr Item kDesigns = Links({"connection", "connection"}, "ConnectionDesigns");
constexpr Item kMesh = Link("mesh", Attribute("MeshPart"));

constexpr Item kRigidBodyItems[] = {
    kSupportItem,
    kReference,
    Flag("centre of mass is the reference", Attribute("CenterOfMass")),
    Flag("isothermal", Component("Isothermal")),
    kMesh,
    kMeshSupports,
};
constexpr Item kCouplingItems[] = {kSupportItem, kReference,    kCoupledDof,    kExclusions,
                                   kMesh,        kMeshSupports, kMeshExclusions};
constexpr Item kSpringItems[] = {kSupportItem, kDesigns,
                                 Real("stiffness", Dimension::kStiffness, Attribute("Stiffness")), kMesh};
constexpr Item kDamperItems[] = {
    kSupportItem, kDesigns, Real("damping coefficient", Dimension::kDamping, Attribute("DampingCoefficient")),
    kMesh};
constexpr Item kRigidSurfaceItems[] = {
    kSupportItem, Real("smoothing radius", Dimension::kLength, Attribute("SmoothingRadius")), kMesh};

constexpr Description kDescriptions[] = {
    {"HVXRigidBodyConstraintLT", {"rigid body", Chapter::kInteraction}, kRigidBodyItems},
    {"HVXRigidCouplingLT", {"rigid coupling", Chapter::kInteraction}, kCouplingItems},
    {"HVXSmoothCouplingLT", {"smooth coupling", Chapter::kInteraction}, kCouplingItems},
    {"HVXSpringLT", {"spring", Chapter::kInteraction}, kSpringItems},
    {"HVXDamperLT", {"damper", Chapter::kInteraction}, kDamperItems},
    {"HVXARSurfLT", {"analytical rigid surface", Chapter::kInteraction}, kRigidSurfaceItems},
};

}  // namespace

std::span<const Description> ConstraintDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
