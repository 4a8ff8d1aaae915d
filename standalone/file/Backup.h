#pragma once

#include <filesystem>
#include <string_view>

namespace standalone {

/// Another name, or a copy, under which a file is kept that is about to be replaced. It is whole, and on
/// disk, before it bears its name. Goes again with this object unless `Keep` is called.
class Backup {
 public:
  /// Makes the backup of `file` (no link) as `name`, in the same folder. A run that was killed may have made
  /// it already: where `name` is the very same file, or one with the same bytes, that is the backup. Throws
  /// `DocumentError` (`kUnwritable`) when anything else stands there, or it cannot be made.
  Backup(const std::filesystem::path& file, std::filesystem::path name);
  ~Backup();
  Backup(const Backup&) = delete;
  Backup& operator=(const Backup&) = delete;

  /// Whether the file got another name, by which its system notes it as changed.
  [[nodiscard]] bool IsNewLink() const { return isNewLink_; }
  void Keep() { mayGo_ = false; }

 private:
  void MakeCopy(const std::filesystem::path& file);
  [[noreturn]] void Fail(int cause) const;

  std::filesystem::path name_;
  bool isNewLink_ = false;
  bool mayGo_ = false;
};

/// Whether `name` holds what a backup of `file` would hold.
[[nodiscard]] bool IsBackupOf(const std::filesystem::path& name, const std::filesystem::path& file);

}  // namespace standalone
