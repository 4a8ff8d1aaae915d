#pragma once

#include <span>
#include <string_view>

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

/// Enters connectors, which become sons of `feature`, in the feature's supports: a single one at `position`
/// (from 1), else, and for any other position, at the end. What `PrepareSupports` took out goes for good.
/// False, and nothing changes, when the feature or a connector was removed, when the feature stands beneath a
/// connector, or when "Supports" holds what is no list.
bool EnterSupports(Feature& feature, std::span<Feature* const> connectors, int position = -1);

/// Makes the feature have no supports. Those that it has are put back by `Document::RestoreListsSetAside`
/// unless others are entered before.
void PrepareSupports(Feature& feature);

/// Takes what is listed as a support off the list. A connector goes from the document with that; what is
/// none, stands beneath another feature, or is linked to from another one stays there.
void TakeSupportOut(Feature& feature, Feature& support);

}  // namespace standalone
