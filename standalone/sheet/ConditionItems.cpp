// Boundary conditions, loads and initial conditions.

#include <array>

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr Choice kTillRegistered = Choice::kOldTillRegistered;

// A motion in six degrees of freedom, and the names of the components that hold them.
struct MotionNames {
  std::array<std::string_view, 6> current;
  std::array<std::string_view, 6> old;
};

// Acceleration conditions of old releases bear the names of velocities.
constexpr std::array<std::string_view, 6> kOldMotion{
    "HVXTranslationalVelocity_1", "HVXTranslationalVelocity_2", "HVXTranslationalVelocity_3",
    "HVXRotationalVelocity_1",    "HVXRotationalVelocity_2",    "HVXRotationalVelocity_3"};
constexpr MotionNames kDisplacement{{"HVXDisplacement_1", "HVXDisplacement_2", "HVXDisplacement_3",
                                     "HVXDisplacement_4", "HVXDisplacement_5", "HVXDisplacement_6"},
                                    {}};
constexpr MotionNames kVelocity{
    {"HVXVelocity_1", "HVXVelocity_2", "HVXVelocity_3", "HVXVelocity_4", "HVXVelocity_5", "HVXVelocity_6"},
    kOldMotion};
constexpr MotionNames kAcceleration{{"HVXAcceleration_1", "HVXAcceleration_2", "HVXAcceleration_3",
                                     "HVXAcceleration_4", "HVXAcceleration_5", "HVXAcceleration_6"},
                                    kOldMotion};

constexpr std::size_t kTranslations = 3;

// The dimensions of translations and rotations.
using Dimensions = std::array<Dimension, 2>;
constexpr Dimensions kLengths{Dimension::kLength, Dimension::kAngle};
constexpr Dimensions kVelocities{Dimension::kVelocity, Dimension::kAngularVelocity};
constexpr Dimensions kAccelerations{Dimension::kAcceleration, Dimension::kAngularAcceleration};

Source PlaceOf(Feature& feature, const MotionNames& names, std::size_t i) {
  const bool isOld = !names.old[i].empty() && Reader::ComponentOf(feature, names.old[i]) != nullptr;
  return Component(isOld ? names.old[i] : names.current[i]);
}

template <const MotionNames& kNames, const Dimensions& kDimensions>
void ReadMotion(Reader& reader, Feature& feature, const Item& item) {
  for (std::size_t i = 0; i < kNames.current.size(); ++i) {
    Item one = item;
    one.dimension = kDimensions[i < kTranslations ? 0 : 1];
    Fact fact = reader.FactAt(feature, one, PlaceOf(feature, kNames, i), {});
    if (fact.standing == Standing::kNotSet) {
      fact.standing = Standing::kDefault;
      fact.value = Value::Real(0);
    }
    fact.index = static_cast<std::uint32_t>(i + 1);
    reader.Enter(item, fact);
  }
}

// A component says by a number of its own whether its degree of freedom is prescribed.
template <const MotionNames& kNames>
void ReadActivity(Reader& reader, Feature& feature, const Item& item) {
  for (std::size_t i = 0; i < kNames.current.size(); ++i) {
    Fact fact{.index = static_cast<std::uint32_t>(i + 1)};
    Feature* const component = Reader::ComponentOf(feature, PlaceOf(feature, kNames, i).key);
    const Value* const active = component == nullptr ? nullptr : reader.AttributeOf(*component, "IsActive");
    if (active == nullptr) {
      fact.standing = Standing::kDefault;
      fact.value = Value::Boolean(false);
    } else if (active != nullptr && active->Kind() == ValueKind::kInteger) {
      fact.standing = Standing::kSet;
      fact.value = Value::Boolean(active->AsInteger() != 0);
    } else if (active != nullptr) {
      fact.standing = active->Kind() == ValueKind::kBoolean ? Standing::kSet : Standing::kUnreadable;
      fact.value = *active;
    }
    reader.Enter(item, fact);
  }
}

template <const MotionNames& kNames, const Dimensions& kDimensions>
constexpr Item Motion(std::string_view name) {
  return Custom({name, "degree of freedom"}, ReadMotion<kNames, kDimensions>);
}
template <const MotionNames& kNames>
constexpr Item Activity() {
  return Custom({"prescribed", "degree of freedom"}, ReadActivity<kNames>);
}

constexpr std::array<std::string_view, 5> kRepeated{"GlobalStepNumber", "ScaleTimePeriod", "Magnitude",
                                                    "AbsoluteExteriorTolerance", "RelativeExteriorTolerance"};

