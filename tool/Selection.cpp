#include "Selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "Terminal.h"
#include "UsageError.h"

namespace tool {
namespace {

using standalone::KnownUpgrade;
using standalone::VersionManager;

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

// The one that was probably meant: with few letters wrong, or the first that holds the text. Null for none.
const KnownUpgrade* Resembling(const VersionManager& manager, std::string_view identifier) {
  constexpr std::size_t kLettersPerFault = 3;
  constexpr std::size_t kLeastPart = 4;
  const std::vector<KnownUpgrade>& known = manager.Known();
  const auto distance = [identifier](const KnownUpgrade& each) {
    return EditDistance(identifier, each.identifier);
  };
  const auto nearest = std::ranges::min_element(known, {}, distance);
  if (nearest != known.end() && distance(*nearest) * kLettersPerFault <= identifier.size()) return &*nearest;
  const auto holding = std::ranges::find_if(known, [identifier](const KnownUpgrade& each) {
    return each.identifier.find(identifier) != std::string::npos;
  });
  return holding == known.end() || identifier.size() < kLeastPart ? nullptr : &*holding;
}

}  // namespace

const KnownUpgrade& KnownOrRefuse(const VersionManager& manager, std::string_view identifier) {
  if (const KnownUpgrade* const known = manager.Find(identifier); known != nullptr) return *known;
  const KnownUpgrade* const meant = Resembling(manager, identifier);
  throw UsageError(fmt::format("there is no upgrade {}; {}", Quoted(AsUtf8(identifier)),
                               meant == nullptr ? "'hvxupgrade identifiers' lists them"
                                                : fmt::format("did you mean \"{}\"?", meant->identifier)));
}

Selection::Selection(const VersionManager& manager, const std::vector<std::string>& only,
                     const std::string& until) {
  for (const std::string& identifier : only) wanted_.push_back(KnownOrRefuse(manager, identifier).identifier);
  if (!only.empty()) return;
  if (!until.empty()) static_cast<void>(KnownOrRefuse(manager, until));
  for (const KnownUpgrade& known : manager.Known()) {
    wanted_.push_back(known.identifier);
    if (known.identifier == until) break;
  }
}

std::vector<std::string> Selection::Of(const std::vector<std::string>& pending) const {
  std::vector<std::string> chosen;
  std::ranges::copy_if(pending, std::back_inserter(chosen), [this](const std::string& identifier) {
    return std::ranges::find(wanted_, identifier) != wanted_.end();
  });
  return chosen;
}

}  // namespace tool
