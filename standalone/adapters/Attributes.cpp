#include "adapters/Attributes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace standalone {
namespace {

const Value* FindValue(Feature& feature, const Key& key, ValueKind kind) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr && attribute->value.Kind() == kind ? &attribute->value : nullptr;
}

// The first entry of the list for which `isWanted` holds; null without one.
template <class Predicate>
const Value* FindEntry(Feature& feature, const Key& key, const Predicate& isWanted) {
  if (const OpenList* const open = feature.document->OpenListOf(feature, key.Id()))
    return open->FindFirst(isWanted);
  const Value* const list = FindValue(feature, key, ValueKind::kList);
  if (list == nullptr) return nullptr;
  const auto found = std::ranges::find_if(list->Entries(), isWanted);
  return found == list->Entries().end() ? nullptr : &*found;
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
  const auto add = [&targets](const Value& entry) {
    targets.push_back(entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr);
    return false;
  };
  static_cast<void>(FindEntry(feature, key, add));
  return targets;
}

const Value* EntryAt(Feature& feature, const Key& key, std::size_t position) {
  if (OpenList* const open = feature.document->OpenListOf(feature, key.Id())) return open->At(position);
  const Value* const list = FindValue(feature, key, ValueKind::kList);
  return list == nullptr || position < 1 || position > list->Entries().size()
             ? nullptr
             : &list->Entries()[position - 1];
}

std::size_t CountEntries(Feature& feature, const Key& key) {
  if (const OpenList* const open = feature.document->OpenListOf(feature, key.Id())) return open->Size();
  const Value* const found = FindValue(feature, key, ValueKind::kList);
  return found == nullptr ? 0 : found->Entries().size();
}

Feature* FindLinked(Feature& feature, const Key& key, const std::function<bool(Feature&)>& isWanted) {
  const Value* const found = FindEntry(feature, key, [&isWanted](const Value& entry) {
    return entry.Kind() == ValueKind::kLink && entry.Target() != nullptr && isWanted(*entry.Target());
  });
  return found == nullptr ? nullptr : found->Target();
}

bool HoldsLink(Feature& feature, const Key& key, const Feature& target) {
  if (const OpenList* const open = feature.document->OpenListOf(feature, key.Id()))
    return open->Holds(target);
  return FindLinked(feature, key, [&target](Feature& linked) { return &linked == &target; }) != nullptr;
}

std::vector<Feature*> LinkedFeatures(Feature& feature, const Key& key) {
  std::vector<Feature*> targets = LinkEntries(feature, key);
  std::erase(targets, nullptr);
  return targets;
}

bool CanHoldList(Feature& feature, const Key& key) {
  return feature.document->OpenListOf(feature, key.Id()) != nullptr || !HasValue(feature, key) ||
         FindValue(feature, key, ValueKind::kList) != nullptr;
}

void InsertLink(Feature& feature, const Key& key, Feature& target, int position) {
  Document& document = *feature.document;
  if (position < 1 || static_cast<std::size_t>(position) > CountEntries(feature, key)) {
    const bool isThere = document.OpenListOf(feature, key.Id()) != nullptr ||
                         FindValue(feature, key, ValueKind::kList) != nullptr;
    if (!isThere) WriteLinks(feature, key, {});
    document.AppendToList(feature, key.Id(), Value::Link(&target));
    return;
  }
  const std::span<const Value> before = FindValue(feature, key, ValueKind::kList)->Entries();
  const auto place = before.begin() + (position - 1);
  std::vector<Value> entries(before.begin(), place);
  entries.push_back(Value::Link(&target));
  entries.insert(entries.end(), place, before.end());
  document.SetAttribute(feature, key.Id(), Value::List(document.Keep(std::span<const Value>(entries))));
}

void DropLink(Feature& feature, const Key& key, const Feature& target) {
  feature.document->DropFromList(feature, key.Id(), target);
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
