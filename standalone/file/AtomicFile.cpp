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

}  // namespace

AtomicFile::AtomicFile(const std::filesystem::path& target, const WriteOptions& options)
    : given_(target),
      target_(Followed(target)),
      overwrite_(options.overwrite),
      backupSuffix_(options.backupSuffix) {
  if (std::filesystem::exists(target_) && !std::filesystem::is_regular_file(target_)) {
    // A folder, or a device, which a file of its name would do away with.
    throw DocumentError(kUnwritable, given_.string(), 0, "it is not a regular file",
                        "Give the name of a file");
  }
  if (!overwrite_ && std::filesystem::exists(target_)) FailTaken();
  temporary_ = (FolderOf(target_) / fmt::format(".{}.XXXXXX", target_.filename().string())).string();
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
    KeepBackup();
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) Fail("put in place");
    temporary_.clear();
  } else if (link(temporary_.c_str(), target_.c_str()) != 0) {  // unlike a rename, never replaces
    if (errno == EEXIST) FailTaken();
    Fail("put in place");
  }
  const int folder = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);  // some file systems do not offer it; the file itself is safe by now
    close(folder);
  }
}

void AtomicFile::KeepBackup() const {
  if (backupSuffix_.empty() || !std::filesystem::exists(target_)) return;
  const std::string backup = target_.string() + backupSuffix_;
  if (link(target_.c_str(), backup.c_str()) == 0) return;
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
