#include "session/Messages.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <simdjson.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <stdexcept>

#include "base/VLMMsgCatalog.h"
#include "checkpoint/Checkpoint.h"
#include "session/CatalogFile.h"

namespace standalone {
namespace {

using Catalog = std::map<std::string, std::string, std::less<>>;

using CatalogsOfLanguage = std::map<std::string, Catalog, std::less<>>;

struct InUse {
  std::shared_mutex mutex;
  CatalogsOfLanguage catalogs;
};
InUse& Current() {
  static InUse current;
  return current;
}

constexpr std::string_view kRemedy = "Reinstall the program, or name the right data folder (--data)";
// What upgrades and the host take.
struct NeededText {
  const char* catalog;
  const char* key;
};
constexpr NeededText kNeeded[] = {
    {"HVXAnalysisStep", "PreSelDefault.Title"},
    {"HVXHacCatalogNLS", "HVXInteractionContainerLT"},
    {"HVXHacCatalogNLS", "HVXSectionControls"},
    {"HVXVersionManager", "Halvex.Structural.Case"},
    {"HVXVersionManager", "Nonlinear.Structural.Case"},
    {"HVXVersionManager", "Halvex.Explicit.Dynamics.Case"},
    {"HVXVersionManager", "Explicit.Dynamics.Case"},
    {"HVXVersionManager", "Halvex.Thermal.Case"},
    {"HVXVersionManager", "Thermal.Case"},
    {"HVXVersionManager", "Halvex.Simulation.History"},
    {"HVXVersionManager", "Simulation.History"},
    {"HVXVersionManager", "Halvex.Jobs"},
    {"HVXVersionManager", "Jobs"},
    {"HVXVersionManager", "Halvex.Display.Groups"},
    {"HVXVersionManager", "Display.Groups"},
    {"HVXVersionManager", "Halvex.Analysis.Case.Solution"},
    {"HVXVersionManager", "Analysis.Case.Solution"},
    {"HVXVersionManager", "Halvex.Solution.Sensors"},
    {"HVXVersionManager", "Solution.Sensors"},
    {"HVXVersionManager", "Halvex.Properties"},
    {"HVXVersionManager", "Nonlinear.Thermal.Properties"},
};

Catalog Load(const std::filesystem::path& file) {
  Catalog catalog;
  simdjson::dom::parser parser;
  simdjson::dom::object keys;
  const auto error = parser.parse(ReadCatalog(file)).get_object().get(keys);
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  if (error != simdjson::SUCCESS) {
    throw std::runtime_error(fmt::format("{}: the message catalog cannot be read ({}). {}", file.string(),
                                         simdjson::error_message(error), kRemedy));
  }
  for (const auto& [key, value] : keys) {
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS) {
      throw std::runtime_error(
          fmt::format("{}: \"{}\" must be a text. Correct the catalog", file.string(), key));
    }
    catalog.emplace(key, text);
  }
  return catalog;
}

CatalogsOfLanguage LoadAll(const std::filesystem::path& folder) {
  CatalogsOfLanguage catalogs;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".json")
      catalogs.emplace(entry.path().stem().string(), Load(entry.path()));
  }
  return catalogs;
}

void RefuseIncomplete(const CatalogsOfLanguage& catalogs, const std::filesystem::path& folder) {
  const auto refuse = [&folder](const std::string& name, const std::string& why) {
    throw std::runtime_error(fmt::format("{}: {}. {}", (folder / (name + ".json")).string(), why, kRemedy));
  };
  for (const auto& [name, key] : kNeeded) {
    const auto found = catalogs.find(name);
    if (found == catalogs.end()) refuse(name, "the message catalog is missing");
    const auto text = found->second.find(key);
    if (text == found->second.end() || text->second.empty())
      refuse(name, fmt::format("\"{}\" is missing in the message catalog", key));
  }
}

}  // namespace

std::vector<std::string> Messages::LanguagesOf(const std::filesystem::path& folder) {
  std::vector<std::string> languages;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.is_directory()) languages.push_back(entry.path().filename().string());
  }
  if (error && error != std::errc::no_such_file_or_directory) {
    throw std::runtime_error(
        fmt::format("{}: the folder of the messages cannot be read ({})", folder.string(), error.message()));
  }
  std::ranges::sort(languages);
  return languages;
}

void Messages::Use(const std::filesystem::path& folder, std::string_view language) {
  const std::vector<std::string> languages = LanguagesOf(folder);
  if (std::ranges::find(languages, language) == languages.end()) {
    throw std::runtime_error(fmt::format("{}: there are no messages in language \"{}\". Choose one of: {}",
                                         folder.string(), language, fmt::join(languages, ", ")));
  }
  CatalogsOfLanguage catalogs = LoadAll(folder / language);
  InUse& current = Current();
  const std::unique_lock lock(current.mutex);
  current.catalogs.swap(catalogs);
}

void Messages::RequireComplete(const std::filesystem::path& folder, std::string_view language) {
  const std::filesystem::path own = folder / language;
  if (!std::filesystem::is_directory(own))
    throw std::runtime_error(
        fmt::format("{}: the folder of the messages is missing. {}", own.string(), kRemedy));
  RefuseIncomplete(LoadAll(own), own);
}

std::optional<std::string> Messages::Find(std::string_view catalog, std::string_view key) {
  InUse& current = Current();
  const std::shared_lock lock(current.mutex);
  const auto found = current.catalogs.find(catalog);
  if (found == current.catalogs.end()) return std::nullopt;
  const auto text = found->second.find(key);
  if (text == found->second.end()) return std::nullopt;
  return text->second;
}

}  // namespace standalone

VLMUnicodeString VLMMsgCatalog::BuildMessage(const VLMString& catalog, const VLMString& key,
                                             const VLMUnicodeString* parameters, int parameterCount,
                                             const VLMUnicodeString& defaultText) {
  if (Failed(
          standalone::Checkpoint::Pass("VLMMsgCatalog::BuildMessage", nullptr, key.View(), parameterCount)))
    return defaultText;
  const std::optional<std::string> text = standalone::Messages::Find(catalog.View(), key.View());
  if (!text) return defaultText;
  VLMUnicodeString message(text->c_str());
  for (int i = 0; i < std::min(parameterCount, 9); ++i) {
    message.ReplaceAll(fmt::format("/P{}", i + 1).c_str(), parameters[i]);
  }
  return message;
}
