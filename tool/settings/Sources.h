#pragma once

#include <string>
#include <vector>

namespace tool {

/// Stands for standard input among documents and lists, for standard output as the place of a result.
inline constexpr const char* kStandardStream = "-";

/// What a command is to look at.
struct Sources {
  std::vector<std::string> given;  ///< Files, and folders with all documents beneath them.
  std::string list;                ///< A file with more of them, one a line; "-" for standard input.
  bool listHasNul = false;         ///< They end with NUL there, not with the line.
  /// Which files of a folder are documents: shell patterns, of the name, or of the place beneath the folder
  /// when they hold a "/". Hidden files are none, whatever the patterns say.
  std::vector<std::string> include;
  std::vector<std::string> exclude;  ///< The same for files and folders to leave out.

  [[nodiscard]] bool IsEmpty() const { return given.empty() && list.empty(); }
};

}  // namespace tool
