#include "simulation/SimulatedOutside.h"

#include <fmt/format.h>

#include <algorithm>

namespace simulation {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::size_t kMostWaits = 100'000;

}  // namespace

SimulatedOutside::SimulatedOutside(unsigned seed, const Troubles& troubles, std::span<const tool::Load> loads,
                                   const tool::Supervisor::Settings& settings, Disk& disk)
    : random_(seed), troubles_(troubles), loads_(loads), settings_(settings), disk_(disk) {
  if (Chance(troubles.interrupt)) {
    const int times = 1 + static_cast<int>(Number(2));
    for (int i = 0; i < times; ++i)
      Schedule(milliseconds(Number(6000)), {.event = {.kind = Event::Kind::kInterrupt, .bytes = {}}});
  }
  if (Chance(troubles.terminate))
    Schedule(milliseconds(Number(6000)), {.event = {.kind = Event::Kind::kTerminate, .bytes = {}}});
}

void SimulatedOutside::Schedule(Clock::duration in, Happening happening) {
  happenings_.emplace(now_ + in, std::move(happening));
}

void SimulatedOutside::NextStep(WorkerNumber number, Clock::duration in) {
  Schedule(in, {.worker = number});
}

// News takes a while to come, in the order in which it was told.
void SimulatedOutside::Tell(WorkerNumber number, Event::Kind kind, std::string bytes) {
  Worker& worker = At(number);
  worker.told = std::max(worker.told, now_ + milliseconds(Number(3) == 0 ? Number(150) : 0));
  Schedule(worker.told - now_, {.event = {.kind = kind, .worker = number, .bytes = std::move(bytes)}});
}

void SimulatedOutside::End(WorkerNumber number, Event::End how) {
  Worker& worker = At(number);
  worker.isGone = true;
  worker.told = std::max(worker.told, now_ + milliseconds(Number(5)));
  Schedule(worker.told - now_,
           {.event = {.kind = Event::Kind::kEnded, .worker = number, .bytes = "it ended", .end = how}});
}

SimulatedOutside::Worker& SimulatedOutside::At(WorkerNumber number) {
  Require(workers_.contains(number), "a worker that is not there is dealt with");
  return workers_[number];
}

void SimulatedOutside::Require(bool holds, const std::string& what) {
  if (!holds) breaches_.push_back(what);
}

Event SimulatedOutside::Wait(std::optional<Clock::time_point> until) {
  if (++waits_ > kMostWaits) throw std::runtime_error("the run comes to no end");
  for (;;) {
    if (happenings_.empty() || (until && *until < happenings_.begin()->first)) {
      if (!until) throw std::runtime_error("the supervisor waits for nothing");
      now_ = std::max(now_, *until);
      return {};
    }
    const auto first = happenings_.begin();
    now_ = std::max(now_, first->first);
    const Happening happening = std::move(first->second);
    happenings_.erase(first);
    if (happening.worker != 0) {
      Advance(happening.worker);
      continue;
    }
    const Event::Kind kind = happening.event.kind;
    mayKillCommits_ = mayKillCommits_ || (kind == Event::Kind::kInterrupt && wasAsked_);
    if (kind == Event::Kind::kTerminate && !terminated_) terminated_ = now_;
    wasAsked_ = wasAsked_ || kind == Event::Kind::kInterrupt || kind == Event::Kind::kTerminate;
    return happening.event;
  }
}

// What a worker does next, unless it comes to an end.
void SimulatedOutside::Advance(WorkerNumber number) {
  const auto found = workers_.find(number);
  if (found == workers_.end() || found->second.isGone) return;
  Worker& worker = found->second;
  if (worker.end || Chance(troubles_.crash)) {
    End(number, worker.end.value_or(Chance(300) ? Event::End::kOutOfMemory : Event::End::kCrash));
    return;
  }
  // Some take as long as a worker that is asked to stop is given.
  const auto soon = [this] { return milliseconds(Chance(100) ? 900 + Number(300) : 1 + Number(300)); };
  switch (worker.step) {
    case Step::kIdle:
    case Step::kDone:
      if (worker.isDismissed) End(number, Event::End::kExit);
      return;
    case Step::kGiven:
      worker.step = Step::kBegun;
      worker.hangs = Chance(troubles_.hang);
      worker.isDeaf = worker.hangs || Chance(troubles_.deaf);
      Tell(number, Event::Kind::kBegun);
      if (!worker.hangs) NextStep(number, soon());
      return;
    case Step::kBegun:
      // What an earlier run put in place is found to be done.
      if (disk_.placed[worker.document] == 0) {
        worker.step = Step::kReady;
        Tell(number, Event::Kind::kReady, "placed");
      } else {
        worker.step = Step::kPlaced;
      }
      NextStep(number, soon());
      return;
    case Step::kReady:
      return;  // it waits
    case Step::kCommitting:
      worker.step = Step::kPlaced;
      ++disk_.placed[worker.document];
      NextStep(number, soon());
      return;
    case Step::kPlaced: {
      const bool isLast = Chance(troubles_.grown);
      worker.step = isLast ? Step::kDone : Step::kIdle;
      worker.isDismissed = worker.isDismissed || isLast;
      Tell(number, isLast ? Event::Kind::kLastResult : Event::Kind::kResult, "placed");
      if (isLast) NextStep(number, soon());
      return;
    }
  }
}

