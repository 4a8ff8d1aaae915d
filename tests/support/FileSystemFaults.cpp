#include "support/FileSystemFaults.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace testing_support {
namespace {

FileSystemFaults& Current() {
  static FileSystemFaults faults;
  return faults;
}

int FailWith(int error) {
  errno = error;
  return -1;
}

int Rename(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

}  // namespace

FaultyFileSystem::FaultyFileSystem(FileSystemFaults faults) {
  Current() = std::move(faults);
}

FaultyFileSystem::~FaultyFileSystem() {
  Current() = {};
}

}  // namespace testing_support

using testing_support::Current;

extern "C" int link(const char* from, const char* to) noexcept {
  if (Current().beforeLink) Current().beforeLink();
  if (Current().linkError != 0) return testing_support::FailWith(Current().linkError);
  const int result = static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
  if (result == 0 && Current().onLink) Current().onLink();
  return result;
}

extern "C" int rename(const char* from, const char* to) noexcept {
  if (Current().renameError != 0) return testing_support::FailWith(Current().renameError);
  return testing_support::Rename(AT_FDCWD, from, AT_FDCWD, to, 0);
}

extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
  if (Current().replacesAlways && flags != 0) return testing_support::FailWith(EINVAL);
  return testing_support::Rename(fromFolder, from, toFolder, to, flags);
}
