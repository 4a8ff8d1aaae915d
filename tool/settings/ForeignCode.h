#pragma once

#include <sys/types.h>

namespace tool {

/// To live while code of upgrade libraries runs: what that does to the process reaches no document. What it
/// prints goes to standard error, since standard output may be a result; afterwards the process is in its
/// folder again, by which names of documents are found, and new files have their permissions. A copy of the
/// process that it made and that comes back ends here: the work is the first one's.
class ForeignCode {
 public:
  ForeignCode();
  ~ForeignCode();
  ForeignCode(const ForeignCode&) = delete;
  ForeignCode& operator=(const ForeignCode&) = delete;

 private:
  pid_t process_;
  int folder_;
  mode_t mask_;
  int output_;  // below 0 where it could not be set aside
};

}  // namespace tool
