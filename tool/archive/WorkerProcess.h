#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "archive/Processes.h"

/// \file
/// A worker's side of the socket between it and the supervisor. The supervisor sends the number of a
/// document, and a byte when the worker may put its output in place. The worker answers in messages: a byte
/// for the kind, the size of what follows, and that.

namespace tool {

inline constexpr char kBegunMessage = 'B';
inline constexpr char kReadyMessage = 'W';  // waits for kCommitReply
inline constexpr char kResultMessage = 'R';
inline constexpr char kLastResultMessage = 'L';
inline constexpr char kCommitReply = 'C';

// How a worker ends that could not say so itself.
inline constexpr int kStoppedOnRequestStatus = 75;
inline constexpr int kOutOfMemoryStatus = 76;

/// Takes the first message off the bytes that came. False when there is no whole one.
[[nodiscard]] bool TakeMessage(std::string& received, char& kind, std::string& bytes);

/// Works on the documents that come through the socket, to its end. To be called in a fresh child of
/// `parent`.
[[noreturn]] void BeWorker(const Work& work, int socket, pid_t parent) noexcept;

}  // namespace tool
