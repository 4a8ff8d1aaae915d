#include "file/RealPath.h"

#include <new>
#include <system_error>

namespace standalone {

namespace fs = std::filesystem;

fs::path RealPathOf(const fs::path& file) {
  std::error_code error;
  fs::path real = fs::weakly_canonical(fs::absolute(file), error);
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  return error ? fs::absolute(file) : real;
}

}  // namespace standalone