std::optional<WorkerNumber> SimulatedOutside::Start() {
  if (Chance(troubles_.noStart)) return std::nullopt;
  Require(workers_.size() < settings_.workers, "there are more workers than there may be");
  workers_[++last_] = {};
  return last_;
}

void SimulatedOutside::Give(WorkerNumber number, std::size_t document) {
  Worker& worker = At(number);
  Require(!worker.isDismissed, "a dismissed worker is given a document");
  Require(disk_.recorded[document] == 0, "a closed document is given out again");
  Require(!wasAsked_, "a document is given out when the run is to stop");
  for (const auto& [other, at] : workers_) {
    if (other == number || at.step == Step::kIdle) continue;
    Require(at.document != document, "two work on one document");
    const std::uint32_t apart = at.step == Step::kDone ? 0 : loads_[document].apart;
    Require(apart == 0 || loads_[at.document].apart != apart, "two work on one file");
  }
  worker.document = document;
  if (worker.isGone) return;
  Require(worker.step == Step::kIdle, "a worker that is at work is given a document");
  worker.step = Step::kGiven;
  CheckBudget();
  NextStep(number, milliseconds(Number(3)));
}

void SimulatedOutside::CheckBudget() {
  std::uint64_t memory = 0;
  int atWork = 0;
  for (const auto& [number, worker] : workers_) {
    if (worker.isGone || worker.step == Step::kIdle || worker.step == Step::kDone) continue;
    memory += loads_[worker.document].memory;
    ++atWork;
  }
  Require(atWork == 1 || settings_.memory == 0 || memory <= settings_.memory,
          "more memory is promised than there is");
}

void SimulatedOutside::Dismiss(WorkerNumber number) {
  Worker& worker = At(number);
  worker.isDismissed = true;
  if (worker.step == Step::kIdle) NextStep(number, milliseconds(Number(20)));
}

void SimulatedOutside::Ask(WorkerNumber number) {
  Worker& worker = At(number);
  Require(worker.step != Step::kCommitting, "a worker is asked to stop that puts its result in place");
  if (worker.isDeaf || worker.step == Step::kReady) return;
  worker.end = Event::End::kStoppedOnRequest;
  NextStep(number, milliseconds(Number(400)));
}

void SimulatedOutside::Commit(WorkerNumber number) {
  Worker& worker = At(number);
  Require(!worker.isKilled, "a worker that was killed is let commit");
  if (worker.isGone) return;
  Require(worker.step == Step::kReady, "a worker is let commit that did not ask");
  worker.step = Step::kCommitting;
  NextStep(number, Chance(50) ? seconds(3) : milliseconds(1 + Number(300)));
}

void SimulatedOutside::Kill(WorkerNumber number) {
  Worker& worker = At(number);
  if (worker.isGone) return;
  worker.isKilled = true;
  Require(worker.step != Step::kCommitting || mayKillCommits_ || terminated_,
          "a worker is killed while it puts its result in place");
  End(number, Event::End::kCrash);
}

void SimulatedOutside::Forget(WorkerNumber number) {
  Require(At(number).isGone, "a worker is forgotten that is still there");
  workers_.erase(number);
}

// As the real one: what is in place is done, whatever became of the worker.
bool SimulatedOutside::Close(std::size_t document, const WorkEnd& end) {
  const bool isDone = end.kind == WorkEnd::Kind::kFinished || (end.committing && disk_.placed[document] != 0);
  if (!isDone && end.kind == WorkEnd::Kind::kInterrupted) return true;
  Require(!isDone || disk_.placed[document] == 1, "a result is not there once");
  Require(end.kind != WorkEnd::Kind::kCrashed || !At(end.worker).isKilled,
          "what was killed is said to have crashed");
  Require(end.kind != WorkEnd::Kind::kTimedOut || end.limit.has_value(), "there was no limit of time");
  diskIsFull_ = diskIsFull_ || Chance(troubles_.fullDisk);
  if (diskIsFull_) {
    disk_.unrecorded.insert(document);
    return false;
  }
  ++disk_.recorded[document];
  return true;
}

void SimulatedOutside::CheckEnd(tool::RunEnd end, const std::vector<std::size_t>& documents) {
  Require(workers_.empty(), "workers are left when the run is over");
  for (const std::size_t document : documents) {
    const int recorded = disk_.recorded[document];
    const int placed = disk_.placed[document];
    Require(recorded <= 1, fmt::format("document {} is closed twice", document));
    Require(placed <= 1, fmt::format("document {} is replaced twice", document));
    Require(end != tool::RunEnd::kDone || recorded == 1, fmt::format("document {} is forgotten", document));
    Require(placed == 0 || recorded == 1 || disk_.unrecorded.contains(document),
            fmt::format("document {} is done, and nobody knows", document));
  }
  Require(end != tool::RunEnd::kUnrecordable || diskIsFull_, "nothing was wrong with the disk");
  Require(end != tool::RunEnd::kInterrupted || wasAsked_, "nobody asked to stop");
  Require(!diskIsFull_ || end != tool::RunEnd::kDone, "a record is missing, and the run is called done");
  Require(!terminated_ || now_ - *terminated_ < seconds(5), "the run does not end when the system presses");
}

}  // namespace simulation
