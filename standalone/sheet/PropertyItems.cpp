// Sections and interaction properties.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kFormulations[] = {"frictionless", "penalty", "rough", "user-defined"};

// A table once there is one; before that a list of values, the coefficient first.
void ReadFriction(Reader& reader, Feature& feature, const Item& item) {
  Item one = item;
  one.as = As::kList;
  Fact fact = reader.FactAt(feature, one, Behind("tangentialBehavior", Attribute("FrictionTable")), {});
  if (fact.standing == Standing::kNotSet)
    fact = reader.FactAt(feature, one, Behind("tangentialBehavior", Attribute("frictionValList")), {});
  if (fact.standing == Standing::kSet && fact.value.Entries().empty()) fact = {};
  reader.Enter(item, fact);
}

// Nothing but the document's history tells the unit of an orientation angle.
void ReadAngle(Reader& reader, Feature& feature, const Item& item) {
  Item one = item;
  if (!reader.HasBeenThrough("UpgradeMatOrientAngleToRadians")) one.dimension = Dimension::kDegrees;
  reader.Enter(item, reader.FactAt(feature, one, Behind("MaterialOrientation", Attribute("Angle")), {}));
}

constexpr Source Behavior(std::string_view key) {
  return Behind("tangentialBehavior", Attribute(key));
}

constexpr Item kMaterial = Words("material", Attribute("Material"));
constexpr Item kThickness = Real("thickness", Dimension::kLength, Attribute("Thickness"));

constexpr Item kInteractionPropertyItems[] = {
    Integer("friction formulation", Behavior("FrictionFormulation"), {}, {kFormulations}),
    Custom({"friction"}, ReadFriction),
    Flag("friction by a user subroutine", Behavior("UserSubroutine")),
};
constexpr Item kShellItems[] = {
    kSupportItem,
    kMaterial,
    kThickness,
    Custom({"orientation angle"}, ReadAngle, Dimension::kAngle),
};
constexpr Item kGasketItems[] = {
    kSupportItem,
    kMaterial,
    kThickness,
    Real("stabilization stiffness", Dimension::kStiffness, Component("StabilizationStiffness"),
         Component("StabilisationStiffnessValue"), Number(0)),
    Real("initial gap", Dimension::kLength, Component("InitialGap"), {}, Number(0)),
};
constexpr Item kPretensionItems[] = {
    kSupportItem,
    Real("pretension force", Dimension::kForce, Component("Magnitude"), {}, Number(0)),
    Integer("pretension type", Component("PreTensionType"), Number(0)),
    Flag("fixed at current length", Component("FixAtCurrentLength")),
};
constexpr Item kVirtualPartItems[] = {
    kSupportItem,
    {.quantity = {"mesh", {}, true}, .current = Attribute("MeshParts"), .read = ReadLinks},
};

// The properties of a set stand for themselves.
constexpr Description kDescriptions[] = {
    {"PropertySet HVXHalvexPropertySetLT", {"property set", Chapter::kProperty}, {}},
    {"HVXInteractionPropertyLT", {"interaction property", Chapter::kProperty}, kInteractionPropertyItems},
    {"HVXShellSectionEnhLT", {"shell section", Chapter::kProperty}, kShellItems},
    {"HVXGaskPropertyLT", {"gasket section", Chapter::kProperty}, kGasketItems},
    {"HVXPreTensionPropertyLT", {"pretension", Chapter::kProperty}, kPretensionItems},
    {"HVXVirtualPartLT HVXRigidVirtualPartLT", {"virtual part", Chapter::kProperty}, kVirtualPartItems},
};

}  // namespace

std::span<const Description> PropertyDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
