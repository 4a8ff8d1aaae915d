#pragma once

#include <map>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "archive/Outside.h"

namespace tool {

/// What the supervisor must know of a document beforehand.
struct Load {
  std::uint64_t bytes = 0;
  std::uint64_t memory = 0;                  ///< What a worker will probably need for it, in bytes.
  std::optional<Clock::duration> timeLimit;  ///< None for as long as it takes.
  /// Documents with one number are not worked on at the same time; 0 for none.
  std::uint32_t apart = 0;
};

/// How a run ended.
enum class RunEnd {
  kDone,          ///< Every document was closed.
  kInterrupted,   ///< It was asked to stop.
  kUnrecordable,  ///< What became of a document could not be recorded.
  kNoWorkers,     ///< There was no process to be had.
};

/// Has documents worked on by worker processes, several at a time, the largest first: at the end no worker
/// waits long for another one's large document. Whatever happens to a worker concerns the
/// document that it is at, and nothing else; another worker takes over.
///
/// A worker that takes too long, or is at work when the run is to stop, is asked to stop, gets a moment for
/// it, and is killed. A worker puts its output in place only when it is let, and then it is let finish:
/// unless the user asks a second time or the system presses.
///
/// Nothing is done twice, and nothing is forgotten: each document is closed once, except those that were left
/// because the run ended early. It touches the world through `Outside` alone, and is the same with the same
/// news.
class Supervisor {
 public:
  struct Settings {
    std::size_t workers = 1;   ///< At most.
    std::uint64_t memory = 0;  ///< For all workers, in bytes; 0 for no limit. What needs more runs alone.
  };

  /// Both must outlive it.
  Supervisor(Outside& outside, std::span<const Load> loads, Settings settings);

  /// `documents`: which ones are to be worked on, by their places in the loads.
  RunEnd Run(const std::vector<std::size_t>& documents);

 private:
  struct Slot {
    std::optional<std::size_t> document = std::nullopt;
    bool begun = false;
    bool committing = false;
    std::string ready = {};                                    // the result that it asked to commit
    std::optional<Clock::time_point> deadline = std::nullopt;  // of the next step against it
    std::optional<WorkEnd::Kind> asked = std::nullopt;         // why it was asked to stop
    bool dismissed = false;
    bool killed = false;  // its end is on its way
  };
  using Slots = std::map<WorkerNumber, Slot>;
  struct LargestFirst {
    using Entry = std::pair<std::uint64_t, std::size_t>;  // the memory, the document
    bool operator()(const Entry& left, const Entry& right) const {
      return left.first != right.first ? left.first > right.first : left.second < right.second;
    }
  };
  using Waiting = std::set<LargestFirst::Entry, LargestFirst>;

  void GiveOut();
  [[nodiscard]] Waiting::const_iterator NextThatFits() const;
  [[nodiscard]] bool IsKeptApart(std::size_t document) const;
  [[nodiscard]] Slots::iterator IdleWorker();
  void DismissIdle();
  [[nodiscard]] std::optional<Clock::time_point> NextDeadline();
  void Handle(const Event& event);
  void HandleEnd(Slots::iterator worker, const Event& event);
  void CloseDocument(Slots::iterator worker, WorkEnd end);
  void MeetDeadlines();
  void AskToStop(WorkerNumber number, Slot& slot, WorkEnd::Kind why);
  void Stop(RunEnd why);
  void Kill(WorkerNumber number, Slot& slot);
  void KillAll();
  [[nodiscard]] bool IsStopping() const { return end_ != RunEnd::kDone; }

  Outside& outside_;
  std::span<const Load> loads_;
  Settings settings_;
  Waiting waiting_;
  Slots workers_;
  std::uint64_t memoryInUse_ = 0;
  int failedStarts_ = 0;    // in a row, and so
  int endsBeforeWork_ = 0;  // of workers that had begun nothing
  std::optional<Clock::time_point> nextStart_;
  std::optional<Clock::time_point> killAll_;
  RunEnd end_ = RunEnd::kDone;
  int interrupts_ = 0;
};

}  // namespace tool
