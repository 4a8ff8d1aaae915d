#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>

namespace standalone {

/// A regular file in one state: which file it is, and all that a write to it changes without fail.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  std::int64_t modified = 0;  ///< When its content was written last, in nanoseconds.
  std::int64_t changed = 0;   ///< When anything of it was: its content, rights, owner, number of names.

  /// None where there is nothing, or what is there is no regular file. Links are followed.
  [[nodiscard]] static std::optional<FileIdentity> Of(int descriptor);
  [[nodiscard]] static std::optional<FileIdentity> Of(const std::filesystem::path& file);

  [[nodiscard]] bool IsSameFile(const FileIdentity& other) const {
    return device == other.device && inode == other.inode;
  }
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// Whether two regular files hold the same bytes; false also when one of them cannot be read.
[[nodiscard]] bool HaveSameBytes(const std::filesystem::path& left, const std::filesystem::path& right);

}  // namespace standalone
