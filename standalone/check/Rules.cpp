#include "check/Rules.h"

#include <algorithm>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Frame.h"
#include "analysis/Supports.h"

namespace standalone::check {
namespace {

const Key kGroup("SAMGroup");
const Key kGroupKind("GroupKind");
const Key kDefinedOnMeshPart("DefinedOnMeshPart");
const Key kSolver("Solver");

constexpr DamageKind kMadeAnew{};  // the upgrade makes what is missing
constexpr std::string_view kGiveParameter = "Let {} link to a parameter that has a number as its value";
constexpr DamageKind kNoKey{"{} is missing", kGiveParameter};
constexpr DamageKind kNoParameter{"{} leads to no parameter", kGiveParameter};
constexpr DamageKind kNoValue{"the parameter behind {} has no value", kGiveParameter};
constexpr DamageKind kNoNumber{"the value of the parameter behind {} is no number", kGiveParameter};

}  // namespace

constinit const DamageKind kMissing{"{} is missing", "Give the feature its {}"};
constinit const DamageKind kNoInteger{"{} holds no integer within 32 bits",
                                      "Give the feature an integer as its {}"};

bool HasAttribute(Feature& feature, const Key& key) {
  return feature.document->FindAttribute(feature, key.Id()) != nullptr;
}

bool IsLeftEmpty(Feature& feature, const Key& key) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr && attribute->value == Value();
}

std::string_view TextOf(Feature& feature, const Key& key) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  if (attribute == nullptr || attribute->value.Kind() != ValueKind::kString) return {};
  return attribute->value.AsString();
}

std::int32_t IntegerOf(Feature& feature, const Key& key, std::int32_t otherwise) {
  static_cast<void>(ReadAttribute(feature, key, otherwise));
  return otherwise;
}

bool FlagOf(Feature& feature, const Key& key) {
  bool flag = false;
  static_cast<void>(ReadAttribute(feature, key, flag));
  return flag;
}

Feature* FirstSupport(Feature& feature) {
  const Attribute* const list = feature.document->FindAttribute(feature, kSupports.Id());
  if (list == nullptr || list->value.Kind() != ValueKind::kList) return nullptr;
  for (const Value& entry : list->value.Entries()) {
    if (entry.Kind() == ValueKind::kLink && entry.Target() != nullptr) return entry.Target();
  }
  return nullptr;
}

Feature* FirstSupported(Feature& feature) {
  Feature* const connector = FirstSupport(feature);
  return connector == nullptr || !IsConnector(*connector) ? nullptr : LinkedFeature(*connector, kFirstObject);
}

bool IsGroupOfSupports(Feature& feature) {
  return IsA(feature, kGroup) && IntegerOf(feature, kGroupKind, 0) == 1 &&
         !FlagOf(feature, kDefinedOnMeshPart);
}

bool IsOfThisProduct(Feature& analysisCase) {
  return TextOf(analysisCase, kSolver) == "Halvex";
}

void AppendParameterDamage(Feature& feature, const Key& key, std::vector<Damage>& damage) {
  const auto append = [&](const DamageKind& kind) { damage.push_back({&kind, std::string(key.Text())}); };
  if (!HasAttribute(feature, key)) return append(kNoKey);
  Feature* const parameter = LinkedFeature(feature, key);
  if (parameter == nullptr || !IsOfKind(*parameter, kind::kParameter)) return append(kNoParameter);
  if (!HasAttribute(*parameter, kParameterValue)) return append(kNoValue);
  double value = 0.0;
  if (Failed(ReadAttribute(*parameter, kParameterValue, value))) append(kNoNumber);
}

Verdict LacksLayout(Feature& feature, const Survey& /*survey*/) {
  if (!LacksComponents(feature)) return Conforms();
  Verdict verdict = Outdated();
  for (const std::string_view name : LackingComponents(feature))
    verdict.damage.push_back({&kMadeAnew, std::string(name)});
  return verdict;
}

Feature* VisitCase(Feature& feature) {
  return CaseAbove(feature);
}

Feature* VisitFather(Feature& feature) {
  return feature.father;
}

Feature* VisitNobody(Feature& /*feature*/) {
  return nullptr;
}

}  // namespace standalone::check
