#include "report/SheetPieces.h"

#include <algorithm>
#include <vector>

namespace tool {
namespace {

using standalone::Value;
using standalone::ValueKind;
using namespace standalone::sheet;

// What is told by itself.
constexpr std::string_view kName = "name";
constexpr std::string_view kSupport = "support";
// Which degrees of freedom a condition prescribes; the others have values that nobody takes.
constexpr std::string_view kPrescribed = "prescribed";
constexpr std::string_view kDegreeOfFreedom = "degree of freedom";
// How often a request is written, and in what that counts.
constexpr std::string_view kFrequency = "frequency";
constexpr std::string_view kFrequencyUnit = "frequency in";
// Which variables: that a request has a list of its own goes without saying.
constexpr std::string_view kSelection = "variable selection";

// The facts of one quantity, or of several that are numbered alike: "force 1", "force 2", "force 3".
struct Saying {
  std::string_view name;
  std::vector<Fact> facts;
};

// "force" for "force 2", when the number is that; empty for any other name.
std::string_view StemOf(std::string_view name, std::size_t number) {
  constexpr std::size_t kMostNumbered = 9;
  if (number > kMostNumbered || name.size() < 3 || name[name.size() - 2] != ' ') return {};
  return name.back() == static_cast<char>('0' + number) ? name.substr(0, name.size() - 2)
                                                        : std::string_view();
}

std::vector<Saying> SayingsOf(std::span<const Fact> facts) {
  std::vector<Saying> sayings;
  for (const Fact& fact : facts) {
    const std::string_view name = fact.quantity->name;
    if (!sayings.empty()) {
      Saying& last = sayings.back();
      const std::string_view stem = StemOf(name, last.facts.size() + 1);
      if (last.facts.back().quantity == fact.quantity || (!stem.empty() && stem == last.name)) {
        last.facts.push_back(fact);
        continue;
      }
    }
    const std::string_view stem = StemOf(name, 1);
    sayings.push_back({stem.empty() ? name : stem, {fact}});
  }
  for (Saying& saying : sayings) {
    if (saying.facts.size() == 1) saying.facts.front().index = 0;  // the first of one
  }
  return sayings;
}

bool IsTrue(const Fact& fact) {
  return fact.value.Kind() != ValueKind::kBoolean || fact.value.AsBoolean();
}

// Leaves what a condition prescribes.
void LeavePrescribed(std::vector<Saying>& sayings) {
  const auto prescribed = std::ranges::find(sayings, kPrescribed, &Saying::name);
  if (prescribed == sayings.end()) return;
  const auto isFree = [&](const Fact& fact) {
    const auto found = std::ranges::find(prescribed->facts, fact.index, &Fact::index);
    return found == prescribed->facts.end() || found->standing == Standing::kNotSet || !IsTrue(*found);
  };
  for (Saying& saying : sayings) {
    if (saying.name != kPrescribed && saying.facts.front().quantity->each == kDegreeOfFreedom)
      std::erase_if(saying.facts, isFree);
  }
  sayings.erase(prescribed);
}

// "every 2 increments", "in 50 intervals"; empty where one of the two says something else.
std::string FrequencyOf(const std::vector<Saying>& sayings) {
  const auto number = std::ranges::find(sayings, kFrequency, &Saying::name);
  const auto unit = std::ranges::find(sayings, kFrequencyUnit, &Saying::name);
  if (number == sayings.end() || unit == sayings.end()) return {};
  const Value& count = number->facts.front().value;
  const Value& counted = unit->facts.front().value;
  if (count.Kind() != ValueKind::kInteger || counted.Kind() != ValueKind::kString) return {};
  if (unit->facts.front().standing == Standing::kUnreadable) return {};
  const bool isInterval = counted.AsString() == "intervals";
  if (count.AsInteger() == 1) return isInterval ? "in 1 interval" : "every increment";
  return fmt::format("{} {} {}", isInterval ? "in" : "every", count.AsInteger(), counted.AsString());
}

bool IsCondition(const Subject& subject) {
  return subject.kind->chapter == Chapter::kRestraint || subject.kind->chapter == Chapter::kLoad;
}

// "no", 0 or an empty text: nothing is asked for. A default link repeats what is told elsewhere.
bool IsEmpty(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kBoolean:
      return !value.AsBoolean();
    case ValueKind::kInteger:
      return value.AsInteger() == 0;
    case ValueKind::kReal:
      return value.AsReal() == 0;
    case ValueKind::kString:
      return value.AsString().empty();
    case ValueKind::kLink:
      return true;
    case ValueKind::kList:
      return value.Entries().empty();
  }
  return false;
}

// That a measure lacks means something, and so does the default of a condition; other things lack because
// nobody wanted them.
bool IsWorthSaying(const Fact& fact, const Subject& subject, const Style& style) {
  if (style.all) return true;
  const bool isMeasure = fact.dimension != Dimension::kNone && fact.dimension != Dimension::kRatio;
  if (fact.standing == Standing::kNotSet) return isMeasure;
  return fact.standing != Standing::kDefault || (isMeasure && IsCondition(subject)) || !IsEmpty(fact.value);
}

bool AreAll(const Saying& saying, Standing standing) {
  return std::ranges::all_of(saying.facts,
                             [standing](const Fact& fact) { return fact.standing == standing; });
}

// "time period 1 s", "between Seal to Plate", but "sliding: finite".
bool ReadsOn(const Fact& fact) {
  return fact.quantity->isList || fact.index != 0 || fact.value.Kind() == ValueKind::kInteger ||
         fact.value.Kind() == ValueKind::kReal;
}

// The value alone where the kind tells what it is: "pressure", "initial temperature".
std::string WordsOf(Saying& saying, const Subject& subject, const Style& style) {
  if (AreAll(saying, Standing::kNotSet)) return fmt::format("{} not set", saying.name);
  if (AreAll(saying, Standing::kDefault)) {  // which is told of all of them
    for (Fact& fact : saying.facts) fact.standing = Standing::kSet;
  }
  for (std::size_t i = 0; saying.facts.size() > 1 && i < saying.facts.size(); ++i) {
    if (saying.facts[i].index == 0) saying.facts[i].index = static_cast<std::uint32_t>(i + 1);
  }
  std::string words = WordsFor(saying.facts, style);
  const bool isTold =
      subject.kind->name == saying.name || subject.kind->name.ends_with(fmt::format(" {}", saying.name));
  if (isTold) return words;
  return fmt::format("{}{} {}", saying.name, ReadsOn(saying.facts.front()) ? "" : ":", words);
}

// Ends each piece but the last with what separates it from the next.
void Punctuate(Cell& pieces) {
  const bool hasCommas = std::ranges::any_of(
      pieces, [](const std::string& piece) { return piece.find(", ") != std::string::npos; });
  for (std::size_t i = 0; i + 1 < pieces.size(); ++i) pieces[i] += hasCommas ? ';' : ',';
}

// Appends what a condition is on, in a piece for each entry.
void AppendPlace(Cell& pieces, std::string_view words) {
  if (pieces.size() > 1) pieces.back() += ';';
  std::string piece = "on ";
  while (!words.empty()) {
    const std::size_t comma = words.find(", ");
    const std::size_t end = comma == std::string_view::npos ? words.size() : comma + 1;
    pieces.push_back(piece + std::string(words.substr(0, end)));
    piece.clear();
    words.remove_prefix(std::min(end + 1, words.size()));
  }
}

}  // namespace

