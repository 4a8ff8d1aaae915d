#include "report/SheetWords.h"

#include <algorithm>
#include <cctype>

#include "file/FeatureText.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::Value;
using standalone::ValueKind;
using namespace standalone::sheet;

struct ChapterWords {
  std::string_view name;
  std::string_view title;
};

// In the order of the chapters.
constexpr ChapterWords kChapters[] = {{"case", "Analysis case"},
                                      {"step", "Step"},
                                      {"restraint", "Restraints"},
                                      {"load", "Loads"},
                                      {"interaction", "Interactions"},
                                      {"output", "Output requests"},
                                      {"elements", "Element assignments"},
                                      {"job", "Jobs"},
                                      {"solution", "Solutions"},
                                      {"mesh", "Meshes"},
                                      {"group", "Groups"},
                                      {"property", "Properties"},
                                      {"connection", "Connections"}};

const ChapterWords& WordsOf(Chapter chapter) {
  return kChapters[static_cast<std::size_t>(chapter)];
}

// What else stands for itself where values are shown.
constexpr std::string_view kReserved[] = {"yes", "no", "not set", "nothing"};

bool IsNumber(const Value& value) {
  return value.Kind() == ValueKind::kInteger || value.Kind() == ValueKind::kReal;
}

double NumberOf(const Value& value) {
  return value.Kind() == ValueKind::kReal ? value.AsReal() : static_cast<double>(value.AsInteger());
}

// Without the unit.
std::string NumberWord(const Fact& fact, const Style& style) {
  const bool isCount = fact.value.Kind() == ValueKind::kInteger && fact.dimension == Dimension::kNone;
  if (isCount) return std::to_string(fact.value.AsInteger());
  const double number = InUnit(NumberOf(fact.value), fact.dimension, style.units);
  return fmt::format("{:.{}g}", number == 0 ? 0.0 : number, style.digits);  // not "-0"
}

std::string WithUnit(std::string number, Dimension dimension, UnitSystem units) {
  const std::string_view symbol = SymbolOf(dimension, units);
  return symbol.empty() ? number : fmt::format("{} {}", number, symbol);
}

// Separated by commas, up to a number that a reader still looks at.
template <class Range, class Words>
std::string Listed(const Range& entries, const Style& style, const Words& wordsFor) {
  constexpr std::size_t kMost = 10;
  // One more takes no more room than the words that would tell of it.
  const std::size_t shown = style.all || entries.size() <= kMost + 1 ? entries.size() : kMost;
  std::string words;
  for (std::size_t i = 0; i < shown; ++i) {
    if (i != 0) words += ", ";
    words += wordsFor(entries[i]);
  }
  if (shown < entries.size()) words += fmt::format(" and {} more", entries.size() - shown);
  return words;
}

std::string ValueWords(const Fact& fact, const Style& style) {
  switch (fact.value.Kind()) {
    case ValueKind::kString:
      return Shown(fact.value.AsString());
    case ValueKind::kInteger:
    case ValueKind::kReal:
      return WithUnit(NumberWord(fact, style), fact.dimension, style.units);
    case ValueKind::kBoolean:
      return fact.value.AsBoolean() ? "yes" : "no";
    case ValueKind::kLink:
      return fact.value.Target() == nullptr ? "nothing" : ShownFeature(*fact.value.Target(), fact.context);
    case ValueKind::kList:
      return fmt::format("({})", Listed(fact.value.Entries(), style, [&](const Value& entry) {
                           return WordsFor(Fact{.standing = Standing::kSet, .value = entry}, style);
                         }));
  }
  return {};
}

bool HasValue(const Fact& fact) {
  return fact.standing == Standing::kSet || fact.standing == Standing::kDefault;
}

std::string_view DefaultMark(const Fact& fact) {
  return fact.standing == Standing::kDefault ? " (default)" : "";
}

// Whether the facts are the components of a vector.
bool AreComponents(std::span<const Fact> facts) {
  const Fact& first = facts.front();
  if (facts.size() < 2 || !first.quantity->each.empty()) return false;
  return std::ranges::all_of(facts, [&](const Fact& fact) {
    return HasValue(fact) && fact.standing == first.standing && IsNumber(fact.value) &&
           fact.dimension == first.dimension;
  });
}

