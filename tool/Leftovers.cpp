#include "Leftovers.h"

#include <fmt/format.h>

#include <string>

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kRandomPart = 6;

}  // namespace

Leftovers::Leftovers(const fs::path& target) {
  std::error_code error;
  target_ = fs::weakly_canonical(fs::absolute(target), error);  // they stand beside what a link leads to
  others_ = Found();
}

void Leftovers::Remove() const {
  for (const fs::path& file : Found()) {
    std::error_code error;
    if (!others_.contains(file)) fs::remove(file, error);
  }
}

std::set<fs::path> Leftovers::Found() const {
  const std::string prefix = fmt::format(".{}.", target_.filename().string());
  std::set<fs::path> found;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(target_.parent_path(), error)) {
    const std::string name = entry.path().filename().string();
    if (name.size() == prefix.size() + kRandomPart && name.starts_with(prefix)) found.insert(entry.path());
  }
  return found;
}

}  // namespace tool
