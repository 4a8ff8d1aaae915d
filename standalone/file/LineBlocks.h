#pragma once

#include <bit>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "file/StoredText.h"

namespace standalone {

/// The text of a file, read as blocks of whole lines.
class LineBlocks {
 public:
  /// Throws `DocumentError` when `file` cannot be opened. The options, which tell how much is read at a time,
  /// and which lines are too long, must outlive it.
  LineBlocks(std::string file, const ReadOptions& options);

  /// Goes on to the next block; false after the last. Throws `DocumentError` when reading fails; the line
  /// that it tells is the one where the block would begin, `line`, which the caller has counted.
  bool Next(std::size_t line);

  /// The current block, ended by a line end or by the file's. The parser may read (not write) a little beyond
  /// it.
  [[nodiscard]] std::string_view Block() const { return {buffer_.data(), blockSize_}; }
  /// Of at least the block's size and the same for most blocks, since the parser makes its memory anew
  /// whenever it changes.
  [[nodiscard]] std::size_t ParserCapacity() const { return std::bit_ceil(buffer_.size()); }

  [[nodiscard]] StoredText& Text() { return text_; }

 private:
  void Fill(std::size_t wanted);

  StoredText text_;
  const ReadOptions& options_;
  std::vector<char> buffer_;
  std::size_t filled_ = 0;     // bytes in the buffer
  std::size_t blockSize_ = 0;  // of these, the current block's
  bool atEnd_ = false;
};

}  // namespace standalone
