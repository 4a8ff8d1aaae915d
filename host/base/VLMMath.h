#pragma once

#include <numbers>

/// The number of degrees in one radian.
inline constexpr double VLMRadianToDegree = 180.0 / std::numbers::pi;
