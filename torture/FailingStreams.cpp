// The C library's streams, which call the system past everything that stands before it.
#include <sys/types.h>

#include <cerrno>
#include <cstddef>

#include "Faults.h"

using torture::Call;
using torture::Fails;
using torture::Real;

namespace {

// As a failure of the system is noted: a bit in the stream's flags, which stand first in it.
void NoteError(void* stream) {
  constexpr int kErrorSeen = 0x20;
  if (stream != nullptr) *static_cast<int*>(stream) |= kErrorSeen;
}

}  // namespace

extern "C" void* fopen(const char* file, const char* mode) {
  static auto* const real = reinterpret_cast<void* (*)(const char*, const char*)>(Real("fopen"));
  return Fails(Call::k_fopen) ? nullptr : real(file, mode);
}

extern "C" void* fopen64(const char* file, const char* mode) {
  return fopen(file, mode);
}

extern "C" std::size_t fread(void* out, std::size_t size, std::size_t count, void* stream) {
  using Function = std::size_t (*)(void*, std::size_t, std::size_t, void*);
  static auto* const real = reinterpret_cast<Function>(Real("fread"));
  if (!Fails(Call::k_fread)) return real(out, size, count, stream);
  NoteError(stream);
  return 0;
}

extern "C" std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, void* stream) {
  using Function = std::size_t (*)(const void*, std::size_t, std::size_t, void*);
  static auto* const real = reinterpret_cast<Function>(Real("fwrite"));
  if (!Fails(Call::k_fwrite)) return real(bytes, size, count, stream);
  NoteError(stream);
  return 0;
}

extern "C" int fflush(void* stream) {
  static auto* const real = reinterpret_cast<int (*)(void*)>(Real("fflush"));
  if (!Fails(Call::k_fflush)) return real(stream);
  NoteError(stream);
  return -1;
}

// What getline is, inlined.
extern "C" ssize_t __getdelim(char** line, std::size_t* size, int end, void* stream) {
  using Function = ssize_t (*)(char**, std::size_t*, int, void*);
  static auto* const real = reinterpret_cast<Function>(Real("__getdelim"));
  if (!Fails(Call::k_getline)) return real(line, size, end, stream);
  if (errno == EIO) NoteError(stream);
  return -1;
}

extern "C" ssize_t getline(char** line, std::size_t* size, void* stream) {
  return __getdelim(line, size, '\n', stream);
}

// Closed all the same.
extern "C" int fclose(void* stream) {
  static auto* const real = reinterpret_cast<int (*)(void*)>(Real("fclose"));
  const bool fails = Fails(Call::k_fclose);
  const int cause = errno;
  const int closed = real(stream);
  if (!fails) return closed;
  errno = cause;
  return -1;
}

extern "C" int setvbuf(void* stream, char* buffer, int mode, std::size_t size) {
  static auto* const real = reinterpret_cast<int (*)(void*, char*, int, std::size_t)>(Real("setvbuf"));
  return Fails(Call::k_setvbuf) ? -1 : real(stream, buffer, mode, size);
}
