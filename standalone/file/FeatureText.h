#pragma once

#include <fmt/format.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/Feature.h"

namespace standalone {

/// Writes features of documents that stay open meanwhile. Keeps the names as they are written: there are few.
class FeatureTexts {
 public:
  /// Appends the feature's line, without its end, to `out`.
  void Append(fmt::memory_buffer& out, const FeatureState& feature);

 private:
  /// The name as the key of a field: in quotes, escaped, with the colon. Valid until the next call.
  std::string_view KeyText(NameId name);
  void AppendName(fmt::memory_buffer& out, NameId name);
  void AppendAttributes(fmt::memory_buffer& out, std::span<const Attribute> attributes);
  void AppendModes(fmt::memory_buffer& out, std::span<const Attribute> attributes);

  std::vector<std::string> keys_;  // by the number of the name
};

/// The same for one feature.
void AppendFeature(fmt::memory_buffer& out, const FeatureState& feature);

/// The same line as a text of its own.
[[nodiscard]] std::string LineOf(const FeatureState& feature);

/// Appends one value as a feature's line holds it.
void AppendValue(fmt::memory_buffer& out, const Value& value);

}  // namespace standalone
