#include "report/MentionedFeatures.h"

#include <charconv>

#include "report/FeatureOutput.h"

namespace tool {

void MentionedFeatures::Tell(const standalone::FeatureState& feature) {
  told_.insert(feature.id);
  if (feature.father != nullptr) named_.insert(feature.father->id);
}

// Within a text of JSON, quotes are escaped: what reads like a link is one.
void MentionedFeatures::AddLinksIn(std::string_view json) {
  constexpr std::string_view kLink = "{\"ref\":";
  for (std::size_t at = json.find(kLink); at != std::string_view::npos; at = json.find(kLink, at)) {
    at += kLink.size();
    standalone::FeatureId id = 0;
    if (std::from_chars(json.data() + at, json.data() + json.size(), id).ec == std::errc()) named_.insert(id);
  }
}

void MentionedFeatures::Append(fmt::memory_buffer& out, const standalone::FeatureState& feature) {
  JsonObject object(out);
  AppendIdentity(object, feature);
  AppendFather(object, feature);
  object.Close();
}

}  // namespace tool
