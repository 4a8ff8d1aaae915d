#include "session/CatalogFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

namespace standalone {
namespace {

// Closes its descriptor.
struct Descriptor {
  ~Descriptor() { close(number); }
  int number;
};

[[noreturn]] void Fail(const std::filesystem::path& file) {
  const int cause = errno;
  throw std::runtime_error(
      fmt::format("{}: the catalog cannot be read ({}). {}", file.string(), std::strerror(cause),
                  cause == ENOENT ? "Reinstall the program, or name the right data folder (--data)"
                                  : "Check its permissions and that its disk is sound, or try again"));
}

}  // namespace

simdjson::padded_string ReadCatalog(const std::filesystem::path& file) {
  const Descriptor descriptor{open(file.c_str(), O_RDONLY | O_CLOEXEC)};
  if (descriptor.number < 0) Fail(file);
  std::string text;
  std::array<char, std::size_t{1} << 14> block{};
  for (;;) {
    const ssize_t got = read(descriptor.number, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(file);
    if (got == 0) break;
    text.append(block.data(), static_cast<std::size_t>(got));
  }
  simdjson::padded_string padded(text);
  if (padded.data() == nullptr) throw std::bad_alloc();
  return padded;
}

}  // namespace standalone
