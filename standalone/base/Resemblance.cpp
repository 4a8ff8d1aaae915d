#include "base/Resemblance.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace standalone {
namespace {

// How many letters must be changed, added or taken away to make one of the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view Resembling(std::string_view text, std::span<const std::string_view> known,
                            std::size_t lettersPerFault) {
  const std::size_t mostFaults = text.size() / lettersPerFault;
  std::string_view nearest;
  std::size_t least = mostFaults + 1;
  for (const std::string_view each : known) {
    // The sizes alone tell that most are too far away.
    const std::size_t between =
        each.size() > text.size() ? each.size() - text.size() : text.size() - each.size();
    if (between >= least) continue;
    const std::size_t distance = EditDistance(text, each);
    if (distance >= least) continue;
    least = distance;
    nearest = each;
  }
  return nearest;
}

}  // namespace standalone
