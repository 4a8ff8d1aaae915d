#pragma once

#include <cstdint>

/// \file
/// Which call of the program fails, and how. The program is asked nothing: this stands before the C library
/// (LD_PRELOAD). `HVX_TORTURE` says what is to fail:
///
///     ROLE:CALL:NUMBER:FAULT[:forever]      worker:write:3:28, program:alloc:120:12:forever
///
/// ROLE is `program` or `worker`, a process that the program forked. NUMBER counts the calls of that name in
/// that role, from 1. FAULT is an error number, `short` for a read or write that moves only half, or `signal`
/// and a number (`signal9`), which the process gets right before the call. Without the variable calls are
/// counted only. `HVX_TORTURE_STATE` names a file for the counts (`State`), `HVX_TORTURE_TRACE` one for the
/// functions that stood above the call that failed.

/// Every name that can be given. What is one operation under several names has one.
// clang-format off
#define HVX_TORTURED_CALLS(X)                                                                             \
  X(access) X(alloc) X(close) X(closedir) X(dlopen) X(fchmod) X(fchown) X(fclose) X(fcntl) X(fdatasync)   \
  X(fdopendir) X(fflush) X(flock) X(fopen) X(fork) X(fread) X(fremovexattr) X(fsetxattr) X(fstat)         \
  X(fsync) X(ftruncate) X(futimens) X(fwrite) X(getcwd) X(getentropy) X(gethostname) X(getline) X(getrlimit)         \
  X(getxattr) X(isatty) X(kill) X(link) X(listxattr) X(lseek) X(lstat) X(mkdir) X(mkostemp) X(mmap)       \
  X(open) X(openat) X(opendir) X(pathconf) X(pipe2) X(poll) X(ppoll) X(prctl) X(pread) X(pwrite) X(read)  \
  X(readdir) X(readlink) X(realpath) X(recv) X(remove) X(rename) X(renameat2) X(rmdir) X(send)            \
  X(sendfile) X(setrlimit) X(setvbuf) X(shutdown) X(sigaction) X(sigprocmask) X(socketpair) X(stat)       \
  X(statvfs) X(symlink) X(sysconf) X(unlink) X(unlinkat) X(utimensat) X(waitpid) X(write) X(writev)
// clang-format on

namespace torture {

enum class Call {
#define HVX_NUMBER(name) k_##name,
  HVX_TORTURED_CALLS(HVX_NUMBER)
#undef HVX_NUMBER
      kCount
};

/// How many calls there were; what the file of the state holds, shared by all processes of a run.
struct Row {
  char name[24];
  std::uint64_t program;
  std::uint64_t worker;
};
struct State {
  std::uint64_t faults;  // that there were
  std::uint64_t rows;
  Row row[static_cast<int>(Call::kCount)];
};

enum class Fault { kNone, kError, kShort };

/// Counts the call, and tells what is to become of it. With `kError`, errno is set. A signal that is due has
/// been sent on return.
Fault Meet(Call call);

/// The same for a call that moves bytes to or from `file`: a pipe or socket has no disk that could be full or
/// broken.
Fault MeetMoving(Call call, int file);

/// Whether the call is to fail; for those that nothing shortens.
inline bool Fails(Call call) {
  return Meet(call) == Fault::kError;
}

/// The function of that name behind this library.
void* Real(const char* name);

/// From now on this process is a worker.
void BecomeWorker();

}  // namespace torture