Cell PiecesOf(const Sheet& sheet, const Subject& subject, const Style& style) {
  std::vector<Saying> sayings = SayingsOf(sheet.FactsOf(subject));
  LeavePrescribed(sayings);
  Cell pieces;
  Cell defaults;
  std::string place;
  std::string frequency = style.all ? std::string() : FrequencyOf(sayings);
  for (Saying& saying : sayings) {
    const auto isWorthSaying = [&](const Fact& fact) { return IsWorthSaying(fact, subject, style); };
    if (saying.facts.empty()) pieces.emplace_back("nothing prescribed");
    if (saying.name == kSupport) place = WordsFor(saying.facts, style);
    if (saying.name == kName || saying.name == kPositionQuantity || saying.name == kSupport ||
        std::ranges::none_of(saying.facts, isWorthSaying))
      continue;
    if (!frequency.empty() && saying.name == kFrequencyUnit) pieces.push_back(frequency);
    if (!frequency.empty() && (saying.name == kFrequencyUnit || saying.name == kFrequency)) continue;
    const bool isDefault = AreAll(saying, Standing::kDefault);
    if (isDefault && saying.name == kSelection && !style.all) continue;
    Cell& among = isDefault ? defaults : pieces;
    among.push_back(WordsOf(saying, subject, style));
  }
  Punctuate(pieces);
  if (!defaults.empty()) {
    Punctuate(defaults);
    defaults.front().insert(0, "(default: ");
    defaults.back() += ')';
    std::ranges::move(defaults, std::back_inserter(pieces));
  }
  if (!place.empty()) {
    AppendPlace(pieces, place);
  } else if (IsCondition(subject)) {
    pieces.emplace_back(pieces.empty() ? "without support" : "(without support)");
  }
  return pieces;
}

}  // namespace tool
