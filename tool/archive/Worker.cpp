#include "archive/Worker.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>
#include <string_view>

#include "terminal/Interruption.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using Clock = std::chrono::steady_clock;

// What a worker tells its parent: at most one of the first, with the size of what it announces and that
// itself; then at most one of the second with the result behind it, up to the end of the pipe.
constexpr char kCommitting = 'C';
constexpr char kResult = 'R';

constexpr int kStoppedOnRequest = 75;  // the exit status of a worker that noticed that it should stop
constexpr int kOutOfMemory = 76;
constexpr std::chrono::seconds kGrace{1};

void FlushAll() {
  FlushOutput();
  std::cout.flush();
  std::fflush(nullptr);
}

void Send(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = write(pipe, bytes.data(), bytes.size());
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) _exit(EXIT_FAILURE);  // nobody is left to report to
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

// An exception that the work lets out ends the process, as a crash does.
[[noreturn]] void BeWorker(const Work& work, int pipe, pid_t parent) noexcept {
  Interruption::LetIn();
  prctl(PR_SET_PDEATHSIG, Interruption::kParentDied);
  if (getppid() != parent) _exit(EXIT_FAILURE);  // it died before it could be tied to this process
  // Never returns: objects that this process has from its parent, such as temporary files, are the parent's.
  try {
    const std::string result = work([pipe](const std::string& announced) {
      Interruption::GoOnToTheEnd();
      const std::size_t size = announced.size();
      std::string message(1, kCommitting);
      message.append(reinterpret_cast<const char*>(&size), sizeof size).append(announced);
      Send(pipe, message);
    });
    FlushAll();
    Send(pipe, {&kResult, 1});
    Send(pipe, result);
    _exit(EXIT_SUCCESS);
  } catch (const Interrupted&) {
    FlushAll();
    _exit(kStoppedOnRequest);
  } catch (const std::bad_alloc&) {
    _exit(kOutOfMemory);
  }
}

WorkerEnd NotStarted(std::string_view what) {
  WorkerEnd end;
  end.kind = WorkerEnd::Kind::kNotStarted;
  end.cause = fmt::format("{} ({})", what, std::strerror(errno));
  return end;
}

class Supervisor {
 public:
  Supervisor(pid_t worker, int pipe) : worker_(worker), pipe_(pipe) {}
  // An exception may come before the end of the worker, which has nobody to report to then.
  ~Supervisor() {
    if (!reaped_) kill(worker_, SIGTERM);
    StopListening();
    Reap();
  }
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;

  WorkerEnd Wait(std::optional<std::chrono::duration<double>> timeout) {
    if (timeout) deadline_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(*timeout);
    while (!atEnd_) {
      WaitForNews();
      Receive();
      if (atEnd_) break;
      if (Interruption::Requested() && !asked_) Ask(WorkerEnd::Kind::kInterrupted);
      if (!committing_ && deadline_ && Clock::now() >= *deadline_) {
        if (asked_) {
          KillUnlessCommitting();
        } else {
          Ask(WorkerEnd::Kind::kTimedOut);
        }
      }
    }
    StopListening();
    Reap();
    return End();
  }

 private:
  // A worker that has more to say ends, rather than to wait for being heard.
  void StopListening() {
    if (pipe_ >= 0) close(pipe_);
    pipe_ = -1;
  }

  void Reap() {
    while (!reaped_ && waitpid(worker_, &status_, 0) < 0 && errno == EINTR) {
    }
    reaped_ = true;
  }

  void WaitForNews() const {
    timespec wait{};
    if (deadline_ && !committing_) {
      const auto left = std::max(Clock::duration::zero(), *deadline_ - Clock::now());
      const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
      wait.tv_sec = seconds.count();
      wait.tv_nsec = std::chrono::nanoseconds(left - seconds).count();
    }
    pollfd news{pipe_, POLLIN, 0};
    ppoll(&news, 1, deadline_ && !committing_ ? &wait : nullptr, &Interruption::WhileWaiting());
  }

