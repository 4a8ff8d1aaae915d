#include "archive/Processes.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "archive/WorkerProcess.h"
#include "file/DocumentError.h"
#include "terminal/Interruption.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::chrono::milliseconds kBetweenTicks{200};
constexpr timespec kWithoutPolling{.tv_sec = 0, .tv_nsec = 20'000'000};

int Await(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
  return status;
}

Event EndOf(WorkerNumber number, int status) {
  Event event{.kind = Event::Kind::kEnded, .worker = number, .bytes = {}, .end = Event::End::kCrash};
  if (WIFSIGNALED(status)) {
    event.bytes = fmt::format("signal {}, {}", WTERMSIG(status), strsignal(WTERMSIG(status)));
  } else if (WEXITSTATUS(status) == kOutOfMemoryStatus) {
    event.end = Event::End::kOutOfMemory;
  } else if (WEXITSTATUS(status) == kStoppedOnRequestStatus) {
    event.end = Event::End::kStoppedOnRequest;
  } else {
    if (WEXITSTATUS(status) == EXIT_SUCCESS) event.end = Event::End::kExit;
    event.bytes = fmt::format("exit status {}", WEXITSTATUS(status));
  }
  return event;
}

}  // namespace

Processes::Processes(Hooks hooks) : hooks_(std::move(hooks)) {
  // Ignored, as who starts this program may have it, it would keep the system from telling how workers end.
  std::signal(SIGCHLD, SIG_DFL);
}

Processes::~Processes() {
  for (auto& [number, worker] : workers_) {
    kill(worker.process, SIGTERM);
    close(worker.socket);
  }
  for (const auto& [number, worker] : workers_) Await(worker.process);
}

Event Processes::Wait(std::optional<Clock::time_point> until) {
  for (;;) {
    TakeSignals();
    if (!news_.empty()) {
      Event event = std::move(news_.front());
      news_.pop_front();
      return event;
    }
    const Clock::time_point now = Clock::now();
    if (until && now >= *until) return {};
    if (now >= nextTick_) {
      hooks_.onTick();
      nextTick_ = now + kBetweenTicks;
    }
    Poll(std::min(nextTick_, until.value_or(nextTick_)));
  }
}

void Processes::TakeSignals() {
  for (; interrupts_ < Interruption::Requests(); ++interrupts_)
    news_.push_back({.kind = Event::Kind::kInterrupt, .worker = 0, .bytes = {}});
  if (Interruption::IsTermination() && !terminated_)
    news_.push_back({.kind = Event::Kind::kTerminate, .worker = 0, .bytes = {}});
  terminated_ = Interruption::IsTermination();
}

void Processes::Poll(std::optional<Clock::time_point> until) {
  timespec wait{};
  if (until) {
    const auto left = std::max(Clock::duration::zero(), *until - Clock::now());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    wait.tv_sec = seconds.count();
    wait.tv_nsec = std::chrono::nanoseconds(left - seconds).count();
  }
  std::vector<pollfd> sockets;
  std::vector<WorkerNumber> numbers;
  for (const auto& [number, worker] : workers_) {
    sockets.push_back({worker.socket, POLLIN, 0});
    numbers.push_back(number);
  }
  const int ready =
      ppoll(sockets.data(), sockets.size(), until ? &wait : nullptr, &Interruption::WhileWaiting());
  if (ready == 0 || (ready < 0 && errno == EINTR)) return;
  if (ready < 0) nanosleep(&kWithoutPolling, nullptr);  // then each is looked at
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    if (ready < 0 || sockets[i].revents != 0) Receive(numbers[i], workers_.at(numbers[i]));
  }
}

