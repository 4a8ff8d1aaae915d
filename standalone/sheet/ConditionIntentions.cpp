// Values of boundary conditions, loads and initial conditions.

#include <algorithm>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

// The host makes the components of the current layout before values are moved into them: a value that an old
// document does not hold is 0 then.
bool FilledUp(Change& change) {
  const auto isNothing = [](const Fact& fact) { return fact.standing == Standing::kNotSet; };
  const auto isZero = [](const Fact& fact) { return IsNumber(fact, 0) || IsFlag(fact, false); };
  return change.lost.size() == change.gained.size() && std::ranges::all_of(change.lost, isNothing) &&
         std::ranges::all_of(change.gained, isZero) && change.All();
}

bool PartOfAxis(Change& change) {
  const Fact* const gained = change.OnlyGained();
  const Fact* const axis = change.after.Find(*change.is, "axis");
  if (gained == nullptr || axis == nullptr || TargetOf(*axis) == nullptr) return false;
  const Feature* const container = TargetOf(*axis)->Container();
  return container != nullptr && AreSame(TargetOf(*gained), HeldFeature(*container, "Part")) && change.All();
}

constexpr std::string_view kFilledUp = "a value that was not set becomes 0";
constexpr std::string_view kMidside = "temperatures of midside nodes are interpolated from now on";

constexpr Intention Fills(std::string_view identifier, std::string_view kinds, std::string_view quantity) {
  return {identifier, kinds, quantity, Meaning::kOnPurpose, kFilledUp, FilledUp};
}

constexpr Intention kIntentions[] = {
    Fills("UpgradePressureBasicComponents", "pressure", "pressure"),
    Fills("UpgradeGravityBasicComponents", "gravity", "acceleration 1"),
    Fills("UpgradeGravityBasicComponents", "gravity", "acceleration 2"),
    Fills("UpgradeGravityBasicComponents", "gravity", "acceleration 3"),
    Fills("UpgradeBasicComponents", "rotational body force", "angular velocity"),
    Fills("UpgradeBasicComponents", "rotational body force", "angular acceleration"),
    Fills("UpgradeRotationalBodyForceBasicComponents", "rotational body force", "angular velocity"),
    Fills("UpgradeRotationalBodyForceBasicComponents", "rotational body force", "angular acceleration"),
    Fills("UpgradeTemperatureBCBasicComponents", "temperature", "temperature"),
    Fills("UpgradeInitialTemperatureBasicComponents", "initial temperature", "temperature"),
    Fills("UpgradeTempMidside", "initial temperature, temperature history", "temperature"),
    Fills("UpgradeTemperatureHistoryBasicComponents", "temperature history", "temperature"),
    Fills("UpgradeConcHeatFluxBasicComponents", "concentrated heat flux", "heat flow"),
    Fills("UpgradeSurfaceHeatFluxBasicComponents", "surface heat flux", "heat flux"),
    Fills("UpgradeSurfaceHeatFluxInvertSurfaceBasicComponents", "surface heat flux", "heat flux"),
    Fills("UpgradeFilmConditionBasicComponents", "film condition", "reference temperature"),
    Fills("UpgradeFilmConditionInvertSurfaceBasicComponents", "film condition", "reference temperature"),
    {"UpgradeTempMidside", "initial temperature, temperature history", "midside nodes interpolated",
     Meaning::kOnPurpose, kMidside, BecomesFlag<true>},
    {"UpgradeEndIncrementOption", "temperature history", "end increment", Meaning::kOnPurpose,
     "the end increment is set to its default", BecomesNumber<0>},
    {"UpgradeRBFAxisData", "rotational body force", "part of the axis", Meaning::kSame,
     "the axis is stored together with its part", PartOfAxis},
};

}  // namespace

std::span<const Intention> ConditionIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
