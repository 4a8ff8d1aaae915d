#pragma once

#include <map>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "archive/Outside.h"
#include "archive/Supervisor.h"

namespace simulation {

using tool::Clock;
using tool::Event;
using tool::WorkEnd;
using tool::WorkerNumber;

/// How often what goes wrong, of a thousand.
struct Troubles {
  int crash = 0;      ///< A worker dies, at any step.
  int hang = 0;       ///< A worker comes to no end.
  int deaf = 0;       ///< A worker does not notice that it is asked to stop.
  int noStart = 0;    ///< There is no process to be had.
  int fullDisk = 0;   ///< A record cannot be written, nor any after it.
  int grown = 0;      ///< A worker takes no further document.
  int interrupt = 0;  ///< Of a thousand runs: the user asks to stop, once or twice,
  int terminate = 0;  ///< or the system does.
};

/// What stays when a run is over.
struct Disk {
  std::map<std::size_t, int> placed;    ///< How often a result was put in the place of each document.
  std::map<std::size_t, int> recorded;  ///< How often each document was closed for good.
  std::set<std::size_t> unrecorded;  ///< Closed when the disk was full; the next run finds what is in place.
};

/// Workers, a clock, signals and a disk that do what a seed says, the same each time.
///
/// Breaches of what the supervisor promises are gathered in `Breaches`.
class SimulatedOutside final : public tool::Outside {
 public:
  SimulatedOutside(unsigned seed, const Troubles& troubles, std::span<const tool::Load> loads,
                   const tool::Supervisor::Settings& settings, Disk& disk);

  Clock::time_point Now() override { return now_; }
  Event Wait(std::optional<Clock::time_point> until) override;
  std::optional<WorkerNumber> Start() override;
  void Give(WorkerNumber worker, std::size_t document) override;
  void Dismiss(WorkerNumber worker) override;
  void Ask(WorkerNumber worker) override;
  void Commit(WorkerNumber worker) override;
  void Kill(WorkerNumber worker) override;
  void Forget(WorkerNumber worker) override;
  bool Close(std::size_t document, const WorkEnd& end) override;

  /// To be called when the run is over.
  void CheckEnd(tool::RunEnd end, const std::vector<std::size_t>& documents);
  [[nodiscard]] const std::vector<std::string>& Breaches() const { return breaches_; }

 private:
  enum class Step { kIdle, kGiven, kBegun, kReady, kCommitting, kPlaced, kDone };
  struct Worker {
    Step step = Step::kIdle;
    std::size_t document = 0;
    bool hangs = false;
    bool isDeaf = false;
    bool isGone = false;  // its end is on its way
    bool isDismissed = false;
    bool isKilled = false;
    Clock::time_point told = {};                   // when the last news from it comes
    std::optional<Event::End> end = std::nullopt;  // it will come to this instead of its next step
  };
  struct Happening {
    WorkerNumber worker = 0;  // whose next step it is; none: the event is told
    Event event = {};
  };

  [[nodiscard]] bool Chance(int ofThousand) { return Number(1000) < static_cast<unsigned>(ofThousand); }
  [[nodiscard]] unsigned Number(unsigned below) { return static_cast<unsigned>(random_() % below); }
  void Schedule(Clock::duration in, Happening happening);
  void NextStep(WorkerNumber number, Clock::duration in);
  void Tell(WorkerNumber number, Event::Kind kind, std::string bytes = {});
  void End(WorkerNumber number, Event::End how);
  void Advance(WorkerNumber number);
  void Require(bool holds, const std::string& what);
  void CheckBudget();
  Worker& At(WorkerNumber number);

  std::minstd_rand random_;
  Troubles troubles_;
  std::span<const tool::Load> loads_;
  tool::Supervisor::Settings settings_;
  Disk& disk_;
  Clock::time_point now_;
  std::multimap<Clock::time_point, Happening> happenings_;
  std::map<WorkerNumber, Worker> workers_;
  std::vector<std::string> breaches_;
  WorkerNumber last_ = 0;
  bool diskIsFull_ = false;
  bool wasAsked_ = false;
  bool mayKillCommits_ = false;
  std::optional<Clock::time_point> terminated_;
  std::size_t waits_ = 0;
};

}  // namespace simulation
