#include "file/FeatureText.h"

#include <algorithm>
#include <array>

#include "file/DocumentFormat.h"
#include "file/JsonText.h"

namespace standalone {
namespace {

// What stands before a field's value. Every field but the first follows a comma.
template <const std::string_view& key>
constexpr auto kFieldText = [] {
  std::array<char, key.size() + 4> text{',', '"'};
  std::ranges::copy(key, text.begin() + 2);
  text[key.size() + 2] = '"';
  text[key.size() + 3] = ':';
  return text;
}();

template <const std::string_view& key>
void AppendKey(fmt::memory_buffer& out) {
  AppendRaw(out, {kFieldText<key>.data(), kFieldText<key>.size()});
}

template <const std::string_view& key>
void AppendTextField(fmt::memory_buffer& out, std::string_view text) {
  if (text.empty()) return;
  AppendKey<key>(out);
  AppendJsonText(out, text);
}

void AppendLink(fmt::memory_buffer& out, const Feature& target) {
  AppendRaw(out, "{\"ref\":");
  AppendJsonInteger(out, target.id);
  out.push_back('}');
}

template <const std::string_view& key>
void AppendLinkField(fmt::memory_buffer& out, const Feature* target) {
  if (target == nullptr) return;
  AppendKey<key>(out);
  AppendLink(out, *target);
}

}  // namespace

void AppendFeature(fmt::memory_buffer& out, const FeatureState& feature) {
  FeatureTexts().Append(out, feature);
}

void FeatureTexts::Append(fmt::memory_buffer& out, const FeatureState& feature) {
  AppendRaw(out, "{\"id\":");
  AppendJsonInteger(out, feature.id);
  AppendKey<format::kType>(out);
  AppendName(out, feature.type->Id());
  AppendTextField<format::kName>(out, feature.name);
  AppendTextField<format::kAlias>(out, feature.externalName);
  AppendLinkField<format::kFather>(out, feature.father);
  AppendLinkField<format::kContainer>(out, feature.container);
  if (!feature.upToDate) {
    AppendKey<format::kUpToDate>(out);
    AppendRaw(out, "false");
  }
  if (feature.physicalType != kNoName) {
    AppendKey<format::kPhysicalType>(out);
    AppendName(out, feature.physicalType);
  }
  AppendAttributes(out, feature.Attributes());
  AppendModes(out, feature.Attributes());
  out.push_back('}');
}

std::string_view FeatureTexts::KeyText(NameId name) {
  if (name >= keys_.size()) keys_.resize(name + std::size_t{1});
  if (keys_[name].empty()) {
    fmt::memory_buffer text;
    AppendJsonText(text, NameTable::Text(name));
    text.push_back(':');
    keys_[name] = fmt::to_string(text);
  }
  return keys_[name];
}

void FeatureTexts::AppendName(fmt::memory_buffer& out, NameId name) {
  std::string_view text = KeyText(name);
  text.remove_suffix(1);
  AppendRaw(out, text);
}

void FeatureTexts::AppendAttributes(fmt::memory_buffer& out, std::span<const Attribute> attributes) {
  if (attributes.empty()) return;
  AppendKey<format::kAttributes>(out);
  char separator = '{';
  for (const Attribute& attribute : attributes) {
    out.push_back(separator);
    AppendRaw(out, KeyText(attribute.key));
    AppendValue(out, attribute.value);
    separator = ',';
  }
  out.push_back('}');
}

void FeatureTexts::AppendModes(fmt::memory_buffer& out, std::span<const Attribute> attributes) {
  const auto hasMode = [](const Attribute& attribute) { return attribute.mode != 0; };
  if (std::ranges::none_of(attributes, hasMode)) return;
  AppendKey<format::kModes>(out);
  char separator = '{';
  for (const Attribute& attribute : attributes) {
    if (!hasMode(attribute)) continue;
    out.push_back(separator);
    AppendRaw(out, KeyText(attribute.key));
    AppendJsonInteger(out, attribute.mode);
    separator = ',';
  }
  out.push_back('}');
}

std::string LineOf(const FeatureState& feature) {
  fmt::memory_buffer text;
  AppendFeature(text, feature);
  return fmt::to_string(text);
}

void AppendValue(fmt::memory_buffer& out, const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kString:
      AppendJsonText(out, value.AsString());
      break;
    case ValueKind::kInteger:
      AppendJsonInteger(out, value.AsInteger());
      break;
    case ValueKind::kReal:
      AppendJsonReal(out, value.AsReal());
      break;
    case ValueKind::kBoolean:
      AppendRaw(out, value.AsBoolean() ? "true" : "false");
      break;
    case ValueKind::kLink:
      if (value.Target() == nullptr) {
        AppendRaw(out, "null");
      } else {
        AppendLink(out, *value.Target());
      }
      break;
    case ValueKind::kList: {
      out.push_back('[');
      bool first = true;
      for (const Value& entry : value.Entries()) {
        if (!first) out.push_back(',');
        AppendValue(out, entry);
        first = false;
      }
      out.push_back(']');
    }
  }
}

}  // namespace standalone
