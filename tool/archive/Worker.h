#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "document/AnnounceCommit.h"

namespace tool {

/// How the work in a worker process ended.
struct WorkerEnd {
  enum class Kind {
    kFinished,     ///< `result` is what the work returned.
    kTimedOut,     ///< It was stopped for taking too long.
    kCrashed,      ///< The process died; `cause` says of what.
    kInterrupted,  ///< It was stopped because the user asked this process to stop.
    kOutOfMemory,  ///< There was no memory left even to say so.
    kNotStarted,   ///< There was no process to be had; `cause` says why.
  };

  Kind kind = Kind::kCrashed;
  std::string result;
  std::string cause;
  bool committing = false;  ///< It had announced its commit, so that its output may be in place.
  std::string announced;    ///< What it said then.
  pid_t process = 0;        ///< The worker's.
};

using Work = std::function<std::string(const AnnounceCommit& announceCommit)>;

/// Runs `work` in a process of its own and waits for it, so that neither a crash nor an endless loop reaches
/// this one. Call it from a single-threaded process, after `Interruption::HoldBack`.
///
/// A work that must end early gets a moment to notice (`Interruption::StopIfRequested`) before it is killed.
/// When this process dies, it gets the same moment. Once it has announced its commit it is never stopped: its
/// output is there whole or not at all, and the end reported is the true one. Exceptions of the work other
/// than `Interrupted` count as a crash.
[[nodiscard]] WorkerEnd RunInWorker(const Work& work, std::optional<std::chrono::duration<double>> timeout);

}  // namespace tool
