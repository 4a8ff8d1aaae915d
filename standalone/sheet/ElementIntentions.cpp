// Element assignments and their section controls.

#include <algorithm>
#include <array>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

bool IsList(const Fact& fact, std::initializer_list<double> numbers) {
  if (fact.standing != Standing::kSet || fact.value.Kind() != ValueKind::kList) return false;
  return std::ranges::equal(fact.value.Entries(), numbers, [](const Value& value, double number) {
    if (value.Kind() == ValueKind::kBoolean) return (value.AsBoolean() ? 1.0 : 0.0) == number;
    return value.Kind() == ValueKind::kReal && value.AsReal() == number;
  });
}

// What new section controls hold.
bool IsDefaultControl(const Fact& fact) {
  const std::string_view name = fact.quantity->name;
  if (name == "second-order accuracy") return IsFlag(fact, false);
  if (name == "length ratio") return IsNumber(fact, 0.1);
  if (name == "stiffness-viscous weight factor") return IsNumber(fact, 0.5);
  return IsNumber(fact, name.ends_with("scaling factor") ? 1 : 0);
}

// What a new assignment holds.
bool IsDefaultSetting(const Fact& fact) {
  const std::string_view name = fact.quantity->name;
  if (name == "options") return IsList(fact, {0, 0, 0, 0});
  if (name == "option values") return IsList(fact, {0, 0});
  return name == "element shape" ? IsText(fact, "none chosen") : IsNumber(fact, 0);
}

// What the workbench takes for pyramids.
bool IsPyramidSetting(const Fact& fact) {
  const std::string_view name = fact.quantity->name;
  if (name == "element shape") return IsText(fact, "pyramid");
  if (name == "formulation") return IsNumber(fact, 2);
  if (name == "options") return IsList(fact, {1, 0, 0, 1});
  if (name == "option values") return IsList(fact, {0, 0.5});
  return IsNumber(fact, 0);
}

// Assignments that had no controls, and new ones, have those with the default values.
bool DefaultControls(Change& change) {
  const auto isNothing = [](const Fact& fact) { return fact.standing == Standing::kNotSet; };
  return std::ranges::all_of(change.lost, isNothing) &&
         std::ranges::all_of(change.gained, IsDefaultControl) && change.All();
}

std::uint32_t CountBefore(const Change& change) {
  return static_cast<std::uint32_t>(AllOf(change.before, *change.was, "element shape").size());
}

// One assignment more than before.
bool Pyramid(Change& change) {
  const Fact* const gained = change.OnlyGained();
  const Fact* const type = change.after.Find(*change.is, "for analyses of type");
  return change.lost.empty() && gained != nullptr && gained->index == CountBefore(change) + 1 &&
         type != nullptr && IsText(*type, "nonlinear structural") && IsPyramidSetting(*gained) &&
         change.All();
}

// The second assignment has the settings of the first, but for its shape; one behind that is as it was made.
// Lists of two stay as they are.
bool CopiedSetting(Change& change) {
  const std::uint32_t before = CountBefore(change);
  const std::uint32_t added = before + 1;
  if (before == 2) return false;
  const Fact* const first = change.after.Find(
      *change.is, change.gained.empty() ? std::string_view() : change.gained.front().quantity->name);
  if (first == nullptr) return false;
  const bool isShape = first->quantity->name == "element shape";
  const bool isMeant = std::ranges::all_of(change.gained, [&](const Fact& fact) {
    if (fact.index == 2 && !isShape) return SayTheSame(fact, *first);
    return fact.index == added && IsDefaultSetting(fact);
  });
  return isMeant && std::ranges::all_of(change.lost, [](const Fact& fact) { return fact.index == 2; }) &&
         change.All();
}

constexpr std::string_view kGlobal = "global element assignment";
constexpr std::string_view kLocal = "local element assignment";
constexpr std::string_view kControls = "UpgradeGlobalAndLocalElemAssgnToContainSectionControls";
constexpr std::string_view kList = "UpdateGlobalElementAsgnList";
constexpr std::string_view kAnew = "UpgradeLocalElementAssignment";
constexpr std::string_view kDefaults = "assignments have section controls, by default values";
constexpr std::string_view kPyramids = "an assignment for pyramids is added";
constexpr std::string_view kCopied = "the first assignment is doubled";

constexpr std::array<std::string_view, 8> kControlQuantities{
    "distortion control",
    "second-order accuracy",
    "hourglass control",
    "length ratio",
    "stiffness-viscous weight factor",
    "displacement hourglass scaling factor",
    "rotational hourglass scaling factor",
    "out-of-plane hourglass scaling factor",
};
constexpr std::array<std::string_view, 5> kSettingQuantities{"element shape", "element order", "formulation",
                                                             "options", "option values"};

// Each of them for every quantity that it concerns.
constexpr auto MakeIntentions() {
  std::array<Intention, 4 * kControlQuantities.size() + 2 * kSettingQuantities.size()> all{};
  std::size_t i = 0;
  for (const std::string_view name : kControlQuantities) {
    all[i++] = {kControls, kGlobal, name, Meaning::kSame, kDefaults, DefaultControls};
    all[i++] = {kControls, kLocal, name, Meaning::kSame, kDefaults, DefaultControls};
    all[i++] = {kList, kGlobal, name, Meaning::kOnPurpose, kPyramids, DefaultControls};
    all[i++] = {kAnew, kLocal, name, Meaning::kSame, kDefaults, DefaultControls};
  }
  for (const std::string_view name : kSettingQuantities) {
    all[i++] = {kList, kGlobal, name, Meaning::kOnPurpose, kPyramids, Pyramid};
    all[i++] = {kControls, kLocal, name, Meaning::kOnPurpose, kCopied, CopiedSetting};
  }
  return all;
}
constexpr auto kIntentions = MakeIntentions();

}  // namespace

std::span<const Intention> ElementIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
