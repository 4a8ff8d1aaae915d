#pragma once

#include <string>
#include <vector>

#include "settings/Arguments.h"
#include "settings/Installation.h"

namespace tool {

/// When, where, by whom and with what a run was started, for its report.
struct RunOrigin {
  std::string time;  ///< UTC, such as "2026-11-23T04:15:53Z".
  std::string host;
  std::string user;                      ///< The name, or the number where there is none.
  std::vector<std::string> commandLine;  ///< All of it, as given.
  std::vector<LibraryFile> libraries;
  std::string language;  ///< Of names that upgrades make.
  /// The arguments that can make another result, though they do not tell which run it is: the data folder and
  /// what ends a document's upgrade. In one spelling.
  std::vector<std::string> otherArguments;

  /// Whether both are of the same upgrade libraries, byte for byte, wherever these stand.
  [[nodiscard]] bool HasLibrariesOf(const RunOrigin& other) const;
};

/// Of this process, now.
[[nodiscard]] RunOrigin OriginOf(const Arguments& arguments, const UpgradeArguments& upgrade,
                                 const Installation& installation);
/// Of a command that uses no upgrade library.
[[nodiscard]] RunOrigin OriginOf(const std::vector<std::string>& commandLine);

/// The time in the form of `RunOrigin::time`.
[[nodiscard]] std::string TimeNow();

}  // namespace tool
