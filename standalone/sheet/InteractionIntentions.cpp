// Contacts, and the properties of connections that pairs replace.

#include <algorithm>
#include <array>
#include <map>

#include "sheet/Explaining.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kPairs = "contact pair, explicit contact pair";
constexpr std::string_view kProperty = "contact property";
constexpr std::string_view kRemoval = "UpgDocumentForCCPRemoval";
constexpr std::string_view kConversion = "UpgradeToContactConnectionEnhancementLT";
constexpr std::string_view kModeReset = "UpgradeReAutomaticOverclosureTolerancesInContactPair";

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
  const auto isOne = [&](std::string_view quantity) {
    const Fact* const code = change.after.Find(pair, quantity);
    return code != nullptr && IsNumber(*code, 1);
  };
  if (clearance == nullptr || value == nullptr || !isOne("fit type") || !isOne("fit definition"))
    return false;
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

bool HasNoFit(const Change& change, const Subject& pair) {
  return std::ranges::all_of(std::array{"fit type", "fit definition", "fit value"}, [&](const char* name) {
    const Fact* const now = change.after.Find(pair, name);
    return now != nullptr && IsNumber(*now, 0);
  });
}

bool SaysNothing(const Fact& fact) {
  return fact.standing == Standing::kNotSet || IsNumber(fact, 0) || IsFlag(fact, false) ||
         IsText(fact, "none") || IsText(fact, "finite") || IsText(fact, "node to surface");
}

// Whether the mode of tolerances was reset when there were new pairs already: upgrades stand in the order in
// which they ran.
bool IsModeReset(const Change& change) {
  const auto& before = change.before.Upgrades();
  const auto& after = change.after.Upgrades();
  const auto reset = std::ranges::find(after, kModeReset);
  return reset != after.end() && std::ranges::find(before, kModeReset) == before.end() &&
         std::ranges::find(after.begin(), reset, kRemoval) != reset;
}

// Beside its sides and its fit, a new pair has the settings that the factory gives, and acts in later steps.
bool HasSettingsOfNewPair(const Change& change, const Subject& pair) {
  const bool isModeReset = pair.kind->name == "contact pair" && IsModeReset(change);
  return std::ranges::all_of(change.after.FactsOf(pair), [&](const Fact& fact) {
    const std::string_view name = fact.quantity->name;
    if (name == "between") return fact.index == 1;
    if (name.starts_with("fit ")) return true;
    if (name == "also acts in") return IsText(fact, "later steps");
    if (name == "contact controls") return IsFlag(fact, true);
    if (name == "search tolerance") return IsNumber(fact, 0.1);
    if (name == "overclosure tolerance") return IsNumber(fact, -0.001);
    if (name == "overclosure tolerance mode") return IsNumber(fact, isModeReset ? 2 : 0);
    return SaysNothing(fact);
  });
}

// Explicit pairs have no fit to take over, and others take over that of a standard property only.
bool TakesFitOver(const Change& change, const Subject& property, const Subject& pair) {
  const Fact* const kind = change.before.Find(property, "contact kind");
  if (pair.kind->name != "contact pair" || kind == nullptr) return true;
  return IsText(*kind, "standard") ? HoldsFit(change, property, pair) : HasNoFit(change, pair);
}

bool HasInteractionsInSteps(const Change& change, const Feature* analysisCase) {
  const Subject* const subject = analysisCase == nullptr ? nullptr : change.after.Find(analysisCase->id);
  const Fact* const kind = subject == nullptr ? nullptr : change.after.Find(*subject, "case kind");
  return kind != nullptr && IsNumber(*kind, 1);
}

// New pairs stand in the interactions of their case; in a case of kind 1, one whose property prescribes a
// clearance stands in those of the first step that a contact can begin in.
bool StandsWhereMade(const Change& change, const Subject& pair, bool withClearance) {
  const Subject* const step = withClearance && HasInteractionsInSteps(change, pair.analysisCase)
                                  ? change.connections.StepsFor(pair.analysisCase).next
                                  : nullptr;
  return step == nullptr ? pair.step == nullptr : AreSame(pair.step, step->feature);
}

// The other object of the first support. Pairs on one connection that differ in it are told apart.
const Feature* SecondObjectOf(const Subject& pair) {
  const Value* const supports = Held(*pair.feature, "Supports");
  if (supports == nullptr || supports->Kind() != ValueKind::kList || supports->Entries().empty())
    return nullptr;
  const Value& first = supports->Entries().front();
  const Feature* const connector = first.Kind() == ValueKind::kLink ? first.Target() : nullptr;
  return connector == nullptr ? nullptr : HeldFeature(*connector, "SecondObject");
}

// A case that has a pair between those sides needs no other one, unless it came there by propagation.
bool IsOnlyOne(const Change& change, const Subject& pair) {
  const Feature* const second = SecondObjectOf(pair);
  if (second == nullptr) return true;
  return std::ranges::none_of(change.connections.PairsBeside(pair), [&](const Subject* other) {
    if (other == &pair) return false;
    const Value* const state = Held(*other->feature, "PropagationState");
    const bool isCreated = state == nullptr || *state == Value::Integer(0);
    return isCreated && AreSame(SecondObjectOf(*other), second);
  });
}

