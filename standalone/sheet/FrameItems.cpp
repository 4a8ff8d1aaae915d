// Cases, steps, jobs and solutions.

#include <array>

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kAnalysisTypes[] = {"nonlinear structural", "thermal", "explicit dynamics"};
constexpr std::string_view kResultTypes[] = {"static", "dynamic", "thermal"};
constexpr std::string_view kRestartModes[] = {"none", "", "", "intervals", "increments"};

void ReadPhysicalType(Reader& reader, Feature& feature, const Item& item) {
  if (feature.physicalType == kNoName) {
    reader.Enter(item, {});
  } else {
    reader.Set(item, Value::String(NameTable::Text(feature.physicalType)));
  }
}

void ReadPosition(Reader& reader, Feature& feature, const Item& item) {
  reader.Set(item, Value::Integer(reader.PositionOf(feature)));
}

// A current step keeps each quantity in a component that points to the parameter which drives it: nothing
// stands in for one that holds no value. The old attributes stay beside it, and count where there is no
// parameter; where neither is there, the component does.
void ReadStepQuantity(Reader& reader, Feature& feature, const Item& item) {
  Feature* const component = Reader::ComponentOf(feature, item.current.key);
  if (component != nullptr && reader.LinkedBy(*component, "Parameter") != nullptr) {
    reader.Enter(item, reader.FactAt(*component, item, Parameter("Parameter"), {}));
    return;
  }
  Fact fact = reader.FactAt(feature, item, item.old, {});
  if (fact.standing == Standing::kNotSet) fact = reader.FactAt(feature, item, item.current, {});
  reader.Enter(item, fact);
}

constexpr Item Step(std::string_view name, Dimension dimension, std::string_view component,
                    std::string_view old) {
  Item item = Real(name, dimension, Component(component), Parameter(old));
  item.read = ReadStepQuantity;
  return item;
}

constexpr Item kPhysicalType = Custom({"physical type"}, ReadPhysicalType);
constexpr Item kPosition = Custom({"position in the history"}, ReadPosition);
constexpr Item kTimePeriod = Step("time period", Dimension::kTime, "StepTime", "StepTimePeriod_param");
constexpr Item kInitialIncrement =
    Step("initial increment", Dimension::kTime, "InitialIncrement", "StepInitialIncrement_param");
constexpr Item kMaximumIncrement =
    Step("maximum increment", Dimension::kTime, "MaximumIncrement", "StepMaximumIncrement_param");
constexpr Item kMinimumIncrement =
    Step("minimum increment", Dimension::kTime, "MinimumIncrement", "StepMinimumIncrement_param");
constexpr Item kNonlinear = Flag("nonlinear geometry", Attribute("NonlinearGeometry"), kNoFallback);
constexpr Item kIncrements = Integer("maximum number of increments", Attribute("MaximumIncrements"));

constexpr Item kCaseItems[] = {
    Words("solver", Attribute("Solver")),
    Integer("analysis type", Attribute("AnalysisType"), {}, {kAnalysisTypes, 1}),
    Integer("case kind", Attribute("CaseKind"), Number(0)),
    kPhysicalType,
    Integer("number of modes", Attribute("NumberOfModes")),
};
constexpr Item kInitialStepItems[] = {kPosition};
constexpr Item kStaticItems[] = {
    kPosition,
    kTimePeriod,
    kInitialIncrement,
    kMinimumIncrement,
    kMaximumIncrement,
    Step("stabilization factor", Dimension::kRatio, "StabilizationFactor", "StepStabilizationFactor_param"),
    kNonlinear,
    kIncrements,
};
constexpr Item kHeatTransferItems[] = {
    kPosition,
    kTimePeriod,
    kInitialIncrement,
    kMinimumIncrement,
    kMaximumIncrement,
    Step("minimum temperature change", Dimension::kTemperature, "MinimumTemperatureChange",
         "StepMinimumTemperatureChange_param"),
    Step("maximum temperature change", Dimension::kTemperature, "MaximumTemperatureChange",
         "StepMaximumTemperatureChange_param"),
    Flag("steady state", Attribute("Steady"), kNoFallback),
    kIncrements,
};
constexpr Item kRiksItems[] = {
    kPosition,
    Real("initial arc length", Dimension::kRatio, Attribute("InitialArcLength")),
    Real("maximum load factor", Dimension::kRatio, Attribute("MaximumLoadFactor")),
    kNonlinear,
    kIncrements,
};
constexpr Item kPerturbationItems[] = {kPosition,
                                       Real("load factor", Dimension::kRatio, Attribute("LoadFactor"))};
constexpr Item kExplicitItems[] = {
    kPosition, Real("time period", Dimension::kTime, Parameter("StepTimePeriod_param")), kNonlinear};

constexpr Item kJobItems[] = {
    Link("case", Attribute("AnalysisCase")),
    Words("run type", Attribute("RunType"), Text("")),
    Integer("restart frequency", Attribute("RestartFrequency"), Number(0)),
    Flag("restart written", Attribute("RestartFlag")),
    Integer("restart mode", Attribute("RestartMode"), Number(0), {kRestartModes, 0}),
    Integer("restart interval", Attribute("RestartInterval"), Number(0)),
    Integer("memory limit", Attribute("MemoryLimit")),
    Integer("memory unit", Attribute("MemoryUnit"), Number(0)),
    Integer("processors", Attribute("Processors")),
    Flag("runs an input file", Attribute("InputFileFlag")),
    Words("input file", Attribute("InputFile")),
};
constexpr Item kSolutionItems[] = {
    Link("case", Attribute("AnalysisCase")),
    Link("working case", Attribute("WorkingCase")),
    Link("mesh of", Attribute("AttachedExplicit")),
    kPhysicalType,
};
constexpr Item kStepSolutionItems[] = {
    Integer("result type", Attribute("ResultStepType"), {}, {kResultTypes, 1}),
    Link("step", Attribute("Step")),
    kPhysicalType,
};

constexpr Description kDescriptions[] = {
    {"AnalysisCase", {"analysis case", Chapter::kCase}, kCaseItems},
    {"HVXInitialStepLT", {"initial step", Chapter::kStep}, kInitialStepItems},
    {"HVXGeneralStaticStepLT", {"general static step", Chapter::kStep}, kStaticItems},
    {"HVXHeatTransferStepLT", {"heat transfer step", Chapter::kStep}, kHeatTransferItems},
    {"HVXRiksStepLT", {"Riks step", Chapter::kStep}, kRiksItems},
    {"HVXStaticLPStepLT", {"linear perturbation step", Chapter::kStep}, kPerturbationItems},
    {"HVXExplicitDynamicsStepLT", {"explicit dynamics step", Chapter::kStep}, kExplicitItems},
    {"HVXJobLT", {"job", Chapter::kJob}, kJobItems},
    {"HVXJobContainerLT", {"settings of new jobs", Chapter::kJob}, kJobItems},
    {"HVXHacSolutionLT", {"solution", Chapter::kSolution}, kSolutionItems},
    {"HVXHacAnaStepSolLT", {"solution of a step", Chapter::kSolution}, kStepSolutionItems},
};

}  // namespace

std::span<const Description> FrameDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
