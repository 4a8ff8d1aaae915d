#include "page/MissingNote.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "page/ValueText.h"
#include "upgrade/UnknownUpgrades.h"

namespace tool::page {

std::string NoteOnMissing(simdjson::dom::element library) {
  standalone::MissingLibrary missing;
  missing.name = TextIn(library, "name");
  missing.version = TextIn(library, "version");
  missing.loaded = TextIn(library, "loadedVersion");
  missing.isLoaded = library["loaded"].get_bool().value();
  for (const simdjson::dom::element upgrade : EntriesIn(library, "upgrades")) {
    std::string_view name;
    if (upgrade.get(name) == simdjson::SUCCESS) missing.upgrades.emplace_back(name);
  }
  constexpr std::size_t kMost = 10;
  std::string others;
  if (missing.upgrades.size() > kMost) {
    others = fmt::format(" and {} more", missing.upgrades.size() - kMost);
    missing.upgrades.resize(kMost);
  }
  return fmt::format("It was upgraded by {}: {}{}", missing.Words(), fmt::join(missing.upgrades, ", "),
                     others);
}

}  // namespace tool::page
