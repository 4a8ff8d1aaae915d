#include "file/AtomicFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "file/DocumentError.h"

namespace standalone {
namespace {

constexpr auto kUnwritable = DocumentError::Kind::kUnwritable;

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

// A link stays a link: what it leads to is replaced.
std::filesystem::path Followed(const std::filesystem::path& file) {
  std::error_code error;
  std::filesystem::path real = std::filesystem::canonical(file, error);
  return error ? file : real;
}

// False, with errno set (EEXIST when something stands there), when it cannot be done.
bool MoveWithoutReplacing(const char* from, const char* to) {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // The file system does not know how, but a link never replaces either.
  if (link(from, to) != 0) return false;
  unlink(from);
  return true;
}

bool Sync(const std::string& file) {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool synced = fsync(descriptor) == 0;
  close(descriptor);
  return synced;
}

}  // namespace

AtomicFile::AtomicFile(const std::filesystem::path& target, const WriteOptions& options)
    : given_(target),
      target_(Followed(target)),
      overwrite_(options.overwrite),
      backupSuffix_(options.backupSuffix) {
  std::error_code error;  // what cannot be looked at cannot be created either, which is told below
  const bool isTaken = std::filesystem::exists(target_, error);
  if (isTaken && !std::filesystem::is_regular_file(target_, error)) {
    // A folder, or a device, which a file of its name would do away with.
    throw DocumentError(kUnwritable, given_.string(), 0, "it is not a regular file",
                        "Give the name of a file");
  }
  if (!overwrite_ && isTaken) FailTaken();
  temporary_ = (FolderOf(target_) / (TemporaryPrefix(target_, getpid()) + "XXXXXX")).string();
  descriptor_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (descriptor_ < 0) {
    temporary_.clear();
    Fail("created");
  }
  // The access rights of what is replaced, or what a new file gets here.
  struct stat status {};
  const mode_t mask = umask(0);
  umask(mask);
  const mode_t mode = stat(target_.c_str(), &status) == 0 ? status.st_mode & 07777U : 0666U & ~mask;
  if (fchmod(descriptor_, mode) == 0) return;
  const int cause = errno;
  LeaveNothing();
  errno = cause;
  Fail("given its access rights");
}

std::string AtomicFile::TemporaryPrefix(const std::filesystem::path& target, pid_t process) {
  return fmt::format(".{}.{}.", target.filename().string(), process);
}

AtomicFile::~AtomicFile() {
  LeaveNothing();
}

void AtomicFile::LeaveNothing() const {
  if (descriptor_ >= 0) close(descriptor_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void AtomicFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail("written");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void AtomicFile::Commit() {
  if (fsync(descriptor_) != 0) Fail("brought to disk");
  const int closed = close(descriptor_);
  descriptor_ = -1;
  if (closed != 0) Fail("brought to disk");
  if (overwrite_) {
    const std::string backup = KeepBackup();
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
      const int cause = errno;
      if (!backup.empty()) unlink(backup.c_str());
      errno = cause;
      Fail("put in place");
    }
  } else if (!MoveWithoutReplacing(temporary_.c_str(), target_.c_str())) {
    if (errno == EEXIST) FailTaken();
    Fail("put in place");
  }
  temporary_.clear();
  const int folder = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);  // some file systems do not offer it; the file itself is safe by now
    close(folder);
  }
}

std::string AtomicFile::KeepBackup() const {
  if (backupSuffix_.empty() || !std::filesystem::exists(target_)) return {};
  std::string backup = target_.string() + backupSuffix_;
  if (link(target_.c_str(), backup.c_str()) == 0) return backup;
  if (errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS) {  // no links here, so the old file is copied
    std::error_code error;
    if (std::filesystem::copy_file(target_, backup, error) && Sync(backup)) return backup;
    const int cause = error ? error.value() : errno;
    if (cause != EEXIST) unlink(backup.c_str());
    errno = cause;
  }
  throw DocumentError(kUnwritable, backup, 0,
                      fmt::format("the backup cannot be made ({})", std::strerror(errno)),
                      "Remove or rename an older backup, or choose another suffix; nothing was changed");
}

void AtomicFile::Fail(std::string_view doing) const {
  throw DocumentError(kUnwritable, given_.string(), 0,
                      fmt::format("cannot be {} ({})", doing, std::strerror(errno)),
                      "Check the folder, its permissions and the room on its disk; nothing was changed");
}

void AtomicFile::FailTaken() const {
  throw DocumentError(kUnwritable, given_.string(), 0, "the file exists already",
                      "Choose another name, or ask for it to be replaced");
}

}  // namespace standalone
