// Values of another kind than the one that is read, and links to other features than belong there: the
// readers take them for missing.

#include <algorithm>
#include <limits>
#include <optional>

#include "analysis/Components.h"
#include "analysis/MeshNumbers.h"
#include "check/LinkTargets.h"
#include "check/Rules.h"

namespace standalone {
namespace {

enum class Stored : std::uint8_t {
  kText,
  kSolver,   // "Halvex", or the name of another product
  kInteger,  // of 32 bits
  kCount,    // of mesh objects
  kNumber,   // real or integer
  kFlag,     // boolean, or 0 or 1
  kLink,
  kLinks,    // a list of them
  kNumbers,  // a list of them
  kTexts,    // a list of them
  kList,
  kFlags,     // four of them
  kPair,      // of numbers
  kCode0To1,  // what stands for one of a few things; routines take a default for any other number
  kCode0To2,
  kCode1To2,
  kCode1To3,
};

constexpr DamageKind kNoText{"{} holds no text", "Give {} a text"};
constexpr DamageKind kOtherLetters{
    "{} is \"Halvex\" in other letters, so its case counts as another product's", "Write {} as \"Halvex\""};
constexpr DamageKind kNoInteger{"{} holds no integer within 32 bits", "Give {} an integer"};
constexpr DamageKind kNoCount{"{} holds no count of mesh objects", "Mesh the part again"};
constexpr DamageKind kNoNumber{"{} holds no number", "Give {} a number"};
constexpr DamageKind kNoFlag{"{} holds neither true nor false", "Give {} the value true or false"};
constexpr DamageKind kNoLink{"{} holds no link", "Make {} a link"};
constexpr DamageKind kNoLinks{"{} holds other than links", "Make {} a list of links"};
constexpr DamageKind kNoNumbers{"{} holds other than numbers", "Make {} a list of numbers"};
constexpr DamageKind kNoTexts{"{} holds other than texts", "Make {} a list of texts"};
constexpr DamageKind kOtherKind{"{} leads to a feature of another kind",
                                "Let {} lead to a feature of the kind that belongs there"};
constexpr DamageKind kNoList{"{} holds no list", "Make {} a list"};
constexpr DamageKind kNoActivity{"{} holds neither an integer nor true or false", "Give {} the value 0 or 1"};
constexpr DamageKind kNoCode{"{} holds none of its codes", "Give {} one of its codes"};
constexpr DamageKind kNoFlags{"{} does not hold four times true or false",
                              "Give {} four times true or false"};
constexpr DamageKind kNoPair{"{} does not hold two numbers", "Give {} two numbers"};
constexpr DamageKind kNoType{"its \"Type\" is none of the five of components, so {} cannot be read",
                             "Give the component the \"Type\" that belongs to its {}"};

bool IsNumber(const Value& value) {
  return value.Kind() == ValueKind::kReal || value.Kind() == ValueKind::kInteger;
}

bool IsInteger(const Value& value, std::int64_t least, std::int64_t most) {
  return value.Kind() == ValueKind::kInteger && value.AsInteger() >= least && value.AsInteger() <= most;
}

bool IsInteger32(const Value& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return IsInteger(value, Limits::min(), Limits::max());
}

bool IsFlag(const Value& value) {
  return value.Kind() == ValueKind::kBoolean || IsInteger(value, 0, 1);
}

template <class Predicate>
bool IsListOf(const Value& value, Predicate predicate) {
  return value.Kind() == ValueKind::kList && std::ranges::all_of(value.Entries(), predicate);
}

bool IsInOtherLetters(std::string_view solver) {
  constexpr std::string_view kName = "halvex";
  return solver != "Halvex" && std::ranges::equal(solver, kName, [](char letter, char small) {
           return letter == small || letter == small - 'a' + 'A';
         });
}

// Null when the value is what is to be stored.
const DamageKind* FaultOf(const Value& value, Stored stored) {
  const auto unless = [](bool sound, const DamageKind& kind) { return sound ? nullptr : &kind; };
  switch (stored) {
    case Stored::kText:
      return unless(value.Kind() == ValueKind::kString, kNoText);
    case Stored::kSolver:
      if (value.Kind() != ValueKind::kString) return &kNoText;
      return unless(!IsInOtherLetters(value.AsString()), kOtherLetters);
    case Stored::kInteger:
      return unless(IsInteger32(value), kNoInteger);
    case Stored::kCount:
      return unless(IsInteger(value, 0, kMostMeshObjects), kNoCount);
    case Stored::kNumber:
      return unless(IsNumber(value), kNoNumber);
    case Stored::kFlag:
      return unless(IsFlag(value), kNoFlag);
    case Stored::kLink:
      return unless(value.Kind() == ValueKind::kLink, kNoLink);
    case Stored::kLinks:
      return unless(IsListOf(value, [](const Value& each) { return each.Kind() == ValueKind::kLink; }),
                    kNoLinks);
    case Stored::kNumbers:
      return unless(IsListOf(value, IsNumber), kNoNumbers);
    case Stored::kTexts:
      return unless(IsListOf(value, [](const Value& each) { return each.Kind() == ValueKind::kString; }),
                    kNoTexts);
    case Stored::kList:
      return unless(value.Kind() == ValueKind::kList, kNoList);
    case Stored::kFlags:
      return unless(IsListOf(value, IsFlag) && value.Entries().size() == 4, kNoFlags);
    case Stored::kPair:
      return unless(IsListOf(value, IsNumber) && value.Entries().size() == 2, kNoPair);
    case Stored::kCode0To1:
      return unless(IsInteger(value, 0, 1), kNoCode);
    case Stored::kCode0To2:
      return unless(IsInteger(value, 0, 2), kNoCode);
    case Stored::kCode1To2:
      return unless(IsInteger(value, 1, 2), kNoCode);
    case Stored::kCode1To3:
      return unless(IsInteger(value, 1, 3), kNoCode);
  }
  return nullptr;
}

struct StoredAs {
  std::string_view lateType;  // or kind
  Stored stored;
  std::initializer_list<std::string_view> keys;
};

// docs/data-model.md describes them. Codes that are only carried over may be any integer.
const StoredAs kStored[] = {
    {kind::kParameter, Stored::kNumber, {"Value"}},
    {kind::kConnector, Stored::kLink, {"FirstObject", "SecondObject"}},
    {kind::kAnalysisModel, Stored::kLinks, {"FeatList"}},
    {kind::kAnalysisModel, Stored::kFlag, {"ExplicitModel", "CreatesParameters"}},
    {kind::kAnalysisCase, Stored::kSolver, {"Solver"}},
    {kind::kAnalysisCase, Stored::kCode1To3, {"AnalysisType"}},
    {kind::kAnalysisCase, Stored::kCode0To1, {"CaseKind"}},
    {kind::kAnalysisEntity, Stored::kLinks, {"Supports", "SonsList"}},
    {kind::kAnalysisEntity, Stored::kInteger, {"SupportListMode"}},
    {kind::kAnalysisEntity,
     Stored::kLink,
     {"pressure_param", "magnitude_param", "refTemperature_param", "velocity_param", "acceleration_param",
      "component1_param", "component2_param", "component3_param", "adjustTolVal_param", "RotationAxis",
      "connectionProperty"}},
    {kind::kStep,
     Stored::kLink,
     {"StepTimePeriod_param", "StepInitialIncrement_param", "StepMaximumIncrement_param",
      "StepMinimumIncrement_param", "StepStabilizationFactor_param", "StepMinimumTemperatureChange_param",
      "StepMaximumTemperatureChange_param"}},
    {kind::kGroup, Stored::kCode0To1, {"GroupKind"}},
    {kind::kGroup, Stored::kFlag, {"DefinedOnMeshPart"}},
    {kind::kGroup, Stored::kLinks, {"Members"}},
    {kind::kPart, Stored::kLink, {"MainBody"}},
    {kind::kPart, Stored::kLinks, {"Bodies"}},
    {"MechanicalPart", Stored::kLinks, {"Results"}},
    {"GeometricalElement", Stored::kLink, {"Body"}},
    {kind::kMeshPart, Stored::kCount, {"ElementCount", "NodeCount"}},
    {kind::kMeshPart, Stored::kNumbers, {"ElementUserNumbers", "NodeUserNumbers"}},
    {kind::kMeshPart, Stored::kText, {"MeshType"}},
    {kind::kMeshPart, Stored::kLink, {"MeshingOperator"}},
    {kind::kMeshPart, Stored::kTexts, {"NotReadyIn"}},
    {"MSHMeshingOperator", Stored::kLink, {"ConnectionMesher"}},
    {"MSHConnectionMesher", Stored::kLinks, {"Points", "Products", "MeshParts"}},
    {"HVXVirtualPartLT", Stored::kLinks, {"MeshParts"}},
    {"SAMGenericConnDesign", Stored::kLinks, {"Points", "Products"}},
    {"HVXJobLT", Stored::kText, {"RunType"}},
    {"HVXJobLT",
     Stored::kInteger,
     {"RestartFrequency", "MemoryUnit", "RestartMode", "RestartInterval", "RestartFlag", "InputFileFlag"}},
    {"HVXJobLT", Stored::kLink, {"AnalysisCase"}},
    {"HVXJobContainerLT", Stored::kText, {"RunType"}},
    {"HVXJobContainerLT",
     Stored::kInteger,
     {"RestartFrequency", "MemoryUnit", "RestartMode", "RestartInterval", "RestartFlag", "InputFileFlag"}},
    {"HVXHacSolutionLT", Stored::kLink, {"AnalysisCase", "WorkingCase"}},
    {"HVXHacAnaStepSolLT", Stored::kCode1To3, {"ResultStepType"}},
    {"SAMFaceFaceContact", Stored::kCode1To2, {"ContactKind"}},
    {"SAMFaceFaceContact", Stored::kFlag, {"ClearanceFlag"}},
    {"SAMFaceFaceContact", Stored::kNumber, {"Clearance"}},
    {"SAMFaceFaceContact", Stored::kLink, {"InterferenceFit"}},
    {"HVXInterferenceFitLT", Stored::kInteger, {"FitType", "Definition"}},
    {"HVXInterferenceFitLT", Stored::kNumber, {"Value"}},
    {"HVXSurfaceToSurfaceContactLT",
     Stored::kFlag,
     {"surfacesSwapped", "firstSurfaceReversed", "secondSurfaceReversed", "thicknessOption"}},
    {"HVXSurfaceToSurfaceContactLT", Stored::kCode0To1, {"slidingFormulation", "constraintEnforcement"}},
    {"HVXSurfaceToSurfaceContactLT", Stored::kCode0To2, {"adjustment"}},
    {"HVXSurfaceToSurfaceContactLT", Stored::kLink, {"interactionProperty", "adjustmentGroup"}},
    {"HVXContactConnectionEnhancementStdLT", Stored::kNumber, {"SearchTolerance", "OverclosureTolerance"}},
    {"HVXContactConnectionEnhancementStdLT", Stored::kLink, {"ContactControl", "InterferenceFit"}},
    {"HVXContactConnectionEnhancementExplicitLT", Stored::kLink, {"ContactControl"}},
    {kind::kAnalysisEntity, Stored::kCode0To1, {"PropagationState"}},
    {kind::kAnalysisEntity, Stored::kLink, {"MeshPart", "ReferenceConnector"}},
    {kind::kAnalysisEntity, Stored::kLinks, {"ExclusionRegions", "ConnectionDesigns"}},
    {"HVXRigidBodyConstraintLT", Stored::kInteger, {"CenterOfMass"}},
    {"HVXInteractionPropertyLT", Stored::kLink, {"tangentialBehavior"}},
    {"HVXTangentialBehaviorLT", Stored::kFlag, {"UserSubroutine"}},
    {"HVXTangentialBehaviorLT", Stored::kNumbers, {"frictionValList"}},
    {"HVXTangentialBehaviorLT", Stored::kList, {"FrictionTable"}},
    {"HVXTangentialBehaviorLT", Stored::kInteger, {"FrictionFormulation"}},
    {"HVXShellSectionEnhLT", Stored::kLink, {"MaterialOrientation"}},
    {"HVXMatOrientationLT", Stored::kNumber, {"Angle"}},
    {"HVXNewFieldOutputLT", Stored::kInteger, {"FrequencyType", "Frequency", "VariableSelection"}},
    {"HVXNewFieldOutputLT", Stored::kText, {"PreselectedVariableList"}},
    {"HVXFieldOutputLT", Stored::kInteger, {"FrequencyType", "Frequency"}},
    {"HVXGlobalElemAsgnLT", Stored::kLinks, {"Entries"}},
    {"HVXGlobalElemAsgnEntryLT", Stored::kInteger, {"Kind"}},
    {"HVXGlobalElemAsgnEntryLT", Stored::kLinks, {"ElementAssignments"}},
    {"HVXLocalElemAsgnLT", Stored::kLinks, {"ElementAssignments", "HVXListElementAsgnSpec"}},
    {"HVXElementAssignmentLT", Stored::kInteger, {"ElementShape", "ElementOrder", "Formulation"}},
    {"HVXElementAssignmentLT", Stored::kFlags, {"ElementOptions"}},
    {"HVXElementAssignmentLT", Stored::kPair, {"ElementOptionValues"}},
    {"HVXElementAssignmentLT", Stored::kLink, {"SectionControlsSpec"}},
    {"HVXSectionControlsLT", Stored::kInteger, {"DistortionContol", "HourglassControl"}},
    {"HVXSectionControlsLT", Stored::kFlag, {"SecondOrderAccuracy"}},
    {"HVXSectionControlsLT",
     Stored::kNumber,
     {"LengthRatio", "StiffnessViscousWtFactor", "DispHourglassScalingFactor", "RotHourglassScalingFactor",
      "OutOfPlaneHourglassScalingFactor"}},
};

// How a late type's attributes are stored, by the number of their key.
struct StoredKey {
  std::optional<Stored> stored;
  const LinkTarget* leadsTo = nullptr;
};
using StoredByKey = std::vector<StoredKey>;

StoredByKey KeysOf(const LateType& type) {
  StoredByKey keys;
  const auto entryOf = [&keys](std::string_view text) -> StoredKey& {
    const NameId key = NameTable::Intern(text);
    if (key >= keys.size()) keys.resize(key + std::size_t{1});
    return keys[key];
  };
  for (const StoredAs& each : kStored) {
    if (!type.MetaClass().IsAKindOf(each.lateType)) continue;
    for (const std::string_view text : each.keys) entryOf(text).stored = each.stored;
  }
  for (const LinkTarget& each : LinkTargets()) {
    if (!type.MetaClass().IsAKindOf(each.lateType)) continue;
    for (const std::string_view text : each.keys) entryOf(text).leadsTo = &each;
  }
  return keys;
}

// Null when the value is what is to be stored there.
const DamageKind* FaultOf(const Value& value, const StoredKey& key) {
  const DamageKind* const fault = key.stored ? FaultOf(value, *key.stored) : nullptr;
  if (fault != nullptr || key.leadsTo == nullptr) return fault;
  return LeadsElsewhere(value, *key.leadsTo) ? &kOtherKind : nullptr;
}

// Another product's codes are its own.
bool IsOfAnotherProduct(const FeatureState& analysisCase) {
  static const Key solver("Solver");
  return std::ranges::none_of(analysisCase.Attributes(), [](const Attribute& each) {
    return each.key == solver.Id() && each.value == Value::String("Halvex");
  });
}

Verdict Misread(Feature& feature, const Survey& /*survey*/) {
  std::vector<Damage> damage = MisreadIn(feature);
  return damage.empty() ? Conforms() : Verdict{Verdict::State::kBeyond, std::move(damage)};
}

// A component's value is what its type says.
Verdict UnreadableComponent(Feature& feature, const Survey& /*survey*/) {
  const Attribute* const values = feature.document->FindAttribute(feature, kComponentValues.Id());
  const std::string_view type = check::TextOf(feature, kComponentType);
  if (values == nullptr)
    return type == "SAMComposite" || type.empty() ? Conforms()
                                                  : Beyond(check::kMissing, kComponentValues.Text());
  const DamageKind* fault = &kNoType;
  if (type == "SAMDouble") fault = FaultOf(values->value, Stored::kNumber);
  if (type == "SAMInteger") fault = FaultOf(values->value, Stored::kInteger);
  if (type == "SAMBoolean") fault = FaultOf(values->value, Stored::kFlag);
  if (type == "SAMString") fault = FaultOf(values->value, Stored::kText);
  if (type == "SAMComposite") fault = nullptr;
  if (fault != nullptr) return Beyond(*fault, kComponentValues.Text());
  const Attribute* const active = feature.document->FindAttribute(feature, kComponentIsActive.Id());
  if (active == nullptr || IsInteger32(active->value) || IsFlag(active->value)) return Conforms();
  return Beyond(kNoActivity, kComponentIsActive.Text());
}

constexpr ConformityRule kRules[] = {
    {"VLMKpeParm VLMSamAnalysisConnector VLMSamAnalysisModel VLMSamAnalysisSet VLMSamAnalysisEntity "
     "PrtContainer VLMPrtPart MechanicalPart GeometricalElement MSHMeshingOperator MSHConnectionMesher",
     {},
     kUnreadableReason,
     Misread},
    {"VLMSamBasicComponent", {}, kUnreadableReason, UnreadableComponent},
};

}  // namespace

std::vector<Damage> MisreadIn(const FeatureState& state) {
  const auto& keys = state.type->Noted<StoredByKey>(LateType::Subject::kStoredValues, KeysOf);
  std::vector<Damage> damage;
  for (const Attribute& attribute : state.Attributes()) {
    if (attribute.key >= keys.size()) continue;
    const DamageKind* const fault = FaultOf(attribute.value, keys[attribute.key]);
    const bool isForeign = fault == &kNoCode && state.type->MetaClass().IsAKindOf(kind::kAnalysisCase) &&
                           IsOfAnotherProduct(state);
    if (fault != nullptr && !isForeign)
      damage.push_back({fault, std::string(NameTable::Text(attribute.key))});
  }
  check::AppendMissing(state, damage);
  return damage;
}

std::span<const ConformityRule> ValueRules() {
  return kRules;
}

}  // namespace standalone
