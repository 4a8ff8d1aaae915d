#include "archive/WorkerProcess.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>

#include "terminal/Interruption.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::size_t kHeadBytes = 1 + sizeof(std::uint64_t);
// How much more memory than at its beginning a worker may hold between two documents: names, what plug-ins
// keep, and what a large document leaves in pieces.
constexpr std::size_t kMostGrowth = std::size_t{48} << 20U;

// Ends the worker; but what is at work, such as a temporary file, goes first.
struct NobodyToReportTo {};

void FlushAll() {
  FlushOutput();
  std::cout.flush();
  std::fflush(nullptr);
}

// Memory that is this process's alone.
std::size_t OwnMemory() {
  std::FILE* const file = std::fopen("/proc/self/statm", "re");
  if (file == nullptr) return 0;
  unsigned long all = 0;
  unsigned long resident = 0;
  unsigned long shared = 0;
  const bool isRead = std::fscanf(file, "%lu %lu %lu", &all, &resident, &shared) == 3;
  std::fclose(file);
  return isRead ? (resident - shared) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) : 0;
}

void Send(int socket, char kind, std::string_view content) {
  const std::uint64_t size = content.size();
  std::string message(1, kind);
  message.append(reinterpret_cast<const char*>(&size), sizeof size).append(content);
  for (std::string_view bytes = message; !bytes.empty();) {
    const ssize_t sent = write(socket, bytes.data(), bytes.size());
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) throw NobodyToReportTo();
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

// False when there is nothing to come any more.
bool Receive(int socket, void* bytes, std::size_t size, bool mayStop) {
  for (std::size_t got = 0; got < size;) {
    if (mayStop) Interruption::StopIfRequested();
    const ssize_t read = ::read(socket, static_cast<char*>(bytes) + got, size - got);
    if (read < 0 && errno == EINTR) continue;
    if (read <= 0) return false;
    got += static_cast<std::size_t>(read);
  }
  return true;
}

// A request to stop is the supervisor's business here: it answers, or ends this process.
void AwaitCommit(int socket) {
  char reply = 0;
  if (!Receive(socket, &reply, sizeof reply, false)) throw Interrupted();
  Interruption::GoOnToTheEnd();
}

void WorkOn(const Work& work, int socket) {
  const std::size_t before = OwnMemory();
  std::uint64_t document = 0;
  while (Receive(socket, &document, sizeof document, true)) {
    Send(socket, kBegunMessage, {});
    const std::string result = work(document, [socket](const std::string& ready) {
      Send(socket, kReadyMessage, ready);
      AwaitCommit(socket);
    });
    FlushAll();
    if (OwnMemory() > before + kMostGrowth) malloc_trim(0);
    const bool hasGrown = OwnMemory() > before + kMostGrowth;
    Send(socket, hasGrown ? kLastResultMessage : kResultMessage, result);
    if (hasGrown) return;
    Interruption::CutOffAgain();
  }
}

}  // namespace

bool TakeMessage(std::string& received, char& kind, std::string& bytes) {
  if (received.size() < kHeadBytes) return false;
  std::uint64_t size = 0;
  std::memcpy(&size, received.data() + 1, sizeof size);
  if (received.size() - kHeadBytes < size) return false;
  kind = received.front();
  bytes = received.substr(kHeadBytes, size);
  received.erase(0, kHeadBytes + size);
  return true;
}

void BeWorker(const Work& work, int socket, pid_t parent) noexcept {
  Interruption::LetIn();
  prctl(PR_SET_PDEATHSIG, Interruption::kParentDied);
  if (getppid() != parent) _exit(EXIT_FAILURE);  // it died before it could be tied to this process
  // Never returns: objects that this process has from its parent, such as temporary files, are the parent's.
  try {
    WorkOn(work, socket);
    _exit(EXIT_SUCCESS);
  } catch (const Interrupted&) {
    FlushAll();
    _exit(kStoppedOnRequestStatus);
  } catch (const std::bad_alloc&) {
    _exit(kOutOfMemoryStatus);
  } catch (const NobodyToReportTo&) {
    _exit(EXIT_FAILURE);
  }
}

}  // namespace tool
