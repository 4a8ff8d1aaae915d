#include "upgrade/UnknownUpgrades.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

#include "upgrade/BuiltInLibrary.h"

namespace standalone {
namespace {

constexpr std::size_t kMost = 3;  // libraries that a message names

}  // namespace

// Documents name every library but the built-in one, and those of older programs none.
bool MissingLibrary::IsNamed() const {
  return !IsBuiltIn(name);
}

std::string MissingLibrary::Words() const {
  if (!IsNamed())
    return isLoaded ? "a newer release of this program or a library that is not loaded"
                    : fmt::format("{} or another library, which is not loaded", name);
  const std::string what = version.empty() ? name : fmt::format("{} {}", name, version);
  if (!isLoaded) return what + ", which is not loaded";
  if (version == loaded || (version.empty() && loaded.empty()))
    return fmt::format("another {} than the one that is loaded", what);
  if (version.empty())
    return fmt::format("another version of {} than the one that is loaded ({})", name, loaded);
  return fmt::format("{}, of which another version is loaded{}", what,
                     loaded.empty() ? "" : fmt::format(" ({})", loaded));
}

std::vector<std::string> UnknownUpgrades::Newer() const {
  std::vector<std::string> all;
  for (const MissingLibrary& each : libraries_) {
    if (each.isLoaded) all.insert(all.end(), each.upgrades.begin(), each.upgrades.end());
  }
  return all;
}

bool UnknownUpgrades::AreOnlyNotLoaded() const {
  return !IsEmpty() && std::ranges::none_of(libraries_, &MissingLibrary::isLoaded);
}

std::string UnknownUpgrades::Words() const {
  std::vector<std::string> words;
  for (const MissingLibrary& each : libraries_) {
    if (words.size() == kMost) {
      words.push_back(fmt::format("{} more", libraries_.size() - kMost));
      break;
    }
    words.push_back(each.Words());
  }
  return fmt::format("{}", fmt::join(words, ", by "));
}

std::string UnknownUpgrades::Problem() const {
  if (libraries_.size() != 1 || libraries_.front().IsNamed() || !libraries_.front().isLoaded)
    return fmt::format("it was upgraded by {}", Words());
  const std::vector<std::string>& upgrades = libraries_.front().upgrades;
  return fmt::format(
      "it has been through {} upgrade{} that nothing here knows, such as \"{}\": of a newer release of this "
      "program, or of a library that is not loaded",
      upgrades.size(), upgrades.size() == 1 ? "" : "s", upgrades.front());
}

// What nothing that is loaded knows stands in the way whatever else is loaded.
std::string UnknownUpgrades::NextStep(std::string_view howToLoad) const {
  const auto other = std::ranges::find_if(libraries_, &MissingLibrary::isLoaded);
  if (other != libraries_.end() && !other->IsNamed())
    return fmt::format("Use a newer release of this program, or load the library that has {} {}",
                       other->upgrades.front(), howToLoad);
  if (other != libraries_.end())
    return fmt::format("Use the version of {} that has {}", other->name, other->upgrades.front());
  std::set<std::string_view> names;
  for (const MissingLibrary& each : libraries_) {
    if (!each.IsNamed())
      return fmt::format("Leave out --no-default-library, or load the library that has {} {}",
                         each.upgrades.front(), howToLoad);
    names.insert(each.name);
  }
  const std::string_view more = names.size() > kMost ? " and the others" : "";
  while (names.size() > kMost) names.erase(std::prev(names.end()));
  return fmt::format("Load {}{} {}", fmt::join(names, more.empty() ? " and " : ", "), more, howToLoad);
}

void UnknownUpgrades::Add(const MissingLibrary& library, const std::string& upgrade) {
  const auto [place, isNew] = places_.try_emplace({library.name, library.version}, libraries_.size());
  if (isNew) libraries_.push_back(library);
  libraries_[place->second].upgrades.push_back(upgrade);
}

}  // namespace standalone
