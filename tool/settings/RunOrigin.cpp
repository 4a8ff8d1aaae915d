#include "settings/RunOrigin.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <limits.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>

namespace tool {
namespace {

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> buffer{};
  return gethostname(buffer.data(), buffer.size() - 1) == 0 ? buffer.data() : "";
}

std::string UserName() {
  const passwd* const entry = getpwuid(geteuid());
  return entry == nullptr ? std::to_string(geteuid()) : entry->pw_name;
}

std::vector<std::string> OtherArguments(const UpgradeArguments& upgrade, const Places& places) {
  std::vector<std::string> texts;
  const auto number = [&texts](const char* name, const auto& limit) {
    if (limit) texts.insert(texts.end(), {name, fmt::format("{}", *limit)});
  };
  if (!places.data.empty()) texts.insert(texts.end(), {"--data", places.data.string()});
  if (upgrade.keepResult) texts.emplace_back("--keep-result");
  number("--timeout", upgrade.limits.seconds);
  number("--limit-features", upgrade.limits.features);
  number("--limit-memory", upgrade.limits.megabytes);
  number("--limit-unpacked", upgrade.limits.unpacked);
  return texts;
}

}  // namespace

bool RunOrigin::HasLibrariesOf(const RunOrigin& other) const {
  const auto sums = [](const RunOrigin& origin) {
    std::vector<std::string> all;
    for (const LibraryFile& each : origin.libraries) all.push_back(each.sha256);
    std::ranges::sort(all);
    return all;
  };
  return sums(*this) == sums(other);
}

RunOrigin OriginOf(const std::vector<std::string>& commandLine) {
  RunOrigin origin;
  origin.time = TimeNow();
  origin.host = HostName();
  origin.user = UserName();
  origin.commandLine = commandLine;
  return origin;
}

RunOrigin OriginOf(const Arguments& arguments, const UpgradeArguments& upgrade,
                   const Installation& installation) {
  RunOrigin origin = OriginOf(arguments.commandLine);
  origin.libraries = installation.LibraryFiles();
  origin.language = upgrade.language;
  origin.otherArguments = OtherArguments(upgrade, arguments.places);
  return origin;
}

std::string TimeNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", parts);
}

}  // namespace tool
