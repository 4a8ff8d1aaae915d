#pragma once

#include "JsonOutput.h"
#include "model/Feature.h"

namespace tool {

/// A feature's id, late type and, where it has them, names: the fields with which every JSON output tells it.
void AppendIdentity(JsonObject& object, const standalone::FeatureState& feature);
/// An object with the feature's identity, the cause (a JSON value; left out when it is empty) and all fields
/// in which its states differ. One may be null: the feature did not exist then.
void AppendChange(fmt::memory_buffer& out, const standalone::FeatureState* before,
                  const standalone::FeatureState* after, std::string_view cause = {});
/// A feature in one line for people: id, late type and the name shown to the user.
void AppendLabel(fmt::memory_buffer& out, const standalone::FeatureState& feature);

}  // namespace tool
