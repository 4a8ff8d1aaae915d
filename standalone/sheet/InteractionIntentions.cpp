// Contacts, the properties of connections that pairs replace, and friction.

#include <algorithm>
#include <array>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kPairs = "contact pair, explicit contact pair";
constexpr std::string_view kProperty = "contact property";
constexpr std::string_view kRemoval = "UpgDocumentForCCPRemoval";
constexpr std::string_view kConversion = "UpgradeToContactConnectionEnhancementLT";

// The old property of faces between whose sides the pair is made; null without one.
const Subject* PropertyBetween(const Change& change, const Subject& pair) {
  return change.connections.PropertyBetween(Connections::SidesOf(change.after, pair));
}

bool IsClearancePrescribed(const Change& change, const Subject& property) {
  const Fact* const prescribed = change.before.Find(property, "clearance prescribed");
  return prescribed != nullptr && IsFlag(*prescribed, true);
}

// Clearances are numbers of single precision, whatever a document holds.
bool HoldsClearance(const Change& change, const Subject& property, const Subject& pair) {
  const Fact* const clearance = change.before.Find(property, "clearance");
  const Fact* const value = change.after.Find(pair, "fit value");
  const Fact* const type = change.after.Find(pair, "fit type");
  if (clearance == nullptr || value == nullptr || type == nullptr || !IsNumber(*type, 1)) return false;
  if (clearance->standing == Standing::kUnreadable || clearance->dimension != value->dimension) return false;
  return IsNumber(*value, static_cast<double>(static_cast<float>(clearance->value.AsReal())));
}

bool HoldsFit(const Change& change, const Subject& property, const Subject& pair) {
  return std::ranges::all_of(std::array{"fit type", "fit definition", "fit value"}, [&](const char* name) {
    const Fact* const old = change.before.Find(property, name);
    const Fact* const now = change.after.Find(pair, name);
    return old != nullptr && now != nullptr && SayTheSame(*old, *now);
  });
}

bool SaysNothing(const Fact& fact) {
  return fact.standing == Standing::kNotSet || IsNumber(fact, 0) || IsFlag(fact, false) ||
         IsText(fact, "none") || IsText(fact, "finite") || IsText(fact, "node to surface");
}

// Beside its sides and its fit, a new pair has the settings that the factory gives.
bool HasSettingsOfNewPair(const Change& change, const Subject& pair) {
  return std::ranges::all_of(change.after.FactsOf(pair), [&](const Fact& fact) {
    const std::string_view name = fact.quantity->name;
    if (name == "between" || name.starts_with("fit ") || name == "also acts in") return true;
    if (name == "search tolerance") return IsNumber(fact, 0.1);
    if (name == "overclosure tolerance") return IsNumber(fact, -0.001);
    if (name == "overclosure tolerance mode") return IsNumber(fact, 0) || IsNumber(fact, 2);
    return SaysNothing(fact);
  });
}

// Explicit pairs have no fit to take over.
bool TakesFitOver(const Change& change, const Subject& property, const Subject& pair) {
  const Fact* const kind = change.before.Find(property, "contact kind");
  if (pair.kind->name != "contact pair" || kind == nullptr || !IsText(*kind, "standard")) return true;
  return HoldsFit(change, property, pair);
}

bool IsNewPairOf(const Change& change, bool withClearance) {
  if (change.is == nullptr) return false;
  const Subject* const property = PropertyBetween(change, *change.is);
  return property != nullptr && IsClearancePrescribed(change, *property) == withClearance &&
         TakesFitOver(change, *property, *change.is) && HasSettingsOfNewPair(change, *change.is);
}
bool NewPair(Change& change) {
  return IsNewPairOf(change, false) && change.All();
}
bool NewPairWithoutClearance(Change& change) {
  return IsNewPairOf(change, true) && change.All();
}

// A pair between the same sides stands in every case, and what the property prescribed is with one of them.
bool ReplacedByPairs(Change& change) {
  if (change.was == nullptr) return false;
  const Subject& property = *change.was;
  const Fact* const sides = Connections::SidesOf(change.before, property);
  if (sides == nullptr) return change.All();  // what is prescribed to nothing is no loss
  const auto& pairs = change.connections.PairsBetween(sides);
  const auto hasPair = [&](const Subject* analysisCase) {
    return std::ranges::any_of(
        pairs, [&](const Subject* pair) { return AreSame(pair->analysisCase, analysisCase->feature); });
  };
  const auto holds = [&](const Subject* pair) {
    return IsClearancePrescribed(change, property) ? HoldsClearance(change, property, *pair)
                                                   : TakesFitOver(change, property, *pair);
  };
  return std::ranges::all_of(change.connections.Cases(), hasPair) && std::ranges::any_of(pairs, holds) &&
         change.All();
}

