// Sections and interaction properties.

#include <algorithm>
#include <array>
#include <numbers>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

constexpr double kDegreesInRadian = 180.0 / std::numbers::pi;

// To the last bit: an angle that went through another number would be another one.
bool ToRadians(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  if (lost == nullptr || gained == nullptr || lost->standing != Standing::kSet ||
      gained->standing != Standing::kSet)
    return false;
  return lost->dimension == Dimension::kDegrees && gained->dimension == Dimension::kAngle &&
         lost->value.AsReal() / kDegreesInRadian == gained->value.AsReal() && change.All();
}

bool OtherUnit(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  if (lost == nullptr || gained == nullptr || lost->standing != Standing::kSet ||
      gained->standing != Standing::kSet)
    return false;
  return gained->dimension == Dimension::kStiffness && lost->value.AsReal() == gained->value.AsReal() &&
         change.All();
}

// One row of four: the coefficient, and nothing that it depends on.
bool IsTableOf(const Fact& gained, double coefficient) {
  if (gained.standing != Standing::kSet || gained.value.Kind() != ValueKind::kList) return false;
  const auto rows = gained.value.Entries();
  if (rows.size() != 1 || rows.front().Kind() != ValueKind::kList) return false;
  const auto row = rows.front().Entries();
  const std::array<double, 4> expected{coefficient, 0, 0, 0};
  return std::ranges::equal(row, expected, [](const Value& value, double number) {
    return value.Kind() == ValueKind::kReal && value.AsReal() == number;
  });
}

bool IsFrictionTable(const Change& change, bool isAll) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  if (lost == nullptr || gained == nullptr || lost->standing != Standing::kSet) return false;
  const auto values = lost->value.Entries();
  if (values.empty() || (values.size() == 1) != isAll) return false;
  const Value& first = values.front();
  if (first.Kind() != ValueKind::kReal && first.Kind() != ValueKind::kInteger) return false;
  return IsTableOf(
      *gained, first.Kind() == ValueKind::kReal ? first.AsReal() : static_cast<double>(first.AsInteger()));
}
bool FrictionTable(Change& change) {
  return IsFrictionTable(change, true) && change.All();
}
bool FirstFriction(Change& change) {
  return IsFrictionTable(change, false) && change.All();
}

bool UserFriction(Change& change) {
  const Fact* const user = change.after.Find(*change.is, "friction by a user subroutine");
  const Fact* const gained = change.OnlyGained();
  return user != nullptr && IsFlag(*user, true) && gained != nullptr && IsText(*gained, "user-defined") &&
         change.All();
}

constexpr Intention kIntentions[] = {
    {"UpgradeMatOrientAngleToRadians", "shell section", "orientation angle", Meaning::kSame,
     "degrees become radians", ToRadians},
    {"UpgradeGasketStabilizationStiffnessUnit", "gasket section", "stabilization stiffness", Meaning::kSame,
     "the same number is a stiffness now", OtherUnit},
    {"FrictionValueUpgrade", "interaction property", "friction", Meaning::kSame,
     "the friction value becomes a table that holds it", FrictionTable},
    {"FrictionValueUpgrade", "interaction property", "friction", Meaning::kOnPurpose,
     "the first friction value becomes the table; the others are not taken over", FirstFriction},
    {"UserSubRoutineAttrUpgrade", "interaction property", "friction formulation", Meaning::kSame,
     "friction by a user subroutine is a formulation of its own", UserFriction},
};

}  // namespace

std::span<const Intention> PropertyIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
