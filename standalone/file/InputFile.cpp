#include "file/InputFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "file/DocumentError.h"

namespace standalone {
namespace {

DocumentError Unreadable(const std::string& name, int cause) {
  return {DocumentError::Kind::kUnreadable, name, 0, fmt::format("cannot be read ({})", std::strerror(cause)),
          "Check that it is a file and that its disk is sound"};
}

}  // namespace

InputFile::InputFile(std::string name, bool isDigested)
    : name_(std::move(name)), descriptor_(open(name_.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) {
    throw DocumentError(DocumentError::Kind::kUnreadable, name_, 0,
                        fmt::format("cannot be opened ({})", std::strerror(errno)),
                        "Check the path and the permissions");
  }
  try {
    errno = 0;
    identity_ = FileIdentity::Of(descriptor_);
    // Or it would be taken for a pipe, which nobody changes meanwhile.
    if (!identity_ && errno != 0) throw Unreadable(name_, errno);
    if (isDigested) sum_.emplace();
    startSize_ = ReadOn(start_);
  } catch (...) {
    close(descriptor_);
    throw;
  }
}

InputFile::~InputFile() {
  close(descriptor_);
}

// Another name, owner or right changes nothing of what is read.
bool InputFile::WasWrittenTo() const {
  const auto now = identity_ ? FileIdentity::Of(descriptor_) : std::nullopt;
  return now && (now->size != identity_->size || now->modified != identity_->modified);
}

std::size_t InputFile::Read(std::span<char> to) {
  const std::size_t ahead = std::min(startSize_ - startGiven_, to.size());
  std::copy_n(start_.data() + startGiven_, ahead, to.data());
  startGiven_ += ahead;
  return ahead + ReadOn(to.subspan(ahead));
}

std::size_t InputFile::ReadOn(std::span<char> to) {
  std::size_t filled = 0;
  while (filled < to.size()) {
    const ssize_t got = read(descriptor_, to.data() + filled, to.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw Unreadable(name_, errno);
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  bytesRead_ += filled;
  if (sum_) sum_->Add({to.data(), filled});
  return filled;
}

std::size_t InputFile::BytesTotal() const {
  return identity_ ? static_cast<std::size_t>(identity_->size) : 0;
}

FileDigest InputFile::Digest() {
  return {.bytes = bytesRead_,
          .modified = identity_ ? identity_->modified : 0,
          .sha256 = sum_ ? sum_->Take() : Sha256Sum{}};
}

}  // namespace standalone
