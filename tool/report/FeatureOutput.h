#pragma once

#include <functional>
#include <string>

#include "compare/FeatureDifference.h"
#include "model/Feature.h"
#include "report/JsonOutput.h"

namespace tool {

class MentionedFeatures;

/// A feature's id, late type and, where it has them, names: the fields with which every JSON output tells it.
void AppendIdentity(JsonObject& object, const standalone::FeatureState& feature);
/// What the feature stands beneath, as the field "father"; nothing for one at the top.
void AppendFather(JsonObject& object, const standalone::FeatureState& feature);
/// What made a change, as a JSON value.
using CauseOf = std::function<std::string(const standalone::FieldDifference&)>;
/// An object with the feature's identity and all fields in which its states differ, each with its cause where
/// `causeOf` is given. Tells `mentioned` which features the fields link to. One of the states may be null:
/// the feature did not exist then.
void AppendChange(fmt::memory_buffer& out, const standalone::FeatureState* before,
                  const standalone::FeatureState* after, const CauseOf& causeOf = {},
                  MentionedFeatures* mentioned = nullptr);
/// A feature in one line for people: id, late type and the name shown to the user.
void AppendLabel(fmt::memory_buffer& out, const standalone::FeatureState& feature);

}  // namespace tool
