#include "compare/FeatureDifference.h"

#include <fmt/format.h>

#include <algorithm>

#include "file/DocumentFormat.h"
#include "file/FeatureText.h"
#include "file/JsonText.h"
#include "model/AttributeIndex.h"

namespace standalone {
namespace {

const FeatureState kNothing;

template <class Append>
std::string JsonOf(const Append& append) {
  fmt::memory_buffer out;
  append(out);
  return fmt::to_string(out);
}

std::string JsonOf(std::string_view text) {
  return text.empty() ? "" : JsonOf([text](fmt::memory_buffer& out) { AppendJsonText(out, text); });
}

std::string JsonOf(const Value& value) {
  return JsonOf([&value](fmt::memory_buffer& out) { AppendValue(out, value); });
}

std::string JsonOf(Feature* target) {
  return target == nullptr ? "" : JsonOf(Value::Link(target));
}

std::string_view TypeOf(const FeatureState& feature) {
  return feature.type == nullptr ? std::string_view() : feature.TypeName();
}

FeatureId IdOf(const Feature* feature) {
  return feature == nullptr ? 0 : feature->id;
}

bool SameFeature(const Feature* left, const Feature* right) {
  return IdOf(left) == IdOf(right);
}

bool SameValue(const Value& left, const Value& right) {
  if (left.Kind() != right.Kind()) return false;
  if (left.Kind() == ValueKind::kLink) return SameFeature(left.Target(), right.Target());
  if (left.Kind() == ValueKind::kList) return std::ranges::equal(left.Entries(), right.Entries(), SameValue);
  return left == right;
}

class Collector {
 public:
  Collector(const FeatureState* before, const FeatureState* after) : before_(before), after_(after) {}

  std::vector<FieldDifference> Collect() {
    const FeatureState& before = before_ == nullptr ? kNothing : *before_;
    const FeatureState& after = after_ == nullptr ? kNothing : *after_;
    if (before.type != after.type) Add(format::kType, JsonOf(TypeOf(before)), JsonOf(TypeOf(after)));
    if (before.name != after.name) Add(format::kName, JsonOf(before.name), JsonOf(after.name));
    if (before.externalName != after.externalName)
      Add(format::kAlias, JsonOf(before.externalName), JsonOf(after.externalName));
    if (!SameFeature(before.father, after.father))
      Add(format::kFather, JsonOf(before.father), JsonOf(after.father));
    if (!SameFeature(before.container, after.container))
      Add(format::kContainer, JsonOf(before.container), JsonOf(after.container));
    if (FlagOf(before_) != FlagOf(after_)) Add(format::kUpToDate, FlagOf(before_), FlagOf(after_));
    if (before.physicalType != after.physicalType) {
      Add(format::kPhysicalType, JsonOf(NameTable::Text(before.physicalType)),
          JsonOf(NameTable::Text(after.physicalType)));
    }
    CollectAttributes(before.Attributes(), after.Attributes());
    return std::move(differences_);
  }

 private:
  void Add(std::string_view field, std::string before, std::string after, std::string_view key = {}) {
    differences_.push_back({field, key, std::move(before), std::move(after)});
  }

  static std::string FlagOf(const FeatureState* state) {
    if (state == nullptr) return "";
    return state->upToDate ? "true" : "false";
  }

  void CollectAttributes(std::span<const Attribute> before, std::span<const Attribute> after) {
    // An attribute mostly stands where the other state has it.
    AttributeLookUp among(after);
    for (std::size_t i = 0; i < before.size(); ++i) AddAttribute(&before[i], among.Find(before[i].key, i));
    AttributeLookUp old(before);
    for (std::size_t i = 0; i < after.size(); ++i) {
      if (old.Find(after[i].key, i) == nullptr) AddAttribute(nullptr, &after[i]);
    }
  }

  void AddAttribute(const Attribute* before, const Attribute* after) {
    const std::string_view key = NameTable::Text((before != nullptr ? before : after)->key);
    if (before == nullptr || after == nullptr || !SameValue(before->value, after->value)) {
      Add(format::kAttributes, before == nullptr ? "" : JsonOf(before->value),
          after == nullptr ? "" : JsonOf(after->value), key);
    }
    const int modeBefore = before == nullptr ? 0 : before->mode;
    const int modeAfter = after == nullptr ? 0 : after->mode;
    if (modeBefore == modeAfter) return;
    Add(format::kModes, before == nullptr ? "" : std::to_string(modeBefore),
        after == nullptr ? "" : std::to_string(modeAfter), key);
  }

  const FeatureState* before_;
  const FeatureState* after_;
  std::vector<FieldDifference> differences_;
};

}  // namespace

bool Differ(const FeatureState& before, const FeatureState& after) {
  if (&before == &after) return false;
  if (before.type != after.type || before.name != after.name || before.externalName != after.externalName ||
      !SameFeature(before.father, after.father) || !SameFeature(before.container, after.container) ||
      before.upToDate != after.upToDate || before.physicalType != after.physicalType ||
      before.attributeCount != after.attributeCount) {
    return true;
  }
  const std::span<const Attribute> attributes = after.Attributes();
  AttributeLookUp old(before.Attributes());
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const Attribute* const was = old.Find(attributes[i].key, i);
    if (was == nullptr || was->mode != attributes[i].mode || !SameValue(was->value, attributes[i].value))
      return true;
  }
  return false;
}

std::vector<FieldDifference> Differences(const FeatureState* before, const FeatureState* after) {
  return Collector(before, after).Collect();
}

}  // namespace standalone
