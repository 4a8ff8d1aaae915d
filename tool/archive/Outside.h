#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tool {

using Clock = std::chrono::steady_clock;

/// A worker process, by a number that no other one gets in this run.
using WorkerNumber = std::uint64_t;

/// How the work on one document ended.
struct WorkEnd {
  enum class Kind {
    kFinished,     ///< `result` is what the work returned.
    kTimedOut,     ///< It was stopped for taking too long.
    kCrashed,      ///< The process died; `cause` says of what.
    kInterrupted,  ///< It was stopped because the run is to stop.
    kOutOfMemory,  ///< There was no memory left even to say so.
  };

  Kind kind = Kind::kCrashed;
  std::string result;
  std::string cause;
  bool committing = false;  ///< It had been let commit, so that its output may be in place.
  std::string ready;        ///< The result that it had asked to commit.
  WorkerNumber worker = 0;
  std::optional<Clock::duration> limit;  ///< The time that it had.
};

/// News from outside.
struct Event {
  enum class Kind {
    kNothing,     ///< The time is up.
    kBegun,       ///< The worker has begun its document.
    kReady,       ///< The worker waits for `Outside::Commit`; `bytes` is the result if that succeeds.
    kResult,      ///< The worker has done its document; `bytes` is the result.
    kLastResult,  ///< The same, and the worker takes no other: it has grown.
    kEnded,       ///< The process is gone; `end` and `bytes` (the cause of a crash) tell how.
    kInterrupt,   ///< The user asks to stop, once more each time.
    kTerminate,   ///< The system asks to stop, and will soon end this process itself.
  };
  enum class End { kExit, kOutOfMemory, kStoppedOnRequest, kCrash };

  Kind kind = Kind::kNothing;
  WorkerNumber worker = 0;
  std::string bytes;
  End end = End::kExit;
};

/// What the supervisor of a run deals with: worker processes, the clock, signals, the record of the run.
/// Documents go by their numbers. Only `Wait` waits.
class Outside {
 public:
  virtual ~Outside() = default;

  [[nodiscard]] virtual Clock::time_point Now() = 0;
  /// The next piece of news; `kNothing` at `until`, if none comes before.
  [[nodiscard]] virtual Event Wait(std::optional<Clock::time_point> until) = 0;

  /// A new worker without a document; none when there is no process to be had.
  [[nodiscard]] virtual std::optional<WorkerNumber> Start() = 0;
  /// Hands a document to an idle worker. One that is gone is heard of by `kEnded`, without `kBegun`.
  virtual void Give(WorkerNumber worker, std::size_t document) = 0;
  /// An idle worker is not needed any more; it ends by itself.
  virtual void Dismiss(WorkerNumber worker) = 0;
  /// Asks the worker to stop soon; it may not notice.
  virtual void Ask(WorkerNumber worker) = 0;
  /// Lets a worker that is ready put its output in place.
  virtual void Commit(WorkerNumber worker) = 0;
  /// `kEnded` follows. What the worker was not let commit is not in place, and never will be.
  virtual void Kill(WorkerNumber worker) = 0;
  /// The worker's end was told, and nothing will be asked of it any more.
  virtual void Forget(WorkerNumber worker) = 0;

  /// Takes what became of a document into the record of the run, if it is final: not when it was interrupted.
  /// False when that cannot be written.
  [[nodiscard]] virtual bool Close(std::size_t document, const WorkEnd& end) = 0;
};

}  // namespace tool
