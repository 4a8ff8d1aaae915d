#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "file/DocumentWriter.h"
#include "file/FileDigest.h"
#include "file/FileIdentity.h"

namespace standalone {

/// A file in the making, beside the place where it is to stand, under a name that tells whose it is
/// (`TemporaryName`). It gets there whole, by `Commit`, or not at all. Every operation throws `DocumentError`
/// (`kUnwritable`) when it fails.
class AtomicFile {
 public:
  AtomicFile(const std::filesystem::path& target, const WriteOptions& options);
  ~AtomicFile();  // what was not committed leaves nothing behind
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void Write(std::string_view bytes);

  /// Of all that was written, with the time that it will bear in place; with `WriteOptions::digest` only.
  [[nodiscard]] FileDigest Digest();

  /// Brings the bytes to disk and the file to its name. Throws `ChangedMeanwhile` when it is to replace a
  /// file that is no longer what the options say.
  void Commit();

 private:
  void BeginWriteBack();
  void Replace();
  /// `afterLink`: a backup was made, or tried, by giving the file another name.
  void RefuseChanged(bool afterLink);
  /// Gives the name that the result got; empty when it got none.
  [[nodiscard]] std::string KeepBeside();
  [[noreturn]] void Fail(std::string_view doing) const;
  [[noreturn]] void FailTaken() const;
  void LeaveNothing() const;

  std::filesystem::path given_;   // as the user knows it
  std::filesystem::path target_;  // where links lead
  bool overwrite_;
  std::string backupSuffix_;
  std::optional<FileIdentity> replaces_;
  bool keepResult_;
  std::string changedAdvice_;
  std::filesystem::path folder_;  // of the target; made beforehand, for once it is in place nothing may fail
  std::string temporary_;
  int descriptor_ = -1;
  std::uint64_t written_ = 0;     // bytes
  std::uint64_t handedOver_ = 0;  // of these, what the system was asked to bring to disk
  std::optional<Sha256> sum_;
};

}  // namespace standalone
