#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace testing_support {

/// A folder of its own, removed with all that it holds.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "hvx-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] std::filesystem::path operator/(const char* name) const { return path_ / name; }
  /// The names of all that stands in it.
  [[nodiscard]] std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.insert(entry.path().filename());
    return names;
  }
  /// Writes a file and gives its path.
  std::filesystem::path Put(const char* name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

inline std::string BytesOf(const std::filesystem::path& file) {
  std::ostringstream bytes;
  bytes << std::ifstream(file, std::ios::binary).rdbuf();
  return bytes.str();
}

}  // namespace testing_support
