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

bool MissingLibrary::IsNewerProgram() const {
  return isLoaded && IsBuiltIn(name);
}

std::string MissingLibrary::Words() const {
  if (IsNewerProgram()) return "a newer release of this program";
  const std::string what = version.empty() ? name : fmt::format("{} {}", name, version);
  if (!isLoaded) return what + ", which is not loaded";
  if (version.empty() || version == loaded)
    return fmt::format("another {} than the one that is loaded{}", what,
                       loaded.empty() || version == loaded ? "" : fmt::format(" ({})", loaded));
  return fmt::format("a newer {} ({}; {} is loaded)", name, version, loaded);
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
  if (libraries_.size() != 1 || !libraries_.front().IsNewerProgram())
    return fmt::format("it was upgraded by {}", Words());
  const std::vector<std::string>& newer = libraries_.front().upgrades;
  return fmt::format("it has been through {} upgrade{} that this program does not know, such as \"{}\"",
                     newer.size(), newer.size() == 1 ? "" : "s", newer.front());
}

// What is newer stands in the way whatever else is loaded.
std::string UnknownUpgrades::NextStep() const {
  const auto newer = std::ranges::find_if(libraries_, &MissingLibrary::isLoaded);
  if (newer != libraries_.end() && newer->IsNewerProgram()) return "Use a newer release of this program";
  if (newer != libraries_.end())
    return fmt::format("Use the {} that has {}", newer->name, newer->upgrades.front());
  std::set<std::string_view> names;
  for (const MissingLibrary& each : libraries_) {
    if (IsBuiltIn(each.name)) return "Leave out --no-default-library";
    names.insert(each.name);
  }
  const std::string_view more = names.size() > kMost ? " and the others" : "";
  while (names.size() > kMost) names.erase(std::prev(names.end()));
  return fmt::format("Load {}{} with --library FILE or --plugins FOLDER",
                     fmt::join(names, more.empty() ? " and " : ", "), more);
}

void UnknownUpgrades::Add(const MissingLibrary& library, const std::string& upgrade) {
  const auto [place, isNew] = places_.try_emplace({library.name, library.version}, libraries_.size());
  if (isNew) libraries_.push_back(library);
  libraries_[place->second].upgrades.push_back(upgrade);
}

}  // namespace standalone
