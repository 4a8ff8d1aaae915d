#pragma once

#include <sys/types.h>

#include <filesystem>

namespace tool {

/// Removes the temporary files that a process left behind which was killed while it wrote `target`.
void RemoveLeftovers(const std::filesystem::path& target, pid_t process);

}  // namespace tool
