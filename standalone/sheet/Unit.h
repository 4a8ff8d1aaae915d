#pragma once

#include <cstdint>
#include <string_view>

namespace standalone::sheet {

/// What a number measures. Documents hold SI units throughout, but for old orientation angles.
enum class Dimension : std::uint8_t {
  kNone,  ///< No number, or a count: it has no unit.
  kRatio,
  kTime,
  kTemperature,
  kLength,
  kForce,
  kMoment,
  kPressure,
  kVelocity,
  kAcceleration,
  kAngle,
  kDegrees,  ///< An angle, in degrees.
  kAngularVelocity,
  kAngularAcceleration,
  kHeatFlow,
  kSurfaceHeatFlux,
  kBodyHeatFlux,
  kFilmCoefficient,
  kStiffness,
  kDamping,
  kUnknown,  ///< The document names a magnitude that nobody here knows.
};

/// The units in which a sheet shows its numbers.
enum class UnitSystem : std::uint8_t {
  kSi,   ///< m, kg, s, K: as documents hold them.
  kMmT,  ///< mm, t, s, K: forces in N, pressures in MPa.
};

/// The dimension of a magnitude such as "TEMPRTRE"; `kUnknown` for a name that stands for none.
[[nodiscard]] Dimension DimensionOf(std::string_view magnitude);

/// For programs: "pressure", "angularVelocity"; empty for `kNone`.
[[nodiscard]] std::string_view NameOf(Dimension dimension);

/// What stands behind the number: "MPa"; empty where there is no unit.
[[nodiscard]] std::string_view SymbolOf(Dimension dimension, UnitSystem system);

/// The number, which a document holds, in the unit of that system.
[[nodiscard]] double InUnit(double number, Dimension dimension, UnitSystem system);

}  // namespace standalone::sheet
