#include "sheet/Explaining.h"

#include <algorithm>

namespace standalone::sheet {

std::vector<Fact> AllOf(const Sheet& sheet, const Subject& subject, std::string_view quantity) {
  std::vector<Fact> all;
  std::ranges::copy_if(sheet.FactsOf(subject), std::back_inserter(all),
                       [&](const Fact& fact) { return fact.quantity->name == quantity; });
  return all;
}

const Value* Held(const Feature& feature, std::string_view key) {
  const NameId name = NameTable::Intern(key);
  const auto attributes = feature.Attributes();
  const auto found = std::ranges::find(attributes, name, &Attribute::key);
  return found == attributes.end() ? nullptr : &found->value;
}

const Feature* HeldFeature(const Feature& feature, std::string_view key) {
  const Value* const value = Held(feature, key);
  return value != nullptr && value->Kind() == ValueKind::kLink ? value->Target() : nullptr;
}

void ReplaceAll(std::string& text, std::string_view old, std::string_view current) {
  if (old.empty()) return;
  for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + current.size()))
    text.replace(at, old.size(), current);
}

}  // namespace standalone::sheet
