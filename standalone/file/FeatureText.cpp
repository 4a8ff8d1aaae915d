#include "file/FeatureText.h"

#include <algorithm>
#include <string>
#include <vector>

#include "file/DocumentFormat.h"
#include "file/JsonText.h"

namespace standalone {
namespace {

// The name as the key of a field: in quotes, escaped, with the colon. Made once for each name, of which there
// are few. Valid until the next call.
std::string_view KeyText(NameId name) {
  static std::vector<std::string> texts;
  if (name >= texts.size()) texts.resize(name + std::size_t{1});
  if (texts[name].empty()) {
    fmt::memory_buffer text;
    AppendJsonText(text, NameTable::Text(name));
    text.push_back(':');
    texts[name] = fmt::to_string(text);
  }
  return texts[name];
}

// The name as a value.
void AppendName(fmt::memory_buffer& out, NameId name) {
  std::string_view text = KeyText(name);
  text.remove_suffix(1);
  AppendRaw(out, text);
}

// Every field but the first follows a comma.
void AppendKey(fmt::memory_buffer& out, std::string_view key) {
  AppendRaw(out, ",\"");
  AppendRaw(out, key);
  AppendRaw(out, "\":");
}

void AppendTextField(fmt::memory_buffer& out, std::string_view key, std::string_view text) {
  if (text.empty()) return;
  AppendKey(out, key);
  AppendJsonText(out, text);
}

void AppendLinkField(fmt::memory_buffer& out, std::string_view key, Feature* target) {
  if (target == nullptr) return;
  AppendKey(out, key);
  AppendValue(out, Value::Link(target));
}

void AppendAttributes(fmt::memory_buffer& out, std::span<const Attribute> attributes) {
  if (attributes.empty()) return;
  AppendKey(out, format::kAttributes);
  char separator = '{';
  for (const Attribute& attribute : attributes) {
    out.push_back(separator);
    AppendRaw(out, KeyText(attribute.key));
    AppendValue(out, attribute.value);
    separator = ',';
  }
  out.push_back('}');
}

void AppendModes(fmt::memory_buffer& out, std::span<const Attribute> attributes) {
  const auto hasMode = [](const Attribute& attribute) { return attribute.mode != 0; };
  if (std::ranges::none_of(attributes, hasMode)) return;
  AppendKey(out, format::kModes);
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

}  // namespace

void AppendFeature(fmt::memory_buffer& out, const FeatureState& feature) {
  AppendRaw(out, "{\"id\":");
  AppendJsonInteger(out, feature.id);
  AppendKey(out, format::kType);
  AppendName(out, feature.type->Id());
  AppendTextField(out, format::kName, feature.name);
  AppendTextField(out, format::kAlias, feature.externalName);
  AppendLinkField(out, format::kFather, feature.father);
  AppendLinkField(out, format::kContainer, feature.container);
  if (!feature.upToDate) {
    AppendKey(out, format::kUpToDate);
    AppendRaw(out, "false");
  }
  AppendTextField(out, format::kPhysicalType, NameTable::Text(feature.physicalType));
  AppendAttributes(out, feature.Attributes());
  AppendModes(out, feature.Attributes());
  out.push_back('}');
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
        break;
      }
      AppendRaw(out, "{\"ref\":");
      AppendJsonInteger(out, value.Target()->id);
      out.push_back('}');
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
