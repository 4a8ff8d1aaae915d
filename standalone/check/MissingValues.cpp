// Values that are missing where old documents always hold one.

#include <algorithm>

#include "analysis/Components.h"
#include "check/Rules.h"

namespace standalone {
namespace {

constexpr DamageKind kNoTolerance{"{} leads to no parameter with a number",
                                  "Let {} link to a parameter that has a number as its value"};

// What old documents always hold: without it routines go on with 0, an empty list or no link.
struct NeverMissing {
  std::string_view lateType;  // or kind
  std::string_view key;
  std::string_view onlyWith = {};  // another key; empty for always
  Value value = {};                // that it must hold; true counts as 1
};

const NeverMissing kNeverMissing[] = {
    {kind::kAnalysisCase, "Solver"},
    {kind::kAnalysisCase, "AnalysisType", "Solver", Value::String("Halvex")},
    {"PrtContainer", "Part"},
    {"HVXHacAnaStepSolLT", "ResultStepType"},
    {"HVXMatOrientationLT", "Angle"},
    {"HVXGlobalElemAsgnLT", "Entries"},
    {"HVXGlobalElemAsgnEntryLT", "Kind"},
    {"HVXGlobalElemAsgnEntryLT", "ElementAssignments"},
    {"HVXSectionControlsLT", "LengthRatio"},
    {"HVXSectionControlsLT", "StiffnessViscousWtFactor"},
    {"HVXSectionControlsLT", "DispHourglassScalingFactor"},
    {"HVXSectionControlsLT", "RotHourglassScalingFactor"},
    {"HVXSectionControlsLT", "OutOfPlaneHourglassScalingFactor"},
    {"SAMFaceFaceContact", "Clearance", "ClearanceFlag", Value::Integer(1)},
    {"HVXSurfaceToSurfaceContactLT", "adjustTolVal_param", "adjustment", Value::Integer(1)},
    {"HVXSurfaceToSurfaceContactLT", "adjustmentGroup", "adjustment", Value::Integer(2)},
};

// The same with the numbers of its keys, for one late type.
struct NeverMissingKey {
  explicit NeverMissingKey(const NeverMissing& what)
      : key(NameTable::Intern(what.key)), onlyWith(NameTable::Intern(what.onlyWith)), value(what.value) {}

  NameId key;
  NameId onlyWith;
  Value value;
};
using NeverMissingKeys = std::vector<NeverMissingKey>;

NeverMissingKeys KeysOf(const LateType& type) {
  NeverMissingKeys keys;
  for (const NeverMissing& each : kNeverMissing) {
    if (type.MetaClass().IsAKindOf(each.lateType)) keys.emplace_back(each);
  }
  return keys;
}

const Value* ValueIn(const FeatureState& state, NameId key) {
  const auto found = std::ranges::find(state.Attributes(), key, &Attribute::key);
  return found == state.Attributes().end() ? nullptr : &found->value;
}

bool Holds(const Value* value, const Value& wanted) {
  return value != nullptr &&
         (*value == wanted || (wanted == Value::Integer(1) && *value == Value::Boolean(true)));
}

void AppendMissingOf(const FeatureState& state, std::vector<Damage>& damage) {
  for (const NeverMissingKey& each :
       state.type->Noted<NeverMissingKeys>(LateType::Subject::kMissingValues, KeysOf)) {
    const Value* const value = ValueIn(state, each.key);
    const bool holdsNothing = value == nullptr || (*value == Value() && each.onlyWith != kNoName);
    const std::string_view name = NameTable::Text(each.key);
    if (!holdsNothing || std::ranges::find(damage, name, &Damage::key) != damage.end()) continue;
    if (each.onlyWith == kNoName || Holds(ValueIn(state, each.onlyWith), each.value))
      damage.push_back({&check::kMissing, std::string(name)});
  }
}

// The tolerance of an old contact is a number behind a link, as it was when the document was read.
void AppendTolerance(const FeatureState& state, std::vector<Damage>& damage) {
  static const Key contact("HVXSurfaceToSurfaceContactLT");
  static const Key adjustment("adjustment");
  static const Key tolerance("adjustTolVal_param");
  if (state.type->Id() != contact.Id() || !Holds(ValueIn(state, adjustment.Id()), Value::Integer(1))) return;
  const Value* const link = ValueIn(state, tolerance.Id());
  if (link == nullptr || link->Kind() != ValueKind::kLink || link->Target() == nullptr) return;
  const Feature& target = *link->Target();
  const FeatureState* const parameter = target.document->Before(target);
  const Value* const number = parameter == nullptr ? nullptr : ValueIn(*parameter, kParameterValue.Id());
  const bool isParameter = parameter != nullptr && parameter->type->MetaClass().IsAKindOf(kind::kParameter);
  if (!isParameter || number == nullptr ||
      !(number->Kind() == ValueKind::kReal || number->Kind() == ValueKind::kInteger))
    damage.push_back({&kNoTolerance, std::string(tolerance.Text())});
}

}  // namespace

void check::AppendMissing(const FeatureState& state, std::vector<Damage>& damage) {
  AppendMissingOf(state, damage);
  AppendTolerance(state, damage);
}

}  // namespace standalone
