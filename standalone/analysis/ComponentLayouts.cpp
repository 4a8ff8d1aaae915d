#include "analysis/ComponentLayouts.h"

#include <algorithm>
#include <unordered_map>

#include "analysis/Components.h"

namespace standalone {
namespace {

constexpr std::string_view kDouble = "SAMDouble";
constexpr std::string_view kInteger = "SAMInteger";
constexpr std::string_view kBoolean = "SAMBoolean";

constexpr ComponentLayout kRotationalBodyForce[] = {
    {"AngularVelocity", kDouble, 0.0, "ANGULAR_VELOCITY"},
    {"AngularAcceleration", kDouble, 0.0, "ANGULAR_ACCELERATION"},
};
constexpr ComponentLayout kRigidBodyConstraint[] = {{"Isothermal", kBoolean}};
constexpr ComponentLayout kContact[] = {
    {"ContactSettings", "SAMComposite"},
    {"ContactSettings/CnstEnfMethod", kInteger},
    {"ContactSettings/ThicknessOptioin", kBoolean},  // the stored key is spelt so
};
constexpr ComponentLayout kPressure[] = {{"Pressure", kDouble, 0.0, "PRESSURE"}};
constexpr ComponentLayout kGravity[] = {
    {"HVXGravity_1", kDouble, 0.0, "ACCELERATION"},
    {"HVXGravity_2", kDouble, 0.0, "ACCELERATION"},
    {"HVXGravity_3", kDouble, 0.0, "ACCELERATION"},
};
constexpr ComponentLayout kTemperature[] = {{"Temperature", kDouble, 0.0, "TEMPRTRE"}};
constexpr ComponentLayout kConcHeatFlux[] = {{"HeatFlux", kDouble, 0.0, "HEAT_FLOW"}};
constexpr ComponentLayout kSurfaceHeatFlux[] = {
    {"HeatFlux", kDouble, 0.0, "SURFACE_HEAT_FLUX"},
    {"InvertSurface", kBoolean},
};
constexpr ComponentLayout kFilmCondition[] = {
    {"FilmCoefficient", kDouble, 0.0, "FILM_COEFFICIENT"},
    {"ReferenceTemperature", kDouble, 0.0, "TEMPRTRE"},
    {"InvertSurface", kBoolean},
};
constexpr ComponentLayout kAcceleration[] = {
    {"HVXAcceleration_1", kDouble, 0.0, "", true}, {"HVXAcceleration_2", kDouble, 0.0, "", true},
    {"HVXAcceleration_3", kDouble, 0.0, "", true}, {"HVXAcceleration_4", kDouble, 0.0, "", true},
    {"HVXAcceleration_5", kDouble, 0.0, "", true}, {"HVXAcceleration_6", kDouble, 0.0, "", true},
};
constexpr ComponentLayout kVelocity[] = {
    {"HVXVelocity_1", kDouble, 0.0, "", true}, {"HVXVelocity_2", kDouble, 0.0, "", true},
    {"HVXVelocity_3", kDouble, 0.0, "", true}, {"HVXVelocity_4", kDouble, 0.0, "", true},
    {"HVXVelocity_5", kDouble, 0.0, "", true}, {"HVXVelocity_6", kDouble, 0.0, "", true},
};
constexpr ComponentLayout kSubmodel[] = {
    {"GlobalStepNumber", kInteger, 1.0},
    {"ScaleTimePeriod", kBoolean},
    {"Magnitude", kDouble},
    {"AbsoluteExteriorTolerance", kDouble, 0.0, "LENGTH"},
    {"RelativeExteriorTolerance", kDouble, 0.05},
};
constexpr ComponentLayout kInitialVelocity[] = {
    {"HVXInitialVelocity_1", kDouble},
    {"HVXInitialVelocity_2", kDouble},
    {"HVXInitialVelocity_3", kDouble},
};
constexpr ComponentLayout kContactControls[] = {
    {"OverclosureToleranceMode", kInteger},
    {"StabilizationCoefficient", kDouble},
    {"MaximumPenetration", kDouble, 0.0, "LENGTH"},
};
constexpr ComponentLayout kGasket[] = {
    {"StabilizationStiffness", kDouble, 0.0, "STIFFNESS"},
    {"InitialGap", kDouble, 0.0, "LENGTH"},
};
constexpr ComponentLayout kGeneralStaticStep[] = {
    {"StepTime", kDouble, 1.0, "Time"},         {"InitialIncrement", kDouble, 1.0, "Time"},
    {"MaximumIncrement", kDouble, 1.0, "Time"}, {"MinimumIncrement", kDouble, 0.00001, "Time"},
    {"StabilizationFactor", kDouble, 0.0002},
};
constexpr ComponentLayout kHeatTransferStep[] = {
    {"StepTime", kDouble, 1.0, "Time"},
    {"InitialIncrement", kDouble, 1.0, "Time"},
    {"MaximumIncrement", kDouble, 1.0, "Time"},
    {"MinimumIncrement", kDouble, 0.00001, "Time"},
    {"MinimumTemperatureChange", kDouble, -1.0, "TEMPRTRE"},
    {"MaximumTemperatureChange", kDouble, 1.0, "TEMPRTRE"},
};
constexpr ComponentLayout kPreTension[] = {
    {"Magnitude", kDouble, 0.0, "FORCE"},
    {"PreTensionType", kInteger},
    {"FixAtCurrentLength", kBoolean},
};
constexpr ComponentLayout kInitialTemperature[] = {
    {"Temperature", kDouble, 0.0, "TEMPRTRE"},
    {"MidsideNodes", kBoolean},
};
constexpr ComponentLayout kTemperatureHistory[] = {
    {"Temperature", kDouble, 0.0, "TEMPRTRE"},
    {"MidsideNodes", kBoolean},
    {"EndIncrement", kInteger},
};
constexpr ComponentLayout kDisplacement[] = {
    {"AxisSystemType", kInteger},
    {"HVXDisplacement_1", kDouble, 0.0, "", true},
    {"HVXDisplacement_2", kDouble, 0.0, "", true},
    {"HVXDisplacement_3", kDouble, 0.0, "", true},
    {"HVXDisplacement_4", kDouble, 0.0, "", true},
    {"HVXDisplacement_5", kDouble, 0.0, "", true},
    {"HVXDisplacement_6", kDouble, 0.0, "", true},
};
constexpr ComponentLayout kConcentratedForce[] = {
    {"AxisSystemType", kInteger},
    {"HVXForce_1", kDouble, 0.0, "FORCE"},
    {"HVXForce_2", kDouble, 0.0, "FORCE"},
    {"HVXForce_3", kDouble, 0.0, "FORCE"},
    {"HVXMoment_1", kDouble},
    {"HVXMoment_2", kDouble},
    {"HVXMoment_3", kDouble},
};
constexpr ComponentLayout kFieldOutput[] = {
    {"ElementOutputPosition", kInteger},
    {"AllSectionPoints", kBoolean},
};

struct Entry {
  std::string_view lateType;
  std::span<const ComponentLayout> layout;
};

constexpr Entry kLayouts[] = {
    {"HVXRotationalBodyForce", kRotationalBodyForce},
    {"HVXRigidBodyConstraintLT", kRigidBodyConstraint},
    {"HVXContactConnectionEnhancementStdLT", kContact},
    {"HVXContactConnectionEnhancementExplicitLT", kContact},
    {"HVXPressure", kPressure},
    {"HVXGravity", kGravity},
    {"HVXTemperatureLT", kTemperature},
    {"HVXConcHeatFlux", kConcHeatFlux},
    {"HVXSurfaceHeatFlux", kSurfaceHeatFlux},
    {"HVXFilmCondition", kFilmCondition},
    {"HVXAccelerationBCLT", kAcceleration},
    {"HVXVelocityBCLT", kVelocity},
    {"HVXSubmodelBCLT", kSubmodel},
    {"HVXInitialVelocityLT", kInitialVelocity},
    {"HVXContactControlsLT", kContactControls},
    {"HVXGaskPropertyLT", kGasket},
    {"HVXGeneralStaticStepLT", kGeneralStaticStep},
    {"HVXHeatTransferStepLT", kHeatTransferStep},
    {"HVXPreTensionPropertyLT", kPreTension},
    {"HVXInitialTemperatureLT", kInitialTemperature},
    {"HVXTemperatureHistoryLT", kTemperatureHistory},
    {"HVXDisplacementBC", kDisplacement},
    {"HVXConcentratedForce", kConcentratedForce},
    {"HVXNewFieldOutputLT", kFieldOutput},
};

// The holder of a component, which a slash in its layout's name tells, and its own name.
struct Place {
  Feature* holder;
  std::string_view name;
};

Place PlaceOf(Feature& feature, std::string_view path) {
  const std::size_t slash = path.find('/');
  if (slash == std::string_view::npos) return {&feature, path};
  return {FindComponent(feature, path.substr(0, slash)), path.substr(slash + 1)};
}

// Null where it lacks.
const Feature* ComponentAt(const Place& place) {
  return place.holder == nullptr ? nullptr : FindComponent(*place.holder, place.name);
}

bool Lacks(const Place& place) {
  return ComponentAt(place) == nullptr;
}

void Make(const Place& place, const ComponentLayout& layout) {
  if (place.holder == nullptr) return;
  Feature* const made = MakeComponent(*place.holder, place.name, layout.type, layout.magnitude);
  if (made == nullptr) return;
  Feature& component = *made;
  Document& document = *component.document;
  if (layout.type == kDouble)
    document.SetAttribute(component, kComponentValues.Id(), Value::Real(layout.value));
  if (layout.type == kInteger) {
    document.SetAttribute(component, kComponentValues.Id(),
                          Value::Integer(static_cast<std::int64_t>(layout.value)));
  }
  if (layout.switchable) document.SetAttribute(component, kComponentIsActive.Id(), Value::Integer(0));
}

}  // namespace

std::span<const ComponentLayout> LayoutOf(const LateType& type) {
  static const auto byLateType = [] {
    std::unordered_map<NameId, std::span<const ComponentLayout>> layouts;
    for (const Entry& entry : kLayouts) layouts.emplace(NameTable::Intern(entry.lateType), entry.layout);
    return layouts;
  }();
  const auto found = byLateType.find(type.Id());
  return found == byLateType.end() ? std::span<const ComponentLayout>() : found->second;
}

bool LacksComponents(Feature& feature) {
  // They mostly stand in the order of the layout, so each is looked for behind the one before.
  const Feature* next = feature.firstSon;
  return std::ranges::any_of(LayoutOf(*feature.type), [&](const ComponentLayout& layout) {
    const bool isNext = next != nullptr && next->name == layout.name && IsComponent(*next);
    const Feature* const found = isNext ? next : ComponentAt(PlaceOf(feature, layout.name));
    if (found != nullptr && found->father == &feature) next = found->nextSibling;
    return found == nullptr;
  });
}

std::vector<std::string_view> LackingComponents(Feature& feature) {
  std::vector<std::string_view> lacking;
  for (const ComponentLayout& layout : LayoutOf(*feature.type)) {
    if (Lacks(PlaceOf(feature, layout.name))) lacking.push_back(layout.name);
  }
  return lacking;
}

bool DiffersFromLayout(Feature& feature) {
  return std::ranges::any_of(LayoutOf(*feature.type), [&feature](const ComponentLayout& layout) {
    const Place place = PlaceOf(feature, layout.name);
    if (Lacks(place)) return true;
    VLMUnicodeString type;
    static_cast<void>(ReadAttribute(*FindComponent(*place.holder, place.name), kComponentType, type));
    return type.View() != layout.type;
  });
}

void CompleteComponents(Feature& feature) {
  for (const ComponentLayout& layout : LayoutOf(*feature.type)) {
    const Place place = PlaceOf(feature, layout.name);
    if (Lacks(place)) Make(place, layout);
  }
}

}  // namespace standalone
