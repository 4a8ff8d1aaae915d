#include "sheet/Unit.h"

#include <algorithm>
#include <iterator>

namespace standalone::sheet {
namespace {

struct DimensionRow {
  Dimension dimension;
  std::string_view magnitude;  // the host's name; empty where documents never name it
  std::string_view name;
  std::string_view si;
  std::string_view mmT;
  double toMmT;
};

// In the order of the dimensions.
constexpr DimensionRow kRows[] = {
    {Dimension::kNone, {}, {}, {}, {}, 1},
    {Dimension::kRatio, "DIMENSIONLESS", "ratio", {}, {}, 1},
    {Dimension::kTime, "Time", "time", "s", "s", 1},
    {Dimension::kTemperature, "TEMPRTRE", "temperature", "K", "K", 1},
    {Dimension::kLength, "LENGTH", "length", "m", "mm", 1e3},
    {Dimension::kForce, "FORCE", "force", "N", "N", 1},
    {Dimension::kMoment, {}, "moment", "N m", "N mm", 1e3},
    {Dimension::kPressure, "PRESSURE", "pressure", "Pa", "MPa", 1e-6},
    {Dimension::kVelocity, {}, "velocity", "m/s", "mm/s", 1e3},
    {Dimension::kAcceleration, "ACCELERATION", "acceleration", "m/s²", "mm/s²", 1e3},
    {Dimension::kAngle, "ANGLE", "angle", "rad", "rad", 1},
    {Dimension::kDegrees, {}, "angleInDegrees", "deg", "deg", 1},
    {Dimension::kAngularVelocity, "ANGULAR_VELOCITY", "angularVelocity", "rad/s", "rad/s", 1},
    {Dimension::kAngularAcceleration, "ANGULAR_ACCELERATION", "angularAcceleration", "rad/s²", "rad/s²", 1},
    {Dimension::kHeatFlow, "HEAT_FLOW", "heatFlow", "W", "mW", 1e3},
    {Dimension::kSurfaceHeatFlux, "SURFACE_HEAT_FLUX", "surfaceHeatFlux", "W/m²", "mW/mm²", 1e-3},
    {Dimension::kBodyHeatFlux, "BODY_HEAT_FLUX", "bodyHeatFlux", "W/m³", "mW/mm³", 1e-6},
    {Dimension::kFilmCoefficient, "FILM_COEFFICIENT", "filmCoefficient", "W/(m² K)", "mW/(mm² K)", 1e-3},
    {Dimension::kStiffness, "STIFFNESS", "stiffness", "N/m", "N/mm", 1e-3},
    {Dimension::kDamping, "DAMPING", "damping", "N s/m", "N s/mm", 1e-3},
    {Dimension::kUnknown, {}, "unknown", "(unknown unit)", "(unknown unit)", 1},
};

constexpr bool AreInOrder() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    if (static_cast<std::size_t>(kRows[i].dimension) != i) return false;
  }
  return true;
}
static_assert(AreInOrder());

const DimensionRow& RowOf(Dimension dimension) {
  return kRows[static_cast<std::size_t>(dimension)];
}

}  // namespace

Dimension DimensionOf(std::string_view magnitude) {
  const auto* const found = std::ranges::find(kRows, magnitude, &DimensionRow::magnitude);
  return magnitude.empty() || found == std::end(kRows) ? Dimension::kUnknown : found->dimension;
}

std::string_view NameOf(Dimension dimension) {
  return RowOf(dimension).name;
}

std::string_view SymbolOf(Dimension dimension, UnitSystem system) {
  return system == UnitSystem::kSi ? RowOf(dimension).si : RowOf(dimension).mmT;
}

double InUnit(double number, Dimension dimension, UnitSystem system) {
  return system == UnitSystem::kSi ? number : number * RowOf(dimension).toMmT;
}

}  // namespace standalone::sheet
