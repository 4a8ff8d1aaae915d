// Element assignments with their section controls.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kShapes[] = {
    "point", "line", "triangle", "quadrilateral", "tetrahedron", "wedge", "hexahedron", "pyramid", "",
    "",      "",     "",         "none chosen"};
constexpr std::string_view kKinds[] = {"nonlinear structural", "thermal", "explicit dynamics"};
constexpr std::string_view kEach = "assignment";

// The assignments stand under the old key where the current one is missing.
std::span<const Value> AssignmentsOf(const Reader& reader, Feature& feature) {
  const bool isCurrent = reader.AttributeOf(feature, "ElementAssignments") != nullptr;
  return reader.ListIn(feature, isCurrent ? "ElementAssignments" : "HVXListElementAsgnSpec");
}

void ReadOfEach(Reader& reader, Feature& feature, const Item& item) {
  Item one = item;
  one.read = nullptr;
  std::uint32_t index = 0;
  for (const Value& entry : AssignmentsOf(reader, feature)) {
    ++index;
    Feature* const assignment = entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr;
    Fact fact{.standing = Standing::kUnreadable, .value = entry};
    if (assignment != nullptr) fact = reader.Evaluate(*assignment, one);
    fact.index = index;
    reader.Enter(item, fact);
  }
}

constexpr Item OfEach(Item item) {
  item.quantity.each = kEach;
  item.read = ReadOfEach;
  return item;
}
constexpr Item OfEachList(std::string_view name, std::string_view key) {
  return OfEach({.quantity = {name}, .as = As::kList, .current = Attribute(key)});
}
constexpr Source Controls(std::string_view key) {
  return Behind("SectionControlsSpec", Attribute(key));
}
constexpr Item Control(std::string_view name, std::string_view key) {
  return OfEach(Real(name, Dimension::kRatio, Controls(key)));
}

constexpr Item kShape = OfEach(Integer("element shape", Attribute("ElementShape"), Number(13), {kShapes, 1}));
constexpr Item kOrder = OfEach(Integer("element order", Attribute("ElementOrder"), Number(0)));
constexpr Item kFormulation = OfEach(Integer("formulation", Attribute("Formulation"), Number(0)));
constexpr Item kOptions = OfEachList("options", "ElementOptions");
constexpr Item kOptionValues = OfEachList("option values", "ElementOptionValues");
constexpr Item kDistortion = OfEach(Integer("distortion control", Controls("DistortionContol")));
constexpr Item kAccuracy =
    OfEach(Flag("second-order accuracy", Controls("SecondOrderAccuracy"), kNoFallback));
constexpr Item kHourglass = OfEach(Integer("hourglass control", Controls("HourglassControl")));
constexpr Item kLengthRatio = Control("length ratio", "LengthRatio");
constexpr Item kStiffnessViscous = Control("stiffness-viscous weight factor", "StiffnessViscousWtFactor");
constexpr Item kDisplacementScale =
    Control("displacement hourglass scaling factor", "DispHourglassScalingFactor");
constexpr Item kRotationScale = Control("rotational hourglass scaling factor", "RotHourglassScalingFactor");
constexpr Item kOutOfPlaneScale =
    Control("out-of-plane hourglass scaling factor", "OutOfPlaneHourglassScalingFactor");

constexpr Item kGlobalItems[] = {
    Integer("for analyses of type", Attribute("Kind"), {}, {kKinds, 1}),
    kShape,
    kOrder,
    kFormulation,
    kOptions,
    kOptionValues,
    kDistortion,
    kAccuracy,
    kHourglass,
    kLengthRatio,
    kStiffnessViscous,
    kDisplacementScale,
    kRotationScale,
    kOutOfPlaneScale,
};
constexpr Item kLocalItems[] = {
    kSupportItem,   kShape,           kOrder,     kFormulation, kOptions,          kOptionValues,
    kDistortion,    kAccuracy,        kHourglass, kLengthRatio, kStiffnessViscous, kDisplacementScale,
    kRotationScale, kOutOfPlaneScale,
};

// Entries that it does not list are nowhere asked for; of several for one type, the first counts.
constexpr Item kEntryItems[] = {
    {.quantity = {"entry", "entry"}, .current = Attribute("Entries"), .read = ReadLinks},
};

constexpr Description kDescriptions[] = {
    {"HVXGlobalElemAsgnLT", {"list of global element assignments", Chapter::kElements}, kEntryItems},
    {"HVXGlobalElemAsgnEntryLT", {"global element assignment", Chapter::kElements}, kGlobalItems},
    {"HVXLocalElemAsgnLT", {"local element assignment", Chapter::kElements}, kLocalItems},
};

}  // namespace

std::span<const Description> ElementDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
