#include "file/FileIdentity.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <fstream>

namespace standalone {
namespace {

std::int64_t Nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::optional<FileIdentity> IdentityIn(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity{.device = status.st_dev,
                      .inode = status.st_ino,
                      .size = status.st_size,
                      .modified = Nanoseconds(status.st_mtim),
                      .changed = Nanoseconds(status.st_ctim)};
}

}  // namespace

std::optional<FileIdentity> FileIdentity::Of(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  return IdentityIn(status);
}

std::optional<FileIdentity> FileIdentity::Of(const std::filesystem::path& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return IdentityIn(status);
}

bool HaveSameBytes(const std::filesystem::path& left, const std::filesystem::path& right) {
  const auto one = FileIdentity::Of(left);
  const auto other = FileIdentity::Of(right);
  if (!one || !other || one->size != other->size) return false;
  if (one->IsSameFile(*other)) return true;
  std::ifstream leftBytes(left, std::ios::binary);
  std::ifstream rightBytes(right, std::ios::binary);
  std::array<char, std::size_t{1} << 16> leftBlock{};
  std::array<char, std::size_t{1} << 16> rightBlock{};
  off_t compared = 0;
  while (leftBytes && rightBytes) {
    leftBytes.read(leftBlock.data(), leftBlock.size());
    rightBytes.read(rightBlock.data(), rightBlock.size());
    const std::streamsize got = leftBytes.gcount();
    if (got != rightBytes.gcount()) return false;
    if (!std::equal(leftBlock.begin(), leftBlock.begin() + got, rightBlock.begin())) return false;
    compared += got;
  }
  return compared == one->size && !leftBytes.bad() && !rightBytes.bad();
}

}  // namespace standalone
