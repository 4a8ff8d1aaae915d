#include "settings/ForeignCode.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr int kFirstOther = STDERR_FILENO + 1;

// There is no other way to ask for it.
mode_t FileMask() {
  const mode_t mask = umask(0);
  umask(mask);
  return mask;
}

}  // namespace

ForeignCode::ForeignCode()
    : process_(getpid()),
      folder_(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)),
      mask_(FileMask()),
      output_(-1) {
  FlushOutput();
  output_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstOther);
  if (output_ < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) >= 0) return;
  close(output_);
  output_ = -1;
}

ForeignCode::~ForeignCode() {
  if (getpid() != process_) _exit(EXIT_FAILURE);
  if (output_ >= 0) {
    static_cast<void>(std::fflush(stdout));  // what the library left there
    static_cast<void>(dup2(output_, STDOUT_FILENO));
    close(output_);
  }
  umask(mask_);
  if (folder_ < 0) return;
  [[maybe_unused]] const int back =
      fchdir(folder_);  // fails only where nobody may be in that folder any more
  close(folder_);
}

}  // namespace tool
