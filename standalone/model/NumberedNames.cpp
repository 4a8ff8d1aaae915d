#include "model/NumberedNames.h"

#include <charconv>
#include <limits>

namespace standalone {

void NumberedNames::Add(std::string_view name) {
  if (const std::int64_t number = NumberIn(name); number >= 0) ++counts_[number];
}

void NumberedNames::Remove(std::string_view name) {
  const auto counted = counts_.find(NumberIn(name));
  if (counted != counts_.end() && --counted->second == 0) counts_.erase(counted);
}

std::int64_t NumberedNames::NumberIn(std::string_view name) const {
  if (!name.starts_with(prefix_)) return -1;
  name.remove_prefix(prefix_.size());
  if (name.empty() || name.front() < '0' || name.front() > '9') return -1;
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  const bool whole = error == std::errc() && end == name.data() + name.size();
  return whole && number < std::numeric_limits<std::int64_t>::max() ? number : -1;
}

}  // namespace standalone
