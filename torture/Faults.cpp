#include "Faults.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace torture {
namespace {

struct Plan {
  bool worker = false;
  int call = -1;
  std::uint64_t number = 0;
  int error = 0;
  int signal = 0;
  bool isShort = false;
  bool forever = false;
};

constexpr const char* kNames[] = {
#define HVX_NAME(name) #name,
    HVX_TORTURED_CALLS(HVX_NAME)
#undef HVX_NAME
};

// The program has one thread, so nothing here needs a lock. All of it must do without memory, and without
// constructors, since the first calls come before those are run.
bool begun;
bool inside;  // calls that this library makes itself are none of the program's
bool isWorker;
State* state;
State stateOfOneProcess;  // where no memory can be shared
Plan plan;
int trace = -1;

// The system, past all functions that this library replaces.
int Open(const char* file, int flags) {
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, file, flags, 0600));
}

void ShareState(const char* file) {
  int descriptor = -1;
  if (file != nullptr) {
    descriptor = Open(file, O_RDWR | O_CREAT | O_CLOEXEC);
    if (syscall(SYS_ftruncate, descriptor, sizeof(State)) != 0) abort();
  }
  const int flags = MAP_SHARED | (descriptor < 0 ? MAP_ANONYMOUS : 0);
  const long mapped = syscall(SYS_mmap, nullptr, sizeof(State), PROT_READ | PROT_WRITE, flags, descriptor, 0);
  state = mapped < 0 && mapped > -4096 ? &stateOfOneProcess : reinterpret_cast<State*>(mapped);
  if (descriptor >= 0) syscall(SYS_close, descriptor);
  state->rows = static_cast<std::uint64_t>(Call::kCount);
  for (int i = 0; i < static_cast<int>(Call::kCount); ++i) std::strcpy(state->row[i].name, kNames[i]);
}

// Whether the text begins with the word; moves behind it and a colon.
bool Take(const char*& text, const char* word) {
  const std::size_t size = std::strlen(word);
  if (std::strncmp(text, word, size) != 0) return false;
  if (text[size] != ':' && text[size] != '\0') return false;
  text += size + (text[size] == ':' ? 1 : 0);
  return true;
}

unsigned long TakeNumber(const char*& text) {
  char* end = nullptr;
  const unsigned long number = std::strtoul(text, &end, 10);
  text = *end == ':' ? end + 1 : end;
  return number;
}

void ReadPlan(const char* text) {
  plan.worker = Take(text, "worker");
  if (!plan.worker && !Take(text, "program")) abort();
  for (int i = 0; i < static_cast<int>(Call::kCount) && plan.call < 0; ++i) {
    if (Take(text, kNames[i])) plan.call = i;
  }
  if (plan.call < 0) abort();
  plan.number = TakeNumber(text);
  if (Take(text, "short")) {
    plan.isShort = true;
  } else if (std::strncmp(text, "signal", 6) == 0) {
    text += 6;
    plan.signal = static_cast<int>(TakeNumber(text));
  } else {
    plan.error = static_cast<int>(TakeNumber(text));
  }
  plan.forever = Take(text, "forever");
}

void OpenTrace(const char* file) {
  trace = Open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC);
  void* warmUp[1];  // the first one loads what it needs
  backtrace(warmUp, 1);
}

void Begin() {
  begun = true;
  inside = true;
  ShareState(std::getenv("HVX_TORTURE_STATE"));
  if (const char* const text = std::getenv("HVX_TORTURE")) ReadPlan(text);
  inside = false;
}

// Not with the first call, for what traces need may not be there yet.
__attribute__((constructor)) void BeginTrace() {
  inside = true;
  if (const char* const file = std::getenv("HVX_TORTURE_TRACE")) OpenTrace(file);
  inside = false;
}

void WriteTrace() {
  void* frames[48];
  inside = true;
  backtrace_symbols_fd(frames, backtrace(frames, 48), trace);
  static_cast<void>(syscall(SYS_write, trace, "\n", 1));
  inside = false;
}

}  // namespace

Fault Meet(Call call) {
  if (inside) return Fault::kNone;
  const int before = errno;
  if (!begun) Begin();
  Row& row = state->row[static_cast<int>(call)];
  const std::uint64_t number = __atomic_add_fetch(isWorker ? &row.worker : &row.program, 1, __ATOMIC_RELAXED);
  errno = before;
  if (static_cast<int>(call) != plan.call || plan.worker != isWorker) return Fault::kNone;
  if (plan.forever ? number < plan.number : number != plan.number) return Fault::kNone;
  __atomic_add_fetch(&state->faults, 1, __ATOMIC_RELAXED);
  if (trace >= 0) WriteTrace();
  errno = before;
  if (plan.signal != 0) {
    syscall(SYS_kill, syscall(SYS_getpid), plan.signal);
    errno = before;
    return Fault::kNone;
  }
  if (plan.isShort) return Fault::kShort;
  errno = plan.error;
  return Fault::kError;
}

Fault MeetMoving(Call call, int file) {
  const Fault fault = Meet(call);
  const bool isOfDisks = errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO;
  struct stat status {};
  if (fault != Fault::kError || !isOfDisks) return fault;
  const int cause = errno;
  const bool isKnown = syscall(SYS_fstat, file, &status) == 0;
  errno = cause;
  return isKnown && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)) ? Fault::kNone : fault;
}

void* Real(const char* name) {
  const bool before = inside;
  inside = true;
  void* const found = dlsym(RTLD_NEXT, name);
  inside = before;
  return found;
}

void BecomeWorker() {
  isWorker = true;
}

}  // namespace torture
