#include "model/NumberedNames.h"

#include <charconv>

namespace standalone {
namespace {

// The number of a name "<prefix>N"; -1 for any other name. N is nothing but digits.
std::int64_t NumberAfter(std::string_view prefix, std::string_view name) {
  if (!name.starts_with(prefix) || name.size() == prefix.size()) return -1;
  const std::string_view digits = name.substr(prefix.size());
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return -1;
  std::int64_t number = -1;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  // One that leaves no room for a next number is none that a name was ever given.
  return error == std::errc() && number < INT64_MAX ? number : -1;
}

void Change(std::map<std::int64_t, std::int64_t>& numbers, std::int64_t number, int change) {
  if (number < 0) return;
  const auto entry = numbers.try_emplace(number, 0).first;
  entry->second += change;
  if (entry->second <= 0) numbers.erase(entry);
}

}  // namespace

bool NumberedNames::Watch(std::string_view prefix) {
  return byPrefix_.try_emplace(std::string(prefix)).second;
}

void NumberedNames::NoteAfter(std::string_view prefix, std::string_view name) {
  Change(byPrefix_.find(prefix)->second, NumberAfter(prefix, name), 1);
}

std::int64_t NumberedNames::HighestAfter(std::string_view prefix) const {
  const Numbers& numbers = byPrefix_.find(prefix)->second;
  return numbers.empty() ? 0 : numbers.rbegin()->first;
}

void NumberedNames::Count(std::string_view name, int change) {
  for (auto& [prefix, numbers] : byPrefix_) Change(numbers, NumberAfter(prefix, name), change);
}

}  // namespace standalone
