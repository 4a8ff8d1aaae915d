#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// \file
/// What of this machine is there for this process.

namespace tool {

/// The bytes of memory that this machine, or the group of processes that this one belongs to, has left; empty
/// where the system does not tell.
[[nodiscard]] std::optional<std::uint64_t> AvailableMemory();

/// How many processors this process may keep busy, by its affinity and its group's quota; at least 1.
[[nodiscard]] std::size_t UsableCores();

/// The most memory that this process had in use at a time since `ResetPeakMemory`, in bytes; 0 where the
/// system does not tell.
[[nodiscard]] std::size_t PeakMemory();
void ResetPeakMemory();

}  // namespace tool
