#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "file/DocumentWriter.h"

namespace standalone {

/// A file in the making, beside the place where it is to stand. It gets there whole, by `Commit`, or not at
/// all. Every operation throws `DocumentError` (`kUnwritable`) when it fails.
class AtomicFile {
 public:
  AtomicFile(const std::filesystem::path& target, const WriteOptions& options);
  ~AtomicFile();  // what was not committed leaves nothing behind
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void Write(std::string_view bytes);

  /// What the names of the temporary files begin with by which a process brings a file to `target`; six more
  /// characters follow.
  [[nodiscard]] static std::string TemporaryPrefix(const std::filesystem::path& target, pid_t process);

  /// Brings the bytes to disk and the file to its name.
  void Commit();

 private:
  [[noreturn]] void Fail(std::string_view doing) const;
  [[noreturn]] void FailTaken() const;
  /// Gives the backup's name; empty when none is wanted, or nothing is there to keep.
  [[nodiscard]] std::string KeepBackup() const;
  void LeaveNothing() const;

  std::filesystem::path given_;   // as the user knows it
  std::filesystem::path target_;  // where links lead
  bool overwrite_;
  std::string backupSuffix_;
  std::string temporary_;
  int descriptor_ = -1;
};

}  // namespace standalone
