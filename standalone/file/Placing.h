#pragma once

#include <filesystem>

/// \file
/// How a file that is ready gets to its name.

namespace standalone {

/// Gives the file `from` the name `to`, in the same folder, if nothing bears that; false, with errno set
/// (EEXIST when something does), when it cannot be done. Works on every file system: where neither a rename
/// nor a link refuses to replace, the name is taken by an empty file first, which only a kill at that moment
/// leaves behind.
[[nodiscard]] bool MoveWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

/// Whether errno says that the file system, or a rule for this user, does not allow a second name for a file.
[[nodiscard]] bool LacksLinks(int error);

/// Brings names that came or went in the folder to disk, as far as the file system offers it, and this user
/// may read the folder. False, with errno set, when it fails.
[[nodiscard]] bool SyncFolder(const std::filesystem::path& folder);

[[nodiscard]] std::filesystem::path FolderOf(const std::filesystem::path& file);

}  // namespace standalone
