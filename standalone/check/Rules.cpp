#include "check/Rules.h"

#include <algorithm>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Supports.h"

namespace standalone::check {
namespace {

const Key kGroupKind("GroupKind");
const Key kDefinedOnMeshPart("DefinedOnMeshPart");

}  // namespace

bool HasAttribute(Feature& feature, const Key& key) {
  return feature.document->FindAttribute(feature, key.Id()) != nullptr;
}

bool HasParameter(Feature& feature, const Key& key) {
  Feature* const parameter = LinkedFeature(feature, key);
  double value = 0.0;
  return parameter != nullptr && Succeeded(ReadAttribute(*parameter, kParameterValue, value));
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

bool RestsOn(Feature& feature, std::string_view lateType) {
  return std::ranges::any_of(LinkedFeatures(feature, kSupports), [lateType](Feature* connector) {
    const Feature* const first = LinkedFeature(*connector, kFirstObject);
    return first != nullptr && IsA(*first, lateType);
  });
}

bool IsGroupOfSupports(Feature& feature) {
  return IsA(feature, "SAMGroup") && IntegerOf(feature, kGroupKind, 0) == 1 &&
         !FlagOf(feature, kDefinedOnMeshPart);
}

Verdict LacksLayout(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LacksComponents(feature));
}

}  // namespace standalone::check