bool IsNewPairOf(const Change& change, bool withClearance) {
  if (change.is == nullptr) return false;
  const Subject* const property = PropertyBetween(change, *change.is);
  return property != nullptr && IsClearancePrescribed(change, *property) == withClearance &&
         TakesFitOver(change, *property, *change.is) && HasSettingsOfNewPair(change, *change.is) &&
         StandsWhereMade(change, *change.is, withClearance) && IsOnlyOne(change, *change.is);
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
  const auto holds = [&](const Subject* pair) {
    return IsClearancePrescribed(change, property) ? HoldsClearance(change, property, *pair)
                                                   : TakesFitOver(change, property, *pair);
  };
  return change.connections.HasPairInEveryCase(sides) &&
         std::ranges::any_of(change.connections.PairsBetween(sides), holds) && change.All();
}

// A request for a property of a connection looks at the pair of its case that came for it.
bool PropertyToPair(Change& change) {
  std::map<Connections::Sides, std::vector<const Fact*>> pairs;
  for (const Fact& now : change.gained) {
    const Feature* const target = TargetOf(now);
    const Subject* const pair = target == nullptr ? nullptr : change.after.Find(target->id);
    if (pair == nullptr || !IsPair(*pair) || !AreSame(pair->analysisCase, change.is->analysisCase)) continue;
    pairs[Connections::KeyOf(Connections::SidesOf(change.after, *pair))].push_back(&now);
  }
  if (pairs.empty()) return false;
  return change.Replace([&](const Fact& old) -> std::optional<std::vector<Fact>> {
    const Feature* const target = TargetOf(old);
    const Subject* const property = target == nullptr ? nullptr : change.before.Find(target->id);
    if (property == nullptr || !IsContactProperty(*property)) return std::nullopt;
    const auto found = pairs.find(Connections::KeyOf(Connections::SidesOf(change.before, *property)));
    if (found == pairs.end() || found->second.empty()) return std::nullopt;
    const Fact now = *found->second.back();
    found->second.pop_back();
    return {{now}};
  });
}

// The conversion puts a contact into its case's interactions; one with a prescribed clearance, in a case of
// kind 1, into those of the first step.
bool ToInteractionsOfCase(Change& change) {
  if (!IsOldContact(*change.was)) return false;
  const Feature* const analysisCase = change.is->analysisCase;
  if (!AreSame(change.was->analysisCase, analysisCase)) return false;
  const Fact* const fit = change.before.Find(*change.was, "fit type");
  const bool hasClearance = fit != nullptr && IsNumber(*fit, 1);
  const Subject* const step = hasClearance && HasInteractionsInSteps(change, analysisCase)
                                  ? change.connections.StepsFor(analysisCase).first
                                  : nullptr;
  if (step != nullptr && AreSame(change.is->step, step->feature)) return change.All();
  // Steps other than the initial one may have got their interactions only later.
  const bool isLate = step == nullptr || step->kind->name != "initial step";
  return isLate && change.is->step == nullptr && change.All();
}

// The pairs beside a converted one are propagated with it.
bool ToLaterSteps(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return change.connections.IsWithOldContact(*change.is) && gained != nullptr &&
         IsText(*gained, "later steps") && change.All();
}

// The fit of the pair is what a property between the same sides prescribes.
bool FitFromClearance(Change& change) {
  const Subject* const property = PropertyBetween(change, *change.is);
  return property != nullptr && IsClearancePrescribed(change, *property) &&
         HoldsClearance(change, *property, *change.is) && change.All();
}

bool HadNoControls(const Change& change) {
  const Fact* const controls = change.before.Find(*change.was, "contact controls");
  return controls != nullptr && IsFlag(*controls, false);
}
bool SearchTolerance(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return HadNoControls(change) && gained != nullptr && IsNumber(*gained, 0.1) && change.All();
}
bool OverclosureTolerance(Change& change) {
  const Fact* const gained = change.OnlyGained();
  return HadNoControls(change) && gained != nullptr && IsNumber(*gained, -0.001) && change.All();
}
bool NotAutomatic(Change& change) {
  return HadNoControls(change) && BecomesFlag<false>(change);
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
     "requests refer to the pair instead", PropertyToPair},
    {kConversion, "contact pair", "place", Meaning::kOnPurpose,
     "contacts are in their case or its first step", ToInteractionsOfCase},
    {kConversion, kPairs, "also acts in", Meaning::kOnPurpose, "contact pairs act in the later steps as well",
     ToLaterSteps},
    {kMapping, "contact pair", "fit type", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kMapping, "contact pair", "fit definition", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kMapping, "contact pair", "fit value", Meaning::kOnPurpose, kMapped, FitFromClearance},
    {kControl, kPairs, "contact controls", Meaning::kSame, "contacts have controls, by default values",
     BecomesFlag<true>},
    {kControl, "contact pair", "search tolerance", Meaning::kOnPurpose, kTolerances, SearchTolerance},
    {kControl, "contact pair", "overclosure tolerance", Meaning::kOnPurpose, kTolerances,
     OverclosureTolerance},
    {kControl, "contact pair", "automatic tolerances", Meaning::kOnPurpose, kTolerances, NotAutomatic},
    {kModeReset, "contact pair", "overclosure tolerance mode", Meaning::kOnPurpose,
     "the overclosure tolerance mode is reset to 2", BecomesNumber<2>},
};

}  // namespace

std::span<const Intention> InteractionIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
