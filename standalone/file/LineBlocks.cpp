#include "file/LineBlocks.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>

#include "file/DocumentError.h"
#include "file/DocumentReader.h"

namespace standalone {

LineBlocks::LineBlocks(std::string file, const ReadOptions& options)
    : text_(std::move(file), options), options_(options) {}

bool LineBlocks::Next(std::size_t line) {
  std::copy(buffer_.data() + blockSize_, buffer_.data() + filled_, buffer_.data());
  filled_ -= blockSize_;
  blockSize_ = 0;

  std::size_t searched = 0;
  while (blockSize_ == 0 && !atEnd_) {
    Fill(filled_ + options_.blockBytes);
    const std::string_view fresh(buffer_.data() + searched, filled_ - searched);
    if (const std::size_t end = fresh.rfind('\n'); end != std::string_view::npos)
      blockSize_ = searched + end + 1;
    searched = filled_;
    if (blockSize_ == 0 && filled_ > options_.maxLineBytes) {
      throw DocumentError(DocumentError::Kind::kInvalid, text_.File().Name(), line,
                          fmt::format("the line is longer than {} bytes", options_.maxLineBytes),
                          "Split what it holds over several features, or restore the file from a backup");
    }
  }
  if (atEnd_) blockSize_ = filled_;
  return blockSize_ != 0;
}

void LineBlocks::Fill(std::size_t wanted) {
  if (buffer_.size() < wanted + simdjson::SIMDJSON_PADDING)
    buffer_.resize(wanted + simdjson::SIMDJSON_PADDING);
  filled_ += text_.Read({buffer_.data() + filled_, wanted - filled_});
  atEnd_ = filled_ < wanted;
}

}  // namespace standalone