  void Receive() {
    std::array<char, 4096> block{};
    for (;;) {
      const ssize_t got = read(pipe_, block.data(), block.size());
      if (got < 0 && errno == EINTR) continue;
      if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
      if (got <= 0) {
        atEnd_ = true;
        break;
      }
      received_.append(block.data(), static_cast<std::size_t>(got));
    }
    committing_ = committing_ || received_.starts_with(kCommitting);
  }

  void Ask(WorkerEnd::Kind why) {
    asked_ = why;
    deadline_ = Clock::now() + kGrace;
    kill(worker_, SIGTERM);
  }

  // Stopped first: what it has not announced by then, it has not begun.
  void KillUnlessCommitting() {
    deadline_.reset();
    kill(worker_, SIGSTOP);
    while (waitpid(worker_, &status_, WUNTRACED) < 0 && errno == EINTR) {
    }
    reaped_ = !WIFSTOPPED(status_);
    Receive();
    if (reaped_) return;
    kill(worker_, committing_ ? SIGCONT : SIGKILL);
  }

  // False when there is none, or not a whole one: then the commit was not begun.
  static bool TakeAnnounced(std::string_view& bytes, std::string& announced) {
    std::size_t size = 0;
    constexpr std::size_t kHead = 1 + sizeof size;
    if (!bytes.starts_with(kCommitting) || bytes.size() < kHead) return false;
    std::memcpy(&size, bytes.data() + 1, sizeof size);
    if (bytes.size() - kHead < size) return false;
    announced = bytes.substr(kHead, size);
    bytes.remove_prefix(kHead + size);
    return true;
  }

  [[nodiscard]] WorkerEnd End() {
    std::string_view result = received_;
    WorkerEnd end;
    end.committing = TakeAnnounced(result, end.announced);
    end.process = worker_;
    if (WIFEXITED(status_) && WEXITSTATUS(status_) == EXIT_SUCCESS && result.starts_with(kResult)) {
      end.kind = WorkerEnd::Kind::kFinished;
      end.result = result.substr(1);
    } else if (asked_) {
      end.kind = *asked_;
    } else if (WIFEXITED(status_) && WEXITSTATUS(status_) == kOutOfMemory) {
      end.kind = WorkerEnd::Kind::kOutOfMemory;
    } else if (WIFEXITED(status_) && WEXITSTATUS(status_) == kStoppedOnRequest) {
      end.kind = WorkerEnd::Kind::kInterrupted;  // a signal from the terminal reaches both processes
    } else if (WIFSIGNALED(status_)) {
      end.cause = fmt::format("signal {}, {}", WTERMSIG(status_), strsignal(WTERMSIG(status_)));
    } else {
      end.cause = fmt::format("exit status {}", WEXITSTATUS(status_));
    }
    return end;
  }

  pid_t worker_;
  int pipe_;
  std::optional<Clock::time_point> deadline_;
  std::optional<WorkerEnd::Kind> asked_;  // why the worker was asked to stop
  std::string received_;
  bool committing_ = false;
  bool atEnd_ = false;
  bool reaped_ = false;
  int status_ = 0;
};

}  // namespace

WorkerEnd RunInWorker(const Work& work, std::optional<std::chrono::duration<double>> timeout) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return NotStarted("a pipe cannot be made");
  FlushAll();  // or the worker would write what is still in the buffers a second time
  const pid_t self = getpid();
  const pid_t worker = fork();
  if (worker < 0) {
    WorkerEnd end = NotStarted("a worker process cannot be started");
    close(ends[0]);
    close(ends[1]);
    return end;
  }
  if (worker == 0) {
    close(ends[0]);
    BeWorker(work, ends[1], self);
  }
  close(ends[1]);
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return Supervisor(worker, ends[0]).Wait(timeout);
}

}  // namespace tool
