#pragma once

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "archive/Outside.h"
#include "document/RequestCommit.h"

namespace tool {

/// The work on one document, in a worker process. Exceptions other than `Interrupted` and lack of memory end
/// the process, as a crash does.
using Work = std::function<std::string(std::size_t document, const RequestCommit& requestCommit)>;

/// The outside as it is: processes of this program, and the signals that it gets. There is one at a time, in
/// a single-threaded process, after `Interruption::HoldBack`.
///
/// A worker is a copy of this process, made when it is needed, so that it knows all that this one has loaded
/// and found. It lives through many documents, and goes when it has grown: what documents and plug-ins leave
/// behind in it goes along. It ends when this process does.
class Processes final : public Outside {
 public:
  struct Hooks {
    Work work;                      ///< In the worker; all others are called in this process.
    std::function<void()> prepare;  ///< Before a worker is made, which gets a copy of what this leaves.
    std::function<void(WorkerNumber worker)> onStart;
    std::function<void(WorkerNumber worker)> onForget;
    std::function<void(std::size_t document)> onGive;
    std::function<bool(std::size_t document, const WorkEnd& end)> close;  ///< See `Outside::Close`.
    std::function<void()> onTick;  ///< Now and then, while there is nothing else to do.
  };

  explicit Processes(Hooks hooks);
  /// Asks those that are left to stop, and waits for them.
  ~Processes() override;
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;

  Clock::time_point Now() override { return Clock::now(); }
  Event Wait(std::optional<Clock::time_point> until) override;
  std::optional<WorkerNumber> Start() override;
  void Give(WorkerNumber worker, std::size_t document) override;
  void Dismiss(WorkerNumber worker) override;
  void Ask(WorkerNumber worker) override;
  void Commit(WorkerNumber worker) override;
  void Kill(WorkerNumber worker) override;
  void Forget(WorkerNumber worker) override { hooks_.onForget(worker); }
  bool Close(std::size_t document, const WorkEnd& end) override { return hooks_.close(document, end); }

  /// The process that a worker is, or was.
  [[nodiscard]] static pid_t ProcessOf(WorkerNumber worker) {
    return static_cast<pid_t>(worker & kProcessBits);
  }
  /// Why the last `Start` gave none, or what became of the last worker that did no work.
  [[nodiscard]] const std::string& StartFailure() const { return startFailure_; }

 private:
  struct Worker {
    pid_t process;
    int socket;
    std::string received;
  };
  using Workers = std::map<WorkerNumber, Worker>;
  // A process number comes back in a long run.
  static constexpr std::uint64_t kProcessBits = 0xFFFFFFFF;

  // One that does not get it would wait for ever, and is killed.
  void Send(WorkerNumber number, const void* bytes, std::size_t size);
  void TakeSignals();
  void Poll(std::optional<Clock::time_point> until);
  void Receive(WorkerNumber number, Worker& worker);
  void TakeMessages(WorkerNumber number, Worker& worker);
  void Bury(Workers::iterator dead);

  Hooks hooks_;
  Workers workers_;
  std::uint64_t started_ = 0;
  std::deque<Event> news_;
  int interrupts_ = 0;  // of which the news told
  bool terminated_ = false;
  Clock::time_point nextTick_;
  std::string startFailure_;
};

}  // namespace tool
