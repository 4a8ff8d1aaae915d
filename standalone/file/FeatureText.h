#pragma once

#include <fmt/format.h>

#include <string>

#include "model/Feature.h"

namespace standalone {

/// Appends the feature's line, without its end, to `out`.
void AppendFeature(fmt::memory_buffer& out, const FeatureState& feature);

/// The same line as a text of its own.
[[nodiscard]] std::string LineOf(const FeatureState& feature);

/// Appends one value as a feature's line holds it.
void AppendValue(fmt::memory_buffer& out, const Value& value);

}  // namespace standalone
