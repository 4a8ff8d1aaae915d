#include "adapters/Attributes.h"

#include <cmath>
#include <limits>

namespace standalone {
namespace {

const Value* FindValue(Feature& feature, const Key& key, ValueKind kind) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr && attribute->value.Kind() == kind ? &attribute->value : nullptr;
}

bool NumberOf(const Value& value, double& number) {
  if (value.Kind() == ValueKind::kReal) number = value.AsReal();
  if (value.Kind() == ValueKind::kInteger) number = static_cast<double>(value.AsInteger());
  return value.Kind() == ValueKind::kReal || value.Kind() == ValueKind::kInteger;
}

HRESULT Store(Feature& feature, const Key& key, const Value& value) {
  feature.document->SetAttribute(feature, key.Id(), value);
  return S_OK;
}

}  // namespace

HRESULT ReadAttribute(Feature& feature, const Key& key, VLMUnicodeString& value) {
  const Value* const found = FindValue(feature, key, ValueKind::kString);
  if (found == nullptr) return E_FAIL;
  value = found->AsString();
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, std::int64_t& value) {
  const Value* const found = FindValue(feature, key, ValueKind::kInteger);
  if (found == nullptr) return E_FAIL;
  value = found->AsInteger();
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, std::int32_t& value) {
  std::int64_t wide = 0;
  if (const HRESULT read = ReadAttribute(feature, key, wide); Failed(read)) return read;
  if (wide != static_cast<std::int32_t>(wide)) return E_FAIL;
  value = static_cast<std::int32_t>(wide);
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, double& value) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr && NumberOf(attribute->value, value) ? S_OK : E_FAIL;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, float& value) {
  double wide = 0.0;
  if (const HRESULT read = ReadAttribute(feature, key, wide); Failed(read)) return read;
  if (std::abs(wide) > static_cast<double>(std::numeric_limits<float>::max())) return E_FAIL;
  value = static_cast<float>(wide);
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, bool& value) {
  if (const Value* const found = FindValue(feature, key, ValueKind::kBoolean)) {
    value = found->AsBoolean();
    return S_OK;
  }
  std::int64_t number = 0;
  if (Failed(ReadAttribute(feature, key, number)) || number < 0 || number > 1) return E_FAIL;
  value = number == 1;
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, unsigned char& value) {
  bool flag = false;
  if (const HRESULT read = ReadAttribute(feature, key, flag); Failed(read)) return read;
  value = flag ? 1 : 0;
  return S_OK;
}

HRESULT ReadAttribute(Feature& feature, const Key& key, std::vector<double>& values) {
  const Value* const found = FindValue(feature, key, ValueKind::kList);
  if (found == nullptr) return E_FAIL;
  std::vector<double> numbers;
  for (const Value& entry : found->Entries()) {
    if (!NumberOf(entry, numbers.emplace_back())) return E_FAIL;
  }
  values = std::move(numbers);
  return S_OK;
}

bool HasValue(Feature& feature, const Key& key) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr &&
         !(attribute->value.Kind() == ValueKind::kLink && attribute->value.Target() == nullptr);
}

HRESULT WriteAttribute(Feature& feature, const Key& key, const VLMUnicodeString& value) {
  return Store(feature, key, Value::String(feature.document->Keep(value.View())));
}

HRESULT WriteAttribute(Feature& feature, const Key& key, std::int32_t value) {
  return Store(feature, key, Value::Integer(value));
}

HRESULT WriteAttribute(Feature& feature, const Key& key, std::int64_t value) {
  return Store(feature, key, Value::Integer(value));
}

HRESULT WriteAttribute(Feature& feature, const Key& key, double value) {
  return std::isfinite(value) ? Store(feature, key, Value::Real(value)) : E_FAIL;
}

HRESULT WriteAttribute(Feature& feature, const Key& key, unsigned char value) {
  return WriteAttribute(feature, key, value != 0);
}

HRESULT WriteAttribute(Feature& feature, const Key& key, bool value) {
  return Store(feature, key, Value::Boolean(value));
}

HRESULT WriteAttribute(Feature& feature, const Key& key, const std::vector<double>& values) {
  std::vector<Value> entries;
  entries.reserve(values.size());
  for (const double value : values) {
    if (!std::isfinite(value)) return E_FAIL;
    entries.push_back(Value::Real(value));
  }
  return Store(feature, key, Value::List(feature.document->Keep(std::span<const Value>(entries))));
}

HRESULT ReplaceLink(Feature& feature, const Key& key, Feature* target) {
  if (HasValue(feature, key) && LinkedFeature(feature, key) == nullptr) return E_FAIL;
  WriteLink(feature, key, target);
  return S_OK;
}

Feature* LinkedFeature(Feature& feature, const Key& key) {
  const Value* const found = FindValue(feature, key, ValueKind::kLink);
  return found == nullptr ? nullptr : found->Target();
}

std::vector<Feature*> LinkEntries(Feature& feature, const Key& key) {
  std::vector<Feature*> targets;
  const Value* const found = FindValue(feature, key, ValueKind::kList);
  if (found == nullptr) return targets;
  for (const Value& entry : found->Entries()) {
    targets.push_back(entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr);
  }
  return targets;
}

std::vector<Feature*> LinkedFeatures(Feature& feature, const Key& key) {
  std::vector<Feature*> targets = LinkEntries(feature, key);
  std::erase(targets, nullptr);
  return targets;
}

bool CanHoldList(Feature& feature, const Key& key) {
  return !HasValue(feature, key) || FindValue(feature, key, ValueKind::kList) != nullptr;
}

void InsertLink(Feature& feature, const Key& key, Feature& target, int position) {
  Document& document = *feature.document;
  const Value* const list = FindValue(feature, key, ValueKind::kList);
  if (list == nullptr) WriteLinks(feature, key, {});
  const std::span<const Value> before = list == nullptr ? std::span<const Value>() : list->Entries();
  if (position < 1 || static_cast<std::size_t>(position) > before.size()) {
    document.AppendToList(feature, key.Id(), Value::Link(&target));
    return;
  }
  std::vector<Value> entries(before.begin(), before.end());
  entries.insert(entries.begin() + position - 1, Value::Link(&target));
  document.SetAttribute(feature, key.Id(), Value::List(document.Keep(std::span<const Value>(entries))));
}

void DropLink(Feature& feature, const Key& key, const Feature& target) {
  const Value* const list = FindValue(feature, key, ValueKind::kList);
  if (list == nullptr) return;
  std::vector<Value> entries(list->Entries().begin(), list->Entries().end());
  std::erase_if(entries, [&target](const Value& entry) {
    return entry.Kind() == ValueKind::kLink && entry.Target() == &target;
  });
  Document& document = *feature.document;
  document.SetAttribute(feature, key.Id(), Value::List(document.Keep(std::span<const Value>(entries))));
}

void WriteLink(Feature& feature, const Key& key, Feature* target) {
  feature.document->SetAttribute(feature, key.Id(), Value::Link(target));
}

void WriteLinks(Feature& feature, const Key& key, const std::vector<Feature*>& targets) {
  std::vector<Value> entries;
  entries.reserve(targets.size());
  for (Feature* const target : targets) entries.push_back(Value::Link(target));
  feature.document->SetAttribute(feature, key.Id(),
                                 Value::List(feature.document->Keep(std::span<const Value>(entries))));
}

}  // namespace standalone