std::string VectorWords(std::span<const Fact> facts, const Style& style) {
  const std::string numbers =
      Listed(facts, style, [&style](const Fact& fact) { return NumberWord(fact, style); });
  return WithUnit(fmt::format("({})", numbers), facts.front().dimension, style.units);
}

// "1 to 3: 0 mm, 5: 0.1 rad".
std::string NumberedWords(std::span<const Fact> facts, const Style& style) {
  std::string words;
  for (std::size_t i = 0; i < facts.size();) {
    const std::string one = WordsFor(facts[i], style);
    std::size_t end = i + 1;
    while (end < facts.size() && facts[end].index == facts[end - 1].index + 1 &&
           facts[end].standing == facts[i].standing && WordsFor(facts[end], style) == one)
      ++end;
    if (!words.empty()) words += ", ";
    words += std::to_string(facts[i].index);
    if (end > i + 1) words += fmt::format("{}{}", end > i + 2 ? " to " : " and ", facts[end - 1].index);
    words += fmt::format(": {}{}", one, DefaultMark(facts[i]));
    i = end;
  }
  return words;
}

}  // namespace

std::string_view NameOf(UnitSystem units) {
  return units == UnitSystem::kSi ? "m, kg, s, K; N, Pa" : "mm, t, s, K; N, MPa";
}

std::string Shown(std::string_view text) {
  const auto isPlain = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) != 0 ||
           std::string_view(" ,._-+/").find(c) != std::string_view::npos;
  };
  const auto holds = [text](std::string_view part) { return text.find(part) != std::string_view::npos; };
  const bool isItself = !text.empty() && std::ranges::all_of(text, isPlain) &&
                        std::string_view(" ,.-+0123456789").find(text.front()) == std::string_view::npos &&
                        text.back() != ' ' && text.back() != ',' && !holds("  ") && !holds(", ") &&
                        std::ranges::find(kReserved, text) == std::end(kReserved);
  return isItself && Printable(text) == text ? std::string(text) : Quoted(text);
}

std::string ShownFeature(const standalone::Feature& feature, const standalone::Feature* context) {
  const std::string name = Shown(NameFor(feature));
  return context == nullptr || context->id == feature.id
             ? name
             : fmt::format("{} ({})", name, Shown(NameFor(*context)));
}

std::string WordsFor(const Fact& fact, const Style& style) {
  if (fact.standing == Standing::kNotSet) return "not set";
  if (HasValue(fact)) return ValueWords(fact, style);
  constexpr std::size_t kMost = 60;
  fmt::memory_buffer json;
  standalone::AppendValue(json, fact.value);
  const std::string_view value(json.data(), json.size());
  if (style.all || value.size() <= kMost) return fmt::format("cannot be read: {}", Printable(value));
  std::size_t end = kMost;  // not within a character
  while ((static_cast<unsigned char>(value[end]) & 0xc0U) == 0x80) --end;
  return fmt::format("cannot be read: {}...", Printable(value.substr(0, end)));
}

std::string WordsFor(std::span<const Fact> facts, const Style& style) {
  if (facts.empty()) return {};
  const Fact& first = facts.front();
  if (first.quantity->isList) {
    return Listed(facts, style, [&style](const Fact& fact) {
      return fact.standing == Standing::kNotSet ? "nothing" : WordsFor(fact, style);
    });
  }
  if (AreComponents(facts)) return fmt::format("{}{}", VectorWords(facts, style), DefaultMark(first));
  if (facts.size() > 1 || first.index != 0) return NumberedWords(facts, style);
  return fmt::format("{}{}", WordsFor(first, style), DefaultMark(first));
}

std::string_view TitleOf(Chapter chapter) {
  return WordsOf(chapter).title;
}

std::string_view NameOf(Chapter chapter) {
  return WordsOf(chapter).name;
}

std::string ShownName(const Subject& subject) {
  return subject.name.empty() ? fmt::format("#{}", subject.id) : Shown(subject.name);
}

std::string LabelOf(const Subject& subject) {
  return fmt::format("{} {}", subject.kind->name, ShownName(subject));
}

}  // namespace tool
