#pragma once

#include <string_view>
#include <vector>

#include "model/Feature.h"

namespace standalone {

// Where things stand in an analysis document.

bool IsOfKind(const Feature& feature, std::string_view lateTypeOrKind);

/// Whether the feature is `top` or stands beneath it, at any depth.
bool StandsBeneath(const Feature& feature, const Feature& top);
/// The nearest analysis case upwards, the feature itself included; null without one.
Feature* CaseAbove(Feature& feature);
/// The first son of that late type or kind; null without one.
Feature* FirstSonOfKind(const Feature& father, std::string_view lateTypeOrKind);
/// All of them, in order; remembered by the document, so that they stay until it changes or something else is
/// listed.
const std::vector<Feature*>& SonsOfKind(Feature& father, std::string_view lateTypeOrKind);
/// The steps of a case, in order; the first is the initial step.
std::vector<Feature*> StepsOf(const Feature& analysisCase);

}  // namespace standalone
