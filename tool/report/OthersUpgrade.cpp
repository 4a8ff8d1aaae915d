#include "report/OthersUpgrade.h"

#include <fmt/format.h>

#include "upgrade/BuiltInLibrary.h"

namespace tool {

std::string OthersIn(simdjson::dom::element item) {
  const auto text = [&item](const char* key) {
    std::string_view value;
    return item[key].get(value) == simdjson::SUCCESS ? value : std::string_view();
  };
  const std::string_view library = text("library");
  if (library.empty() || standalone::IsBuiltIn(library)) return {};
  const std::string_view upgradeClass = text("class");
  const std::string_view version = text("libraryVersion");
  return fmt::format("{}{}{}{}{}", upgradeClass, upgradeClass.empty() ? "" : " of ", library,
                     version.empty() ? "" : " ", version);
}

}  // namespace tool
