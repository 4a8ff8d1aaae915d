#include "archive/Supervisor.h"

#include <algorithm>

namespace tool {
namespace {

constexpr std::chrono::seconds kGrace{1};            // for a worker that is asked to stop
constexpr std::chrono::seconds kBeforeTheSystem{4};  // acts itself: what is not in place by then stays out
constexpr std::chrono::milliseconds kBetweenStarts{200};
constexpr int kMostStarts = 5;  // in vain, before the run is given up

}  // namespace

Supervisor::Supervisor(Outside& outside, std::span<const Load> loads, Settings settings)
    : outside_(outside), loads_(loads), settings_(settings) {}

RunEnd Supervisor::Run(const std::vector<std::size_t>& documents) {
  for (const std::size_t document : documents) waiting_.emplace(loads_[document].memory, document);
  for (;;) {
    if (!IsStopping()) GiveOut();
    DismissIdle();
    if (workers_.empty() && (IsStopping() || waiting_.empty())) return end_;
    Handle(outside_.Wait(NextDeadline()));
    MeetDeadlines();
  }
}

void Supervisor::GiveOut() {
  for (auto next = NextThatFits(); next != waiting_.end(); next = NextThatFits()) {
    const auto worker = IdleWorker();
    if (worker == workers_.end()) return;
    const std::size_t document = next->second;
    memoryInUse_ += next->first;
    waiting_.erase(next);
    worker->second = Slot{.document = document};
    outside_.Give(worker->first, document);
  }
}

// The largest one that fits beside those at work. One that waits for memory lets smaller ones pass.
Supervisor::Waiting::const_iterator Supervisor::NextThatFits() const {
  auto next = waiting_.begin();
  if (settings_.memory != 0 && memoryInUse_ != 0) {
    if (memoryInUse_ >= settings_.memory) return waiting_.end();
    next = waiting_.lower_bound({settings_.memory - memoryInUse_, 0});
  }
  while (next != waiting_.end() && IsKeptApart(next->second)) ++next;
  return next;
}

bool Supervisor::IsKeptApart(std::size_t document) const {
  const std::uint32_t group = loads_[document].apart;
  return group != 0 && std::ranges::any_of(workers_, [&](const auto& worker) {
           return worker.second.document && loads_[*worker.second.document].apart == group;
         });
}

// Starts one where there may be another.
Supervisor::Slots::iterator Supervisor::IdleWorker() {
  const auto idle = std::ranges::find_if(
      workers_, [](const auto& worker) { return !worker.second.document && !worker.second.dismissed; });
  if (idle != workers_.end()) return idle;
  if (workers_.size() >= settings_.workers || (nextStart_ && outside_.Now() < *nextStart_))
    return workers_.end();
  nextStart_.reset();
  if (const auto number = outside_.Start()) {
    failedStarts_ = 0;
    return workers_.emplace(*number, Slot()).first;
  }
  nextStart_ = outside_.Now() + kBetweenStarts;
  if (workers_.empty() && ++failedStarts_ >= kMostStarts) Stop(RunEnd::kNoWorkers);
  return workers_.end();
}

void Supervisor::DismissIdle() {
  if (!IsStopping() && !waiting_.empty()) return;
  for (auto& [number, slot] : workers_) {
    if (slot.document || slot.dismissed) continue;
    slot.dismissed = true;
    slot.deadline = outside_.Now() + kGrace;
    outside_.Dismiss(number);
  }
}

std::optional<Clock::time_point> Supervisor::NextDeadline() {
  std::optional<Clock::time_point> next = killAll_;
  const auto consider = [&next](const std::optional<Clock::time_point>& other) {
    if (other && (!next || *other < *next)) next = other;
  };
  if (nextStart_ && outside_.Now() < *nextStart_ && !IsStopping()) consider(nextStart_);
  for (const auto& [number, slot] : workers_) consider(slot.deadline);
  return next;
}

void Supervisor::Handle(const Event& event) {
  if (event.kind == Event::Kind::kInterrupt || event.kind == Event::Kind::kTerminate) {
    Stop(RunEnd::kInterrupted);
    if (event.kind == Event::Kind::kTerminate && !killAll_) killAll_ = outside_.Now() + kBeforeTheSystem;
    if (event.kind == Event::Kind::kInterrupt && ++interrupts_ > 1) KillAll();
    return;
  }
  const auto worker = workers_.find(event.worker);
  if (worker == workers_.end()) return;
  Slot& slot = worker->second;
  switch (event.kind) {
    case Event::Kind::kBegun:
      slot.begun = true;
      endsBeforeWork_ = 0;
      if (slot.document && loads_[*slot.document].timeLimit && !slot.asked)
        slot.deadline = outside_.Now() + *loads_[*slot.document].timeLimit;
      break;
    case Event::Kind::kReady:
      if (slot.killed) break;
      slot.committing = true;
      slot.ready = event.bytes;
      if (!slot.asked) slot.deadline.reset();
      outside_.Commit(event.worker);
      break;
    case Event::Kind::kResult:
    case Event::Kind::kLastResult: {
      const bool isLast = event.kind == Event::Kind::kLastResult || slot.asked.has_value();
      WorkEnd end;
      end.kind = WorkEnd::Kind::kFinished;
      end.result = event.bytes;
      CloseDocument(worker, std::move(end));
      slot = Slot{.dismissed = isLast};
      if (isLast) slot.deadline = outside_.Now() + kGrace;
      if (isLast) outside_.Dismiss(event.worker);
      break;
    }
    case Event::Kind::kEnded:
      HandleEnd(worker, event);
      break;
    default:
      break;
  }
}

void Supervisor::HandleEnd(Slots::iterator worker, const Event& event) {
  const Slot& slot = worker->second;
  if (!slot.begun && !slot.dismissed && ++endsBeforeWork_ >= kMostStarts) Stop(RunEnd::kNoWorkers);
  if (slot.document && !slot.begun) {
    memoryInUse_ -= loads_[*slot.document].memory;
    waiting_.emplace(loads_[*slot.document].memory, *slot.document);
  } else if (slot.document) {
    WorkEnd end;
    end.cause = event.bytes;
    if (slot.asked) {
      end.kind = *slot.asked;
    } else if (event.end == Event::End::kOutOfMemory) {
      end.kind = WorkEnd::Kind::kOutOfMemory;
    } else if (event.end == Event::End::kStoppedOnRequest) {
      end.kind = WorkEnd::Kind::kInterrupted;  // a signal from the terminal reaches all processes
    }
    CloseDocument(worker, std::move(end));
  }
  workers_.erase(worker);
  outside_.Forget(event.worker);
}

void Supervisor::CloseDocument(Slots::iterator worker, WorkEnd end) {
  const Slot& slot = worker->second;
  const std::size_t document = *slot.document;
  end.worker = worker->first;
  end.committing = slot.committing;
  end.ready = slot.ready;
  end.limit = loads_[document].timeLimit;
  memoryInUse_ -= loads_[document].memory;
  const bool isInterrupted = end.kind == WorkEnd::Kind::kInterrupted;
  if (!outside_.Close(document, end)) Stop(RunEnd::kUnrecordable);
  if (isInterrupted) Stop(RunEnd::kInterrupted);
}

void Supervisor::MeetDeadlines() {
  const Clock::time_point now = outside_.Now();
  if (killAll_ && now >= *killAll_) {
    killAll_.reset();
    KillAll();
  }
  for (auto& [number, slot] : workers_) {
    if (!slot.deadline || now < *slot.deadline) continue;
    slot.deadline.reset();
    if (!slot.document) {
      Kill(number, slot);  // dismissed, and has nothing to lose
    } else if (slot.asked) {
      if (!slot.committing) Kill(number, slot);
    } else {
      AskToStop(number, slot, WorkEnd::Kind::kTimedOut);
    }
  }
}

void Supervisor::AskToStop(WorkerNumber number, Slot& slot, WorkEnd::Kind why) {
  slot.asked = why;
  slot.deadline = outside_.Now() + kGrace;
  outside_.Ask(number);
}

void Supervisor::Stop(RunEnd why) {
  if (!IsStopping()) end_ = why;
  for (auto& [number, slot] : workers_) {
    if (slot.document && !slot.committing && !slot.asked)
      AskToStop(number, slot, WorkEnd::Kind::kInterrupted);
  }
}

void Supervisor::Kill(WorkerNumber number, Slot& slot) {
  slot.killed = true;
  outside_.Kill(number);
}

void Supervisor::KillAll() {
  for (auto& [number, slot] : workers_) {
    slot.asked = slot.asked.value_or(WorkEnd::Kind::kInterrupted);
    Kill(number, slot);
  }
}

}  // namespace tool
