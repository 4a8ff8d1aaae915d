#pragma once

#include <functional>

namespace testing_support {

/// What the file system is to seem unable to do. The tests define `link`, `rename` and `renameat2` in place
/// of the system's, which these are when nothing is asked for.
struct FileSystemFaults {
  int linkError = 0;                      ///< What giving a file another name fails with; 0 for not at all.
  int renameError = 0;                    ///< The same for a rename that may replace.
  bool replacesAlways = false;            ///< No rename refuses to replace.
  std::function<void()> onLink = {};      ///< Called when a file got another name.
  std::function<void()> beforeLink = {};  ///< Called right before any attempt at one.
};

/// Faults for the life of this object.
class FaultyFileSystem {
 public:
  explicit FaultyFileSystem(FileSystemFaults faults);
  ~FaultyFileSystem();
  FaultyFileSystem(const FaultyFileSystem&) = delete;
  FaultyFileSystem& operator=(const FaultyFileSystem&) = delete;
};

}  // namespace testing_support
