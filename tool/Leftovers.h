#pragma once

#include <filesystem>
#include <set>

namespace tool {

/// The temporary files that writing `target` leaves behind when the process that writes it is killed.
class Leftovers {
 public:
  /// Takes note of those that are there already: they are somebody else's.
  explicit Leftovers(const std::filesystem::path& target);

  /// Removes those that came since.
  void Remove() const;

 private:
  [[nodiscard]] std::set<std::filesystem::path> Found() const;

  std::filesystem::path target_;
  std::set<std::filesystem::path> others_;
};

}  // namespace tool
