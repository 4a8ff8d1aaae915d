// The calls of the system that the program, its libraries and the C++ library make. None of the headers that
// declare them is included: they say more about these functions (what they throw, what is inlined) than a
// replacement can keep. What is only passed on is an untyped pointer.
#include <sys/types.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>

#include "Faults.h"

using torture::Call;
using torture::Fails;
using torture::Fault;
using torture::Meet;
using torture::Real;

// Defines the function `name`, which gives `failure` when it is to fail.
#define HVX_FAILING_AS(call, result, name, parameters, arguments, failure)         \
  extern "C" result name parameters {                                              \
    static auto* const real = reinterpret_cast<result(*) parameters>(Real(#name)); \
    if (Fails(Call::k_##call)) return failure;                                     \
    return real arguments;                                                         \
  }
#define HVX_FAILING(result, name, parameters, arguments, failure) \
  HVX_FAILING_AS(name, result, name, parameters, arguments, failure)

// Files by name.
HVX_FAILING(int, access, (const char* file, int mode), (file, mode), -1)
HVX_FAILING(int, stat, (const char* file, void* out), (file, out), -1)
HVX_FAILING_AS(stat, int, stat64, (const char* file, void* out), (file, out), -1)
HVX_FAILING(int, lstat, (const char* file, void* out), (file, out), -1)
HVX_FAILING_AS(lstat, int, lstat64, (const char* file, void* out), (file, out), -1)
HVX_FAILING_AS(stat, int, fstatat, (int folder, const char* file, void* out, int flags),
               (folder, file, out, flags), -1)
HVX_FAILING_AS(stat, int, statx, (int folder, const char* file, int flags, unsigned mask, void* out),
               (folder, file, flags, mask, out), -1)
HVX_FAILING(int, statvfs, (const char* file, void* out), (file, out), -1)
HVX_FAILING(int, link, (const char* from, const char* to), (from, to), -1)
HVX_FAILING(int, symlink, (const char* from, const char* to), (from, to), -1)
HVX_FAILING(int, unlink, (const char* file), (file), -1)
HVX_FAILING(int, unlinkat, (int folder, const char* file, int flags), (folder, file, flags), -1)
HVX_FAILING(int, remove, (const char* file), (file), -1)
HVX_FAILING(int, rename, (const char* from, const char* to), (from, to), -1)
HVX_FAILING(int, renameat2, (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
            (fromFolder, from, toFolder, to, flags), -1)
HVX_FAILING(int, mkdir, (const char* folder, mode_t mode), (folder, mode), -1)
HVX_FAILING(int, rmdir, (const char* folder), (folder), -1)
HVX_FAILING(ssize_t, readlink, (const char* file, char* out, std::size_t size), (file, out, size), -1)
HVX_FAILING(char*, realpath, (const char* file, char* out), (file, out), nullptr)
HVX_FAILING(char*, getcwd, (char* out, std::size_t size), (out, size), nullptr)
HVX_FAILING(long, pathconf, (const char* file, int name), (file, name), -1)
HVX_FAILING(int, mkostemp, (char* name, int flags), (name, flags), -1)
HVX_FAILING(int, utimensat, (int folder, const char* file, const void* times, int flags),
            (folder, file, times, flags), -1)
HVX_FAILING(ssize_t, listxattr, (const char* file, char* out, std::size_t size), (file, out, size), -1)
HVX_FAILING(ssize_t, getxattr, (const char* file, const char* name, void* out, std::size_t size),
            (file, name, out, size), -1)

// Open files.
HVX_FAILING(int, fstat, (int file, void* out), (file, out), -1)
HVX_FAILING_AS(fstat, int, fstat64, (int file, void* out), (file, out), -1)
HVX_FAILING(int, fsync, (int file), (file), -1)
HVX_FAILING(int, fdatasync, (int file), (file), -1)
HVX_FAILING(int, fchmod, (int file, mode_t mode), (file, mode), -1)
HVX_FAILING(int, fchown, (int file, uid_t owner, gid_t group), (file, owner, group), -1)
HVX_FAILING(int, futimens, (int file, const void* times), (file, times), -1)
HVX_FAILING(int, ftruncate, (int file, off_t size), (file, size), -1)
HVX_FAILING_AS(ftruncate, int, ftruncate64, (int file, off_t size), (file, size), -1)
HVX_FAILING(off_t, lseek, (int file, off_t offset, int from), (file, offset, from), -1)
HVX_FAILING_AS(lseek, off_t, lseek64, (int file, off_t offset, int from), (file, offset, from), -1)
HVX_FAILING(int, fsetxattr, (int file, const char* name, const void* value, std::size_t size, int flags),
            (file, name, value, size, flags), -1)
HVX_FAILING(int, fremovexattr, (int file, const char* name), (file, name), -1)
HVX_FAILING(int, flock, (int file, int operation), (file, operation), -1)
HVX_FAILING(int, isatty, (int file), (file), 0)
HVX_FAILING(ssize_t, writev, (int file, const void* parts, int count), (file, parts, count), -1)
HVX_FAILING(ssize_t, sendfile, (int to, int from, off_t* at, std::size_t size), (to, from, at, size), -1)

// Folders.
HVX_FAILING(void*, opendir, (const char* folder), (folder), nullptr)
HVX_FAILING(void*, fdopendir, (int folder), (folder), nullptr)
HVX_FAILING(void*, readdir, (void* folder), (folder), nullptr)
HVX_FAILING_AS(readdir, void*, readdir64, (void* folder), (folder), nullptr)

// Processes.
HVX_FAILING(int, pipe2, (int* ends, int flags), (ends, flags), -1)
HVX_FAILING(int, socketpair, (int family, int type, int protocol, int* ends), (family, type, protocol, ends),
            -1)
HVX_FAILING(ssize_t, recv, (int socket, void* out, std::size_t size, int flags), (socket, out, size, flags),
            -1)
HVX_FAILING(ssize_t, send, (int socket, const void* bytes, std::size_t size, int flags),
            (socket, bytes, size, flags), -1)
HVX_FAILING(int, shutdown, (int socket, int how), (socket, how), -1)
HVX_FAILING(int, poll, (void* files, unsigned long count, int wait), (files, count, wait), -1)
HVX_FAILING(int, ppoll, (void* files, unsigned long count, const void* wait, const void* mask),
            (files, count, wait, mask), -1)
HVX_FAILING(pid_t, waitpid, (pid_t process, int* status, int options), (process, status, options), -1)
HVX_FAILING(int, kill, (pid_t process, int signal), (process, signal), -1)
HVX_FAILING(int, sigaction, (int signal, const void* fresh, void* old), (signal, fresh, old), -1)
HVX_FAILING(int, sigprocmask, (int how, const void* fresh, void* old), (how, fresh, old), -1)
HVX_FAILING(int, getrlimit, (int resource, void* out), (resource, out), -1)
HVX_FAILING(int, setrlimit, (int resource, const void* limit), (resource, limit), -1)
HVX_FAILING(int, gethostname, (char* out, std::size_t size), (out, size), -1)
HVX_FAILING(int, getentropy, (void* out, std::size_t size), (out, size), -1)
HVX_FAILING(long, sysconf, (int name), (name), -1)

constexpr auto kNoMemory = static_cast<std::size_t>(-1);  // what mmap gives when it fails
HVX_FAILING(void*, mmap, (void* at, std::size_t size, int access, int flags, int file, off_t from),
            (at, size, access, flags, file, from), reinterpret_cast<void*>(kNoMemory))

// What moves bytes may move some of them only.
#define HVX_MOVING(meet, name, parameters, arguments, size)                         \
  extern "C" ssize_t name parameters {                                              \
    static auto* const real = reinterpret_cast<ssize_t(*) parameters>(Real(#name)); \
    const Fault fault = meet;                                                       \
    if (fault == Fault::kError) return -1;                                          \
    if (fault == Fault::kShort) size = (size + 1) / 2;                              \
    return real arguments;                                                          \
  }
HVX_MOVING(MeetMoving(Call::k_read, file), read, (int file, void* out, std::size_t size), (file, out, size),
           size)
HVX_MOVING(MeetMoving(Call::k_write, file), write, (int file, const void* bytes, std::size_t size),
           (file, bytes, size), size)
HVX_MOVING(MeetMoving(Call::k_pread, file), pread, (int file, void* out, std::size_t size, off_t at),
           (file, out, size, at), size)
HVX_MOVING(Meet(Call::k_pwrite), pwrite, (int file, const void* bytes, std::size_t size, off_t at),
           (file, bytes, size, at), size)

extern "C" pid_t fork() {
  static auto* const real = reinterpret_cast<pid_t (*)()>(Real("fork"));
  if (Fails(Call::k_fork)) return -1;
  const pid_t process = real();
  if (process == 0) torture::BecomeWorker();
  return process;
}

// Closed all the same, as the system does it.
extern "C" int close(int file) {
  static auto* const real = reinterpret_cast<int (*)(int)>(Real("close"));
  const bool fails = Fails(Call::k_close);
  const int cause = errno;
  const int closed = real(file);
  if (!fails) return closed;
  errno = cause;
  return -1;
}

extern "C" int closedir(void* folder) {
  static auto* const real = reinterpret_cast<int (*)(void*)>(Real("closedir"));
  const bool fails = Fails(Call::k_closedir);
  const int cause = errno;
  const int closed = real(folder);
  if (!fails) return closed;
  errno = cause;
  return -1;
}

// A real failure, since the cause is asked for afterwards.
extern "C" void* dlopen(const char* file, int flags) {
  static auto* const real = reinterpret_cast<void* (*)(const char*, int)>(Real("dlopen"));
  return real(Fails(Call::k_dlopen) ? "/no such/library" : file, flags);
}

// The argument behind, which not all of these calls have.
#define HVX_LAST_ARGUMENT(type, value) \
  type value{};                        \
  {                                    \
    va_list list;                      \
    va_start(list, flags);             \
    value = va_arg(list, type);        \
    va_end(list);                      \
  }

extern "C" int open(const char* file, int flags, ...) {
  static auto* const real = reinterpret_cast<int (*)(const char*, int, ...)>(Real("open"));
  HVX_LAST_ARGUMENT(mode_t, mode)
  return Fails(Call::k_open) ? -1 : real(file, flags, mode);
}

extern "C" int open64(const char* file, int flags, ...) {
  HVX_LAST_ARGUMENT(mode_t, mode)
  return open(file, flags, mode);
}

extern "C" int openat(int folder, const char* file, int flags, ...) {
  static auto* const real = reinterpret_cast<int (*)(int, const char*, int, ...)>(Real("openat"));
  HVX_LAST_ARGUMENT(mode_t, mode)
  return Fails(Call::k_openat) ? -1 : real(folder, file, flags, mode);
}

extern "C" int fcntl(int file, int flags, ...) {
  static auto* const real = reinterpret_cast<int (*)(int, int, ...)>(Real("fcntl"));
  HVX_LAST_ARGUMENT(void*, argument)
  return Fails(Call::k_fcntl) ? -1 : real(file, flags, argument);
}

extern "C" int prctl(int flags, ...) {
  static auto* const real = reinterpret_cast<int (*)(int, ...)>(Real("prctl"));
  HVX_LAST_ARGUMENT(unsigned long, argument)
  return Fails(Call::k_prctl) ? -1 : real(flags, argument);
}
