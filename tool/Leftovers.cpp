#include "Leftovers.h"

#include <string>

#include "file/AtomicFile.h"

namespace tool {

namespace fs = std::filesystem;

void RemoveLeftovers(const fs::path& target, pid_t process) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(fs::absolute(target), error);  // beside what a link leads to
  const std::string prefix = standalone::AtomicFile::TemporaryPrefix(real, process);
  for (const fs::directory_entry& entry : fs::directory_iterator(real.parent_path(), error)) {
    if (entry.path().filename().string().starts_with(prefix)) fs::remove(entry.path(), error);
  }
}

}  // namespace tool
