#include "file/Backup.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "file/DocumentError.h"
#include "file/FileAttributes.h"
#include "file/FileIdentity.h"
#include "file/Placing.h"
#include "file/TemporaryName.h"

namespace standalone {
namespace {

// Closes its descriptor; -1 for none.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Get() const { return number_; }

 private:
  int number_;
};

// False, with errno set, when something fails.
bool CopyBytes(int from, int to) {
  std::array<char, std::size_t{1} << 16> block{};
  for (;;) {
    const ssize_t got = read(from, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    for (ssize_t done = 0; done < got;) {
      const ssize_t written = write(to, block.data() + done, static_cast<std::size_t>(got - done));
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      done += written;
    }
  }
}

bool CopyTimes(int from, int to) {
  struct stat status {};
  if (fstat(from, &status) != 0) return false;
  const timespec times[] = {status.st_atim, status.st_mtim};
  return futimens(to, times) == 0;
}

bool Sync(const std::filesystem::path& file) {
  const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  return descriptor.Get() >= 0 && fsync(descriptor.Get()) == 0;
}

}  // namespace

Backup::Backup(const std::filesystem::path& file, std::filesystem::path name) : name_(std::move(name)) {
  const std::filesystem::path folder = FolderOf(name_);
  if (link(file.c_str(), name_.c_str()) == 0) {
    isNewLink_ = true;
    mayGo_ = true;
  } else if (LacksLinks(errno)) {
    MakeCopy(file);
  } else if (errno != EEXIST || !IsBackupOf(name_, file) || !Sync(name_)) {
    Fail(errno);
  }
  // Or a loss of power could leave the new document and no backup.
  if (SyncFolder(folder)) return;
  const int cause = errno;
  if (mayGo_) unlink(name_.c_str());
  Fail(cause);
}

Backup::~Backup() {
  if (mayGo_) unlink(name_.c_str());
}

void Backup::MakeCopy(const std::filesystem::path& file) {
  if (IsBackupOf(name_, file) && Sync(name_)) return;
  std::string temporary;
  const Descriptor source(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  const Descriptor copy(source.Get() < 0 ? -1 : MakeTemporary(name_, temporary));
  if (copy.Get() < 0) Fail(errno);
  try {
    TakeOverAttributes(copy.Get(), file, name_);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
  if (CopyBytes(source.Get(), copy.Get()) && CopyTimes(source.Get(), copy.Get()) && fsync(copy.Get()) == 0 &&
      MoveWithoutReplacing(temporary, name_)) {
    mayGo_ = true;
    return;
  }
  const int cause = errno;
  unlink(temporary.c_str());
  Fail(cause);
}

void Backup::Fail(int cause) const {
  if (cause == EEXIST) {
    throw DocumentError(DocumentError::Kind::kUnwritable, name_.string(), 0,
                        "the backup cannot be made, because its name is taken by something else",
                        "Remove or rename the older backup, or choose another suffix; nothing was changed");
  }
  const bool isFull = cause == ENOSPC || cause == EDQUOT;
  throw DocumentError(
      DocumentError::Kind::kUnwritable, name_.string(), 0,
      fmt::format("the backup cannot be made ({})", std::strerror(cause)),
      isFull ? "There is no room for it: make room on its disk, or write the result to another one with -o; "
               "nothing was changed"
             : "Check the folder and its permissions, or choose another suffix; nothing was changed");
}

bool IsBackupOf(const std::filesystem::path& name, const std::filesystem::path& file) {
  // A link would lead to the new document as soon as the old one is replaced.
  std::error_code error;
  return std::filesystem::is_regular_file(std::filesystem::symlink_status(name, error)) &&
         HaveSameBytes(name, file);
}

}  // namespace standalone
