#pragma once

#include <cstdint>

namespace standalone {

using FeatureId = std::int64_t;  ///< From 1; unique in its document and never given twice.

}  // namespace standalone
