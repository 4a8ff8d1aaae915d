#include "file/LineBlocks.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <simdjson.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "file/DocumentError.h"

namespace standalone {
namespace {

constexpr auto kUnreadable = DocumentError::Kind::kUnreadable;

}  // namespace

LineBlocks::LineBlocks(std::string file, std::size_t blockBytes, std::size_t maxLineBytes)
    : file_(std::move(file)),
      blockBytes_(blockBytes),
      maxLineBytes_(maxLineBytes),
      descriptor_(open(file_.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) {
    throw DocumentError(kUnreadable, file_, 0, fmt::format("cannot be opened ({})", std::strerror(errno)),
                        "Check the path and the permissions");
  }
  errno = 0;
  identity_ = FileIdentity::Of(descriptor_);
  if (!identity_ && errno != 0) {  // or it would be taken for a pipe, which nobody changes meanwhile
    const int cause = errno;
    close(descriptor_);
    throw DocumentError(kUnreadable, file_, 0, fmt::format("cannot be read ({})", std::strerror(cause)),
                        "Check that it is a file and that its disk is sound");
  }
  if (identity_) bytesTotal_ = static_cast<std::size_t>(identity_->size);
}

LineBlocks::~LineBlocks() {
  close(descriptor_);
}

bool LineBlocks::Next(std::size_t line) {
  std::copy(buffer_.data() + blockSize_, buffer_.data() + filled_, buffer_.data());
  filled_ -= blockSize_;
  blockSize_ = 0;

  std::size_t searched = 0;
  while (blockSize_ == 0 && !atEnd_) {
    Fill(filled_ + blockBytes_);
    const std::string_view fresh(buffer_.data() + searched, filled_ - searched);
    if (const std::size_t end = fresh.rfind('\n'); end != std::string_view::npos)
      blockSize_ = searched + end + 1;
    searched = filled_;
    if (blockSize_ == 0 && filled_ > maxLineBytes_) {
      throw DocumentError(DocumentError::Kind::kInvalid, file_, line,
                          fmt::format("the line is longer than {} bytes", maxLineBytes_),
                          "Split what it holds over several features, or restore the file from a backup");
    }
  }
  if (atEnd_) blockSize_ = filled_;
  return blockSize_ != 0;
}

void LineBlocks::Fill(std::size_t wanted) {
  if (buffer_.size() < wanted + simdjson::SIMDJSON_PADDING)
    buffer_.resize(wanted + simdjson::SIMDJSON_PADDING);
  while (filled_ < wanted) {
    const ssize_t got = read(descriptor_, buffer_.data() + filled_, wanted - filled_);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      throw DocumentError(kUnreadable, file_, 0, fmt::format("cannot be read ({})", std::strerror(errno)),
                          "Check that it is a file and that its disk is sound");
    }
    if (got == 0) {
      atEnd_ = true;
      return;
    }
    filled_ += static_cast<std::size_t>(got);
    bytesRead_ += static_cast<std::size_t>(got);
  }
}

}  // namespace standalone
