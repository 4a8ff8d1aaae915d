#include "file/Placing.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace standalone {

bool MoveWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return false;
  if (link(from.c_str(), to.c_str()) == 0) {
    unlink(from.c_str());
    return true;
  }
  if (!LacksLinks(errno)) return false;
  const int taken = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (taken < 0) return false;
  close(taken);
  if (std::rename(from.c_str(), to.c_str()) == 0) return true;
  const int cause = errno;
  unlink(to.c_str());
  errno = cause;
  return false;
}

bool LacksLinks(int error) {
  return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK;
}

bool SyncFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno == EACCES;  // one may be written that must not be read
  const bool isSynced = fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;  // has none of it
  const int cause = errno;
  close(descriptor);
  errno = cause;
  return isSynced;
}

std::filesystem::path FolderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

}  // namespace standalone
