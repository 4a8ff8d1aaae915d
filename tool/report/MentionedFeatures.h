#pragma once

#include <fmt/format.h>

#include <string_view>
#include <unordered_set>

#include "model/Document.h"
#include "report/JsonOutput.h"

namespace tool {

/// Features that an output refers to and does not tell otherwise, so that who reads it can name them and
/// knows what stands beneath what.
class MentionedFeatures {
 public:
  /// The output tells the feature itself.
  void Tell(const standalone::FeatureState& feature);
  /// The features that a JSON text of a document links to.
  void AddLinksIn(std::string_view json);

  /// Those of `document` that were referred to, with all that they and the told ones stand beneath, as
  /// entries of a list: identity and father. `flush` is called between them.
  template <class Flush>
  void AppendTo(JsonList& list, const standalone::Document& document, const Flush& flush);

 private:
  void Append(fmt::memory_buffer& out, const standalone::FeatureState& feature);

  std::unordered_set<standalone::FeatureId> told_;
  std::unordered_set<standalone::FeatureId> named_;
};

template <class Flush>
void MentionedFeatures::AppendTo(JsonList& list, const standalone::Document& document, const Flush& flush) {
  // Growing, since a feature brings its father along.
  std::vector<standalone::FeatureId> open(named_.begin(), named_.end());
  std::sort(open.begin(), open.end());
  for (std::size_t i = 0; i < open.size(); ++i) {
    if (told_.contains(open[i])) continue;
    const standalone::Feature* const feature = document.Find(open[i]);
    if (feature == nullptr) continue;
    told_.insert(open[i]);
    Append(list.Entry(), *feature);
    if (feature->father != nullptr) open.push_back(feature->father->id);
    flush();
  }
}

}  // namespace tool