// A request for a property of a connection looks at the pair that came for it.
bool PropertyToPair(Change& change) {
  for (const Fact& old : change.lost) {
    const Feature* const target = TargetOf(old);
    const Subject* const property = target == nullptr ? nullptr : change.before.Find(target->id);
    if (property == nullptr || !IsContactProperty(*property)) continue;
    const Fact* const sides = Connections::SidesOf(change.before, *property);
    for (const Fact& now : change.gained) {
      const Feature* const other = TargetOf(now);
      const Subject* const pair = other == nullptr ? nullptr : change.after.Find(other->id);
      if (pair == nullptr || !IsPair(*pair)) continue;
      if (!Connections::AreSameSides(Connections::SidesOf(change.after, *pair), sides)) continue;
      if (!AreSame(pair->analysisCase, change.is->analysisCase)) continue;
      return change.Replaced(Fact(old), {Fact(now)});
    }
  }
  return false;
}

// The conversion puts a contact into its case's interactions; one with a prescribed clearance, in a case of
// kind 1, into those of the first step.
bool ToInteractionsOfCase(Change& change) {
  if (change.was->lateType != "HVXSurfaceToSurfaceContactLT") return false;
  if (!AreSame(change.was->analysisCase, change.is->analysisCase)) return false;
  if (change.is->step == nullptr) return change.All();
  const Subject* const analysisCase = change.after.Find(change.is->analysisCase->id);
  const Subject* const step = change.after.Find(change.is->step->id);
  if (analysisCase == nullptr || step == nullptr) return false;
  const Fact* const caseKind = change.after.Find(*analysisCase, "case kind");
  const Fact* const position = change.after.Find(*step, "position in the history");
  return caseKind != nullptr && IsNumber(*caseKind, 1) && position != nullptr && IsNumber(*position, 1) &&
         change.All();
}

bool ToLaterSteps(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && IsText(*gained, "later steps") && change.All();
}

// The fit of the pair is what a property between the same sides prescribes.
bool FitFromClearance(Change& change) {
  const Subject* const property = PropertyBetween(change, *change.is);
  return property != nullptr && IsClearancePrescribed(change, *property) &&
         HoldsClearance(change, *property, *change.is) && change.All();
}

// Only pairs that had no contact control.
bool SearchTolerance(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && IsNumber(*gained, 0.1) && change.All();
}
bool OverclosureTolerance(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return gained != nullptr && IsNumber(*gained, -0.001) && change.All();
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

constexpr std::string_view kMapping = "UpgMapCCPClearanceToInterference";
constexpr std::string_view kMapped = "the clearance that the connection prescribes becomes the pair's fit";
constexpr std::string_view kControl = "UpgContactWithContactControl";
constexpr std::string_view kTolerances = "a contact that had no controls gets the default tolerances";
constexpr std::string_view kReplacing = "contact pairs take the place of contact properties";

constexpr Intention kIntentions[] = {
    {kRemoval, kPairs, "*", Meaning::kSame, kReplacing, NewPair},
    {kRemoval, kPairs, "*", Meaning::kOnPurpose, "new pairs do not take over a prescribed clearance",
     NewPairWithoutClearance},
    {kRemoval, kProperty, "*", Meaning::kSame, kReplacing, ReplacedByPairs},
    {kRemoval, "field output request, history output request, data output request", "support", Meaning::kSame,
     "requests look at the pair in its place", PropertyToPair},
    {kConversion, "contact pair", "stands in", Meaning::kOnPurpose,
     "contacts stand in their case or its first step", ToInteractionsOfCase},
    {kConversion, kPairs, "also acts in", Meaning::kOnPurpose, "contact pairs act in the later steps as well",
     ToLaterSteps},
    {kMapping, "contact pair", "fit type", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kMapping, "contact pair", "fit definition", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kMapping, "contact pair", "fit value", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kControl, "contact pair", "search tolerance", Meaning::kOnPurpose, kTolerances, SearchTolerance},
    {kControl, "contact pair", "overclosure tolerance", Meaning::kOnPurpose, kTolerances,
     OverclosureTolerance},
    {kControl, "contact pair", "automatic tolerances", Meaning::kOnPurpose, kTolerances, BecomesFlag<false>},
    {"UpgradeReAutomaticOverclosureTolerancesInContactPair", "contact pair", "overclosure tolerance mode",
     Meaning::kOnPurpose, "the overclosure tolerance mode is reset to 2", BecomesNumber<2>},
    {"FrictionValueUpgrade", "interaction property", "friction", Meaning::kSame,
     "the friction value becomes a table that holds it", FrictionTable},
    {"FrictionValueUpgrade", "interaction property", "friction", Meaning::kOnPurpose,
     "the first friction value becomes the table; the others are not taken over", FirstFriction},
    {"UserSubRoutineAttrUpgrade", "interaction property", "friction formulation", Meaning::kSame,
     "friction by a user subroutine is a formulation of its own", UserFriction},
};

}  // namespace

std::span<const Intention> InteractionIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
