#include "settings/DecidingArguments.h"

#include <fmt/format.h>

#include <algorithm>

namespace tool {

std::vector<std::string> DecidingArguments(const UpgradeArguments& arguments) {
  std::vector<std::string> texts{"upgrade"};
  const auto value = [&texts](const char* name, const std::string& text) {
    if (!text.empty()) texts.insert(texts.end(), {name, text});
  };
  const auto flag = [&texts](const char* name, bool isSet) {
    if (isSet) texts.emplace_back(name);
  };
  const Sources& sources = arguments.sources;
  value("--files-from", sources.list);
  flag("--null", sources.listHasNul);
  for (const std::string& pattern : sources.include) value("--include", pattern);
  for (const std::string& pattern : sources.exclude) value("--exclude", pattern);
  value("--output", arguments.output);
  value("--output-dir", arguments.outputDirectory);
  flag("--in-place", arguments.inPlace);
  value("--backup", arguments.backupSuffix);
  flag("--dry-run", arguments.dryRun);
  flag("--strict", arguments.strict);
  flag("--accept-failures", arguments.acceptFailures);
  flag("--fail-on-drop", arguments.failOnDrop);
  flag("--no-sheet", !arguments.sheet);
  flag("--retry", arguments.retry);
  std::vector<std::string> only = arguments.only;
  std::ranges::sort(only);
  for (const std::string& identifier : only) value("--only", identifier);
  value("--until", arguments.until);
  if (arguments.language != "en") value("--language", arguments.language);
  if (arguments.shard) value("--shard", fmt::format("{}/{}", arguments.shard->number, arguments.shard->of));
  texts.emplace_back("--");  // names may begin with a dash
  texts.insert(texts.end(), sources.given.begin(), sources.given.end());
  return texts;
}

}  // namespace tool
