#pragma once

#include "adapters/Attributes.h"

namespace standalone {

// Mesh parts that interactions own, linked from "MeshPart".

extern const Key kMeshPart;

/// Gives `owner` a connection mesh part without supports. E_FAIL when it has a mesh part, or a value
/// of another kind in its place, or was removed.
HRESULT CreateConnectionMeshPart(Feature& owner);

}  // namespace standalone