// Old releases wrote a submodel's parameters several times, the repetitions with a dot and a number behind
// the name. The first in the list of sons is the one that counted.
Feature* FirstRepetition(const Reader& reader, Feature& feature, std::string_view name) {
  for (const Value& entry : reader.ListIn(feature, "SonsList")) {
    Feature* const son = entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr;
    if (son != nullptr && son->name.substr(0, son->name.find('.')) == name) return son;
  }
  return nullptr;
}

template <std::size_t kWhich>
void ReadRepeated(Reader& reader, Feature& feature, const Item& item) {
  Item one = item;
  one.read = nullptr;
  one.current = Component(kRepeated[kWhich]);
  Feature* const first = FirstRepetition(reader, feature, kRepeated[kWhich]);
  Fact fact = reader.Evaluate(feature, one);
  if (first != nullptr) {
    const Dimension dimension = fact.dimension;
    one.current = Attribute("Values");
    fact = reader.Evaluate(*first, one);
    fact.dimension = dimension;
  }
  reader.Enter(item, fact);
}

template <std::size_t kWhich>
constexpr Item Repeated(std::string_view name, double fallback, Dimension dimension = Dimension::kNone) {
  constexpr std::array<As, kRepeated.size()> kAs{As::kInteger, As::kFlag, As::kReal, As::kReal, As::kReal};
  Item item = Custom({name}, ReadRepeated<kWhich>, dimension);
  item.as = kAs[kWhich];
  item.fallback = Number(fallback);
  return item;
}

constexpr Item kAmplitude = Words("amplitude", Attribute("AmplitudeName"));
constexpr Item kResultsFile = Words("results file", Attribute("ResultsFile"));
constexpr Item kStepNumber = Integer("step of the results", Attribute("StepNumber"));
constexpr Item kAxisSystem = Integer("axis system type", Component("AxisSystemType"), Number(0));
constexpr Item kInvertSurface = Flag("surface inverted", Component("InvertSurface"));
constexpr Item kMidsideNodes = Flag("midside nodes interpolated", Component("MidsideNodes"));

constexpr Item kClampItems[] = {kSupportItem};
constexpr Item kDisplacementItems[] = {kSupportItem,
                                       Motion<kDisplacement, kLengths>("displacement"),
                                       Activity<kDisplacement>(),
                                       kAxisSystem,
                                       kAmplitude,
                                       kResultsFile,
                                       kStepNumber};
constexpr Item kVelocityItems[] = {kSupportItem, Motion<kVelocity, kVelocities>("velocity"),
                                   Activity<kVelocity>(), kAmplitude};
constexpr Item kAccelerationItems[] = {kSupportItem, Motion<kAcceleration, kAccelerations>("acceleration"),
                                       Activity<kAcceleration>(), kAmplitude};
constexpr Item kForceItems[] = {
    kSupportItem,
    Real("force 1", Dimension::kForce, Component("HVXForce_1"), {}, Number(0)),
    Real("force 2", Dimension::kForce, Component("HVXForce_2"), {}, Number(0)),
    Real("force 3", Dimension::kForce, Component("HVXForce_3"), {}, Number(0)),
    Real("moment 1", Dimension::kMoment, Component("HVXMoment_1"), {}, Number(0)),
    Real("moment 2", Dimension::kMoment, Component("HVXMoment_2"), {}, Number(0)),
    Real("moment 3", Dimension::kMoment, Component("HVXMoment_3"), {}, Number(0)),
    kAxisSystem,
    kAmplitude,
};
constexpr Item kPressureItems[] = {
    kSupportItem, Real("pressure", Dimension::kPressure, Component("Pressure"), Parameter("pressure_param")),
    kAmplitude};
constexpr Item kGravityItems[] = {
    kSupportItem,
    Real("acceleration 1", Dimension::kAcceleration, Component("HVXGravity_1"),
         Parameter("component1_param")),
    Real("acceleration 2", Dimension::kAcceleration, Component("HVXGravity_2"),
         Parameter("component2_param")),
    Real("acceleration 3", Dimension::kAcceleration, Component("HVXGravity_3"),
         Parameter("component3_param")),
    kAmplitude,
};
constexpr Item kRotationItems[] = {
    kSupportItem,
    Real("angular velocity", Dimension::kAngularVelocity, Component("AngularVelocity"),
         Parameter("velocity_param"), {}, kTillRegistered),
    Real("angular acceleration", Dimension::kAngularAcceleration, Component("AngularAcceleration"),
         Parameter("acceleration_param"), {}, kTillRegistered),
    Link("axis", Attribute("RotationAxis")),
    Link("part of the axis", Attribute("RotationAxisPart")),
    kAmplitude,
};
constexpr Item kTemperatureItems[] = {
    kSupportItem,
    Real("temperature", Dimension::kTemperature, Component("Temperature"), Parameter("magnitude_param")),
    kAmplitude};