void Processes::Receive(WorkerNumber number, Worker& worker) {
  std::array<char, 65536> block{};
  for (;;) {
    const ssize_t got = recv(worker.socket, block.data(), block.size(), MSG_DONTWAIT);
    if (got < 0 && errno == EINTR) continue;
    if (got > 0) worker.received.append(block.data(), static_cast<std::size_t>(got));
    if (got > 0 && static_cast<std::size_t>(got) == block.size()) continue;
    TakeMessages(number, worker);
    const bool isOver = got == 0 || (got < 0 && errno != EAGAIN && errno != EWOULDBLOCK);
    if (isOver) Bury(workers_.find(number));
    return;
  }
}

void Processes::TakeMessages(WorkerNumber number, Worker& worker) {
  char kind = 0;
  Event event{.kind = Event::Kind::kNothing, .worker = number, .bytes = {}};
  while (TakeMessage(worker.received, kind, event.bytes)) {
    event.kind = kind == kBegunMessage    ? Event::Kind::kBegun
                 : kind == kReadyMessage  ? Event::Kind::kReady
                 : kind == kResultMessage ? Event::Kind::kResult
                                          : Event::Kind::kLastResult;
    news_.push_back(std::move(event));
    event = {.kind = Event::Kind::kNothing, .worker = number, .bytes = {}};
  }
}

void Processes::Bury(Workers::iterator dead) {
  // Out of the list first, whatever fails here: the system gives numbers of processes anew.
  const auto worker = workers_.extract(dead);
  close(worker.mapped().socket);
  Event end = EndOf(worker.key(), Await(worker.mapped().process));
  startFailure_ = "its worker ended too early";
  if (!end.bytes.empty()) startFailure_ += fmt::format(" ({})", end.bytes);
  news_.push_back(std::move(end));
}

std::optional<WorkerNumber> Processes::Start() {
  std::array<int, 2> ends{};
  const auto fail = [this](std::string_view what) {
    startFailure_ = fmt::format("{} ({})", what, std::strerror(errno));
    return std::nullopt;
  };
  try {
    hooks_.prepare();
  } catch (const standalone::DocumentError& error) {
    startFailure_ = error.what();
    return std::nullopt;
  }
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return fail("a pipe cannot be created");
  FlushOutput();  // or the worker would write what is still in the buffers a second time
  std::cout.flush();
  std::fflush(nullptr);
  const pid_t self = getpid();
  const pid_t process = fork();
  if (process < 0) {
    const auto failed = fail("a worker process cannot be started");
    close(ends[0]);
    close(ends[1]);
    return failed;
  }
  if (process == 0) {
    close(ends[0]);
    for (const auto& [number, worker] : workers_) close(worker.socket);
    BeWorker(hooks_.work, ends[1], self);
  }
  close(ends[1]);
  const WorkerNumber number = ++started_ << 32U | static_cast<std::uint32_t>(process);
  try {
    workers_.emplace(number, Worker{.process = process, .socket = ends[0], .received = {}});
  } catch (...) {
    close(ends[0]);  // at which it ends
    Await(process);
    throw;
  }
  hooks_.onStart(number);
  return number;
}

void Processes::Give(WorkerNumber worker, std::size_t document) {
  hooks_.onGive(document);
  const std::uint64_t number = document;
  Send(worker, &number, sizeof number);
}

void Processes::Commit(WorkerNumber worker) {
  Send(worker, &kCommitReply, sizeof kCommitReply);
}

void Processes::Send(WorkerNumber number, const void* bytes, std::size_t size) {
  const auto found = workers_.find(number);  // its end may be among the news
  if (found == workers_.end()) return;
  if (send(found->second.socket, bytes, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) Kill(number);
}

void Processes::Dismiss(WorkerNumber worker) {
  const auto found = workers_.find(worker);
  if (found != workers_.end()) shutdown(found->second.socket, SHUT_WR);
}

void Processes::Ask(WorkerNumber worker) {
  const auto found = workers_.find(worker);
  if (found != workers_.end()) kill(found->second.process, SIGTERM);
}

void Processes::Kill(WorkerNumber worker) {
  const auto found = workers_.find(worker);
  if (found != workers_.end()) kill(found->second.process, SIGKILL);
}

}  // namespace tool
