#pragma once

#include <algorithm>
#include <string_view>

namespace standalone::sheet {

/// Whether `entry` is one of the texts that `list` holds, separated by `separator`.
[[nodiscard]] constexpr bool Lists(std::string_view list, std::string_view separator,
                                   std::string_view entry) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(separator), list.size());
    if (list.substr(0, end) == entry) return true;
    list.remove_prefix(std::min(end + separator.size(), list.size()));
  }
  return false;
}

}  // namespace standalone::sheet
