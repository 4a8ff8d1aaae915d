#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace standalone {

/// What becomes of the process that made a temporary file.
enum class Maker {
  kGone,       ///< It ended; the file is a leftover.
  kRuns,       ///< It may still write to the file, or put it in place.
  kElsewhere,  ///< It is of another host or container, so that nobody here can know.
};

/// The name of a temporary file, `.<file>.<host>.<space>.<process>.<start>.hvxtmp-<random>`, which tells who
/// makes it: a process that is killed cannot remove the file, and a later one must know that it may.
struct TemporaryName {
  std::string host;         ///< With what is neither a letter nor a digit replaced.
  std::uint64_t space = 0;  ///< The space that numbers the processes (each container has one); 0: not known.
  pid_t process = 0;
  std::uint64_t start = 0;  ///< When the process began, since numbers are used again; 0: not known.

  /// None for any other name.
  [[nodiscard]] static std::optional<TemporaryName> Parse(std::string_view name);

  [[nodiscard]] Maker State() const;
};

/// Makes a hidden temporary file of this process, to become `target`, beside it. Gives its descriptor, closed
/// on exec, and its path in `temporary`; -1, with errno set, when it cannot be made. Its name fits also where
/// that of `target` is as long as a name can be.
[[nodiscard]] int MakeTemporary(const std::filesystem::path& target, std::string& temporary);

}  // namespace standalone