constexpr Item kInitialTemperatureItems[] = {
    kSupportItem,
    Real("temperature", Dimension::kTemperature, Component("Temperature"), Parameter("magnitude_param")),
    kMidsideNodes, kResultsFile, kStepNumber};
constexpr Item kTemperatureHistoryItems[] = {
    kSupportItem,
    Real("temperature", Dimension::kTemperature, Component("Temperature"), Parameter("magnitude_param"), {},
         kTillRegistered),
    kMidsideNodes,
    Integer("end increment", Component("EndIncrement"), Number(0)),
    kResultsFile,
    kStepNumber,
    kAmplitude,
};
constexpr Item kHeatFlowItems[] = {kSupportItem,
                                   Real("heat flow", Dimension::kHeatFlow, Component("HeatFlux"),
                                        Parameter("magnitude_param"), {}, kTillRegistered),
                                   kAmplitude};
constexpr Item kSurfaceFluxItems[] = {kSupportItem,
                                      Real("heat flux", Dimension::kSurfaceHeatFlux, Component("HeatFlux"),
                                           Parameter("magnitude_param"), {}, kTillRegistered),
                                      kInvertSurface, kAmplitude};
constexpr Item kBodyFluxItems[] = {
    kSupportItem, Real("heat flux", Dimension::kBodyHeatFlux, {}, Parameter("magnitude_param")), kAmplitude};
constexpr Item kFilmItems[] = {
    kSupportItem,
    Real("film coefficient", Dimension::kFilmCoefficient, Component("FilmCoefficient"), {}, Number(0)),
    Real("reference temperature", Dimension::kTemperature, Component("ReferenceTemperature"),
         Parameter("refTemperature_param")),
    kInvertSurface,
    kAmplitude,
};
constexpr Item kInitialVelocityItems[] = {
    kSupportItem,
    Real("velocity 1", Dimension::kVelocity, Component("HVXInitialVelocity_1"), {}, Number(0)),
    Real("velocity 2", Dimension::kVelocity, Component("HVXInitialVelocity_2"), {}, Number(0)),
    Real("velocity 3", Dimension::kVelocity, Component("HVXInitialVelocity_3"), {}, Number(0)),
};
constexpr Item kSubmodelItems[] = {
    kSupportItem,
    Repeated<0>("step of the global model", 1),
    Repeated<1>("time period scaled", 0),
    Repeated<2>("magnitude", 0),
    Repeated<3>("absolute exterior tolerance", 0, Dimension::kLength),
    Repeated<4>("relative exterior tolerance", 0.05, Dimension::kRatio),
    kResultsFile,
};

constexpr Description kDescriptions[] = {
    {"HVXClamp", {"clamp", Chapter::kRestraint}, kClampItems},
    {"HVXDisplacementBC", {"displacement", Chapter::kRestraint}, kDisplacementItems},
    {"HVXVelocityBCLT", {"velocity", Chapter::kRestraint}, kVelocityItems},
    {"HVXAccelerationBCLT", {"acceleration", Chapter::kRestraint}, kAccelerationItems},
    {"HVXSubmodelBCLT", {"submodel condition", Chapter::kRestraint}, kSubmodelItems},
    {"HVXTemperatureLT", {"temperature", Chapter::kRestraint}, kTemperatureItems},
    {"HVXConcentratedForce", {"concentrated force", Chapter::kLoad}, kForceItems},
    {"HVXPressure", {"pressure", Chapter::kLoad}, kPressureItems},
    {"HVXGravity", {"gravity", Chapter::kLoad}, kGravityItems},
    {"HVXRotationalBodyForce", {"rotational body force", Chapter::kLoad}, kRotationItems},
    {"HVXTemperatureHistoryLT", {"temperature history", Chapter::kLoad}, kTemperatureHistoryItems},
    {"HVXConcHeatFlux", {"concentrated heat flux", Chapter::kLoad}, kHeatFlowItems},
    {"HVXSurfaceHeatFlux", {"surface heat flux", Chapter::kLoad}, kSurfaceFluxItems},
    {"HVXBodyHeatFlux", {"body heat flux", Chapter::kLoad}, kBodyFluxItems},
    {"HVXFilmCondition", {"film condition", Chapter::kLoad}, kFilmItems},
    {"HVXInitialTemperatureLT", {"initial temperature", Chapter::kLoad}, kInitialTemperatureItems},
    {"HVXInitialVelocityLT", {"initial velocity", Chapter::kLoad}, kInitialVelocityItems},
};

}  // namespace

std::span<const Description> ConditionDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
