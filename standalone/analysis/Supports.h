#pragma once

#include <string_view>
#include <vector>

#include "adapters/Attributes.h"

namespace standalone {

// Supports: connectors, listed in "Supports" of the feature that they support and standing beneath it.

extern const Key kSupports;
extern const Key kFirstObject;
extern const Key kSecondObject;

bool IsConnector(const Feature& feature);

/// Makes a connector of late type `type` (empty: "GeometrySmartConnector") that connects both objects, in the
/// container of `beside`. It stands beneath nothing and is not yet listed anywhere.
Feature& MakeConnector(Feature& beside, std::string_view type, Feature* first, Feature* second);

/// Enters the connector, which becomes a son of `feature`, in the feature's supports: at `position` (from 1),
/// or at the end for any other.
void EnterSupport(Feature& feature, Feature& connector, int position = -1);

}  // namespace standalone
