#include "file/AtomicFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "file/Backup.h"
#include "file/DocumentError.h"
#include "file/FileAttributes.h"
#include "file/Placing.h"
#include "file/TemporaryName.h"

namespace standalone {
namespace {

constexpr auto kUnwritable = DocumentError::Kind::kUnwritable;

[[noreturn]] void FailOn(const std::filesystem::path& file, std::string_view doing,
                         const std::string& cause) {
  throw DocumentError(kUnwritable, file.string(), 0, fmt::format("cannot be {} ({})", doing, cause),
                      "Check the folder, its permissions and the room on its disk; nothing was changed");
}

// A link stays a link: what it leads to is replaced.
std::filesystem::path Followed(const std::filesystem::path& file) {
  std::error_code error;
  const auto type = std::filesystem::symlink_status(file, error).type();
  if (type == std::filesystem::file_type::none) FailOn(file, "created", error.message());
  if (type != std::filesystem::file_type::symlink) return file;
  std::filesystem::path real = std::filesystem::canonical(file, error);
  if (error && error != std::errc::no_such_file_or_directory) FailOn(file, "followed", error.message());
  return error ? file : real;
}

mode_t RightsOfNewFiles() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

}  // namespace

AtomicFile::AtomicFile(const std::filesystem::path& target, const WriteOptions& options)
    : given_(target),
      target_(Followed(target)),
      overwrite_(options.overwrite),
      backupSuffix_(options.backupSuffix),
      replaces_(options.replaces),
      keepResult_(options.keepResult),
      changedAdvice_(options.changedAdvice),
      folder_(FolderOf(target_)) {
  if (options.digest != nullptr) sum_.emplace();
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(target_, error);
  if (status.type() == std::filesystem::file_type::none) FailOn(given_, "created", error.message());
  const bool isTaken = std::filesystem::exists(status);
  if (isTaken && !std::filesystem::is_regular_file(status)) {
    // A folder, or a device, which a file of its name would do away with.
    throw DocumentError(kUnwritable, given_.string(), 0, "it is not a regular file",
                        "Give the name of a file");
  }
  if (!overwrite_ && isTaken) FailTaken();
  descriptor_ = MakeTemporary(target_, temporary_);
  if (descriptor_ < 0) Fail("created");
  try {
    if (isTaken) {
      TakeOverAttributes(descriptor_, target_, given_);
    } else if (fchmod(descriptor_, RightsOfNewFiles()) != 0) {
      Fail("given its access rights");
    }
  } catch (...) {
    LeaveNothing();
    throw;
  }
}

AtomicFile::~AtomicFile() {
  LeaveNothing();
}

void AtomicFile::LeaveNothing() const {
  if (descriptor_ >= 0) close(descriptor_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void AtomicFile::Write(std::string_view bytes) {
  if (sum_) sum_->Add(bytes);
  written_ += bytes.size();
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail("written");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  BeginWriteBack();
}

// The disk works while the rest is made, so that bringing the file there in the end does not wait for all of
// it. Where that is not possible nothing is lost but time.
void AtomicFile::BeginWriteBack() {
  constexpr std::uint64_t kBytes = std::uint64_t{8} << 20U;
  const std::uint64_t whole = written_ / kBytes * kBytes;  // the page that is still filled stays out of it
  if (whole == handedOver_) return;
  static_cast<void>(sync_file_range(descriptor_, static_cast<off_t>(handedOver_),
                                    static_cast<off_t>(whole - handedOver_), SYNC_FILE_RANGE_WRITE));
  handedOver_ = whole;
}

FileDigest AtomicFile::Digest() {
  const auto identity = FileIdentity::Of(descriptor_);
  if (!identity) Fail("checked");
  return {.bytes = written_, .modified = identity->modified, .sha256 = sum_->Take()};
}

void AtomicFile::Commit() {
  if (fsync(descriptor_) != 0) Fail("synced to disk");
  const int closed = close(descriptor_);
  descriptor_ = -1;
  if (closed != 0) Fail("synced to disk");
  if (overwrite_) {
    Replace();
  } else if (!MoveWithoutReplacing(temporary_, target_)) {
    if (errno == EEXIST) FailTaken();
    Fail("put in place");
  }
  temporary_.clear();
  static_cast<void>(SyncFolder(folder_));  // without it either document may be there after a loss of power
}

void AtomicFile::Replace() {
  RefuseChanged(false);
  std::optional<Backup> backup;
  if (!backupSuffix_.empty() && std::filesystem::exists(target_)) {
    try {
      backup.emplace(target_, target_.string() + backupSuffix_);
    } catch (const DocumentError&) {
      // Another run that has replaced the document meanwhile left the only old one there.
      RefuseChanged(true);
      throw;
    }
    RefuseChanged(backup->IsNewLink());
  }
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) Fail("put in place");
  if (backup) backup->Keep();
}

void AtomicFile::RefuseChanged(bool afterLink) {
  if (!replaces_) return;
  errno = 0;
  std::optional<FileIdentity> now = FileIdentity::Of(target_);
  if (!now && errno != 0 && errno != ENOENT && errno != ENOTDIR) Fail("compared with what was read");
  if (now && afterLink) now->changed = replaces_->changed;
  if (now == replaces_) return;
  const std::string_view how = !now                          ? "it was removed or renamed"
                               : now->IsSameFile(*replaces_) ? "another program wrote to it"
                                                             : "another file was put in its place";
  const std::string kept = keepResult_ ? KeepBeside() : "";
  std::string advice = fmt::format("Nothing was written; {}", changedAdvice_);
  if (!kept.empty()) {
    advice = fmt::format("The result for what was read is kept as {}; run the upgrade again on the document",
                         kept);
  } else if (keepResult_) {
    advice = fmt::format("The result could not be kept beside it ({}); run the upgrade again",
                         std::strerror(errno));
  }
  throw ChangedMeanwhile(given_.string(), how, kept, advice);
}

std::string AtomicFile::KeepBeside() {
  constexpr int kNamesTried = 1000;
  for (int number = 1; number <= kNamesTried; ++number) {
    std::string name =
        target_.string() + (number == 1 ? std::string(".upgraded") : fmt::format(".upgraded.{}", number));
    if (MoveWithoutReplacing(temporary_, name)) {
      temporary_.clear();
      static_cast<void>(SyncFolder(folder_));
      return name;
    }
    if (errno != EEXIST) return {};
  }
  return {};
}

void AtomicFile::Fail(std::string_view doing) const {
  FailOn(given_, doing, std::strerror(errno));
}

void AtomicFile::FailTaken() const {
  throw DocumentError(kUnwritable, given_.string(), 0, "the file exists already",
                      "Choose another name, or ask for it to be replaced");
}

}  // namespace standalone
