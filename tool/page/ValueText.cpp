#include "page/ValueText.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace tool::page {
namespace {

using simdjson::SUCCESS;
using simdjson::dom::element;
using simdjson::dom::element_type;

constexpr std::size_t kMostEntries = 8;
constexpr std::size_t kMostBytes = 300;

std::string Shortened(std::string_view text) {
  if (text.size() <= kMostBytes) return std::string(text);
  std::size_t end = kMostBytes;  // not within a character
  while ((static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80) --end;
  return fmt::format("{} ... ({} bytes in all)", text.substr(0, end), text.size());
}

std::string Quoted(std::string_view text) {
  const bool isItself = !text.empty() && text.front() != ' ' && text.back() != ' ' && text != kNotThere;
  return isItself ? Shortened(text) : fmt::format("\"{}\"", Shortened(text));
}

template <class Word>
std::string Listed(const simdjson::dom::array& entries, const Word& word) {
  std::string text;
  std::size_t count = 0;
  for (const element entry : entries) {
    if (count++ < kMostEntries) text += fmt::format("{}{}", text.empty() ? "" : ", ", word(entry));
  }
  if (count == 0) return "an empty list";
  if (count > kMostEntries) text += fmt::format(", ... ({} in all)", count);
  return text;
}

// A link of a sheet names its target.
std::string FactValue(element value, const FactStyle& style) {
  switch (value.type()) {
    case element_type::BOOL:
      return value.get_bool().value_unsafe() ? "yes" : "no";
    case element_type::DOUBLE: {
      const double number = value.get_double().value_unsafe();
      if (number == 0) return "0";
      return style.allDigits ? fmt::format("{}", number) : fmt::format("{:.7g}", number);
    }
    case element_type::NULL_VALUE:
      return "nothing";
    case element_type::OBJECT: {
      if (style.names != nullptr) {
        const auto found = style.names->find(IntegerIn(value, "ref"));
        if (found != style.names->end()) return found->second;
      }
      const std::string_view name = TextIn(value, "alias");
      return name.empty() ? fmt::format("#{}", IntegerIn(value, "ref")) : std::string(name);
    }
    case element_type::ARRAY:
      return fmt::format("({})", Listed(value.get_array().value_unsafe(),
                                        [&style](element entry) { return FactValue(entry, style); }));
    default:
      return TextOf(value, {});
  }
}

std::string FactText(element fact, const FactStyle& style) {
  const std::string_view standing = TextIn(fact, "standing");
  if (standing == "notSet") return "not set";
  element value;
  std::string text = fact["value"].get(value) == SUCCESS ? FactValue(value, style) : std::string();
  if (standing == "unreadable") return "cannot be read: " + text;
  if (const std::string_view unit = TextIn(fact, "unit"); !unit.empty()) text += fmt::format(" {}", unit);
  element context;
  if (fact["context"].get(context) == SUCCESS && LinkIn(fact, "context") != LinkIn(fact, "value"))
    text += fmt::format(" ({})", FactValue(context, style));
  return standing == "default" ? text + " (default)" : text;
}

}  // namespace

std::string TextOf(element value, const LabelOf& label) {
  switch (value.type()) {
    case element_type::STRING:
      return Quoted(value.get_string().value_unsafe());
    case element_type::DOUBLE:
      return fmt::format("{}", value.get_double().value_unsafe());
    case element_type::ARRAY:
      return Listed(value.get_array().value_unsafe(),
                    [&label](element entry) { return TextOf(entry, label); });
    case element_type::OBJECT:
      if (const std::int64_t id = IntegerIn(value, "ref"); label && value["ref"].error() == SUCCESS)
        return label(id);
      break;
    default:
      break;
  }
  return Shortened(simdjson::minify(value));
}

std::string TextOfFacts(const std::vector<element>& facts, const FactStyle& style) {
  std::vector<std::pair<std::size_t, element>> numbered;
  numbered.reserve(facts.size());
  for (const element fact : facts) numbered.emplace_back(CountIn(fact, "index"), fact);
  return TextOfFacts(numbered, style);
}

std::string TextOfFacts(const std::vector<std::pair<std::size_t, element>>& facts, const FactStyle& style) {
  if (facts.empty()) return {};
  if (facts.size() == 1 && facts.front().first <= 1) return FactText(facts.front().second, style);
  std::string text;
  for (std::size_t i = 0; i < facts.size();) {
    const std::string one = FactText(facts[i].second, style);
    std::size_t end = i + 1;
    while (end < facts.size() && facts[end].first == facts[end - 1].first + 1 &&
           FactText(facts[end].second, style) == one)
      ++end;
    if (text.size() > kMostBytes) return fmt::format("{}, ... ({} values in all)", text, facts.size());
    if (!text.empty()) text += ", ";
    text += std::to_string(facts[i].first);
    if (end > i + 1) text += fmt::format("{}{}", end > i + 2 ? " to " : " and ", facts[end - 1].first);
    text += fmt::format(": {}", one);
    i = end;
  }
  return text;
}

std::string_view TextIn(element object, const char* key) {
  std::string_view text;
  return object[key].get(text) == SUCCESS ? text : std::string_view();
}

std::int64_t IntegerIn(element object, const char* key) {
  std::int64_t number = 0;
  return object[key].get(number) == SUCCESS ? number : 0;
}

std::size_t CountIn(element object, const char* key) {
  return static_cast<std::size_t>(std::max<std::int64_t>(IntegerIn(object, key), 0));
}

std::vector<element> EntriesIn(element object, const char* key) {
  simdjson::dom::array list;
  if (object[key].get(list) != SUCCESS) return {};
  return {list.begin(), list.end()};
}

std::int64_t LinkIn(element object, const char* key) {
  element link;
  std::int64_t id = -1;
  return object[key].get(link) == SUCCESS && link["ref"].get(id) == SUCCESS ? id : -1;
}

}  // namespace tool::page
