#include "report/FeatureOutput.h"

#include "report/MentionedFeatures.h"
#include "terminal/Terminal.h"

namespace tool {

using standalone::AppendRaw;
using standalone::FeatureState;

void AppendIdentity(JsonObject& object, const FeatureState& feature) {
  standalone::AppendJsonInteger(object.Key("id"), feature.id);
  object.Text("type", feature.TypeName());
  if (!feature.name.empty()) object.Text("name", feature.name);
  if (!feature.externalName.empty()) object.Text("alias", feature.externalName);
}

void AppendFather(JsonObject& object, const FeatureState& feature) {
  if (feature.father == nullptr) return;
  JsonObject link(object.Key("father"));
  standalone::AppendJsonInteger(link.Key("ref"), feature.father->id);
  link.Close();
}

void AppendChange(fmt::memory_buffer& out, const FeatureState* before, const FeatureState* after,
                  const CauseOf& causeOf, MentionedFeatures* mentioned) {
  JsonObject entry(out);
  AppendIdentity(entry, after == nullptr ? *before : *after);
  AppendFather(entry, after == nullptr ? *before : *after);
  JsonList changes(entry.Key("changes"));
  for (const standalone::FieldDifference& difference : standalone::Differences(before, after)) {
    JsonObject change(changes.Entry());
    change.Text("field", difference.field);
    if (!difference.key.empty()) change.Text("key", difference.key);
    if (!difference.before.empty()) change.Value("before", difference.before);
    if (!difference.after.empty()) change.Value("after", difference.after);
    if (mentioned != nullptr) {
      mentioned->AddLinksIn(difference.before);
      mentioned->AddLinksIn(difference.after);
    }
    if (causeOf) AppendRaw(change.Key("by"), causeOf(difference));
    change.Close();
  }
  changes.Close();
  entry.Close();
}

void AppendLabel(fmt::memory_buffer& out, const FeatureState& feature) {
  fmt::format_to(std::back_inserter(out), "{} {}", feature.id, Word(feature.TypeName()));
  const std::string_view shown = feature.externalName.empty() ? feature.name : feature.externalName;
  if (!shown.empty()) fmt::format_to(std::back_inserter(out), " {}", Quoted(shown));
}

}  // namespace tool
