#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

#include "file/TemporaryName.h"

/// \file
/// Temporary files whose process was killed before it could remove them.

namespace tool {

/// A temporary file of some run, which may still need it.
struct Leftover {
  std::filesystem::path file;
  std::uintmax_t bytes = 0;
  standalone::TemporaryName name;
  standalone::Maker maker = standalone::Maker::kRuns;
};

/// What a search for leftovers meets in one folder.
struct FolderContent {
  std::vector<Leftover> leftovers;                ///< By name.
  std::vector<std::filesystem::path> subfolders;  ///< By name, without links to folders.
};

/// `error` is set when the folder cannot be read to its end.
[[nodiscard]] FolderContent ContentOf(const std::filesystem::path& folder, std::error_code& error);

/// Removes the temporary files that the process, a worker that was killed while it wrote `target`, left.
void RemoveLeftovers(const std::filesystem::path& target, pid_t process);

/// Removes, in `folders`, the temporary files of processes that are gone, and says so on standard error, once
/// for all of them, unless `quiet`.
void RemoveOldLeftovers(const std::set<std::filesystem::path>& folders, bool quiet);

}  // namespace tool
