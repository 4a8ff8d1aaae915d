#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "file/FileIdentity.h"

namespace standalone {

/// A text file, read as blocks of whole lines.
class LineBlocks {
 public:
  /// Throws `DocumentError` when `file` cannot be opened. `blockBytes` is read at a time; a line longer than
  /// `maxLineBytes` is refused.
  LineBlocks(std::string file, std::size_t blockBytes, std::size_t maxLineBytes);
  ~LineBlocks();
  LineBlocks(const LineBlocks&) = delete;
  LineBlocks& operator=(const LineBlocks&) = delete;

  /// Goes on to the next block; false after the last. Throws `DocumentError` when reading fails; the line
  /// that it tells is the one where the block would begin, `line`, which the caller has counted.
  bool Next(std::size_t line);

  /// The current block, ended by a line end or by the file's. The parser may read (not write) a little beyond
  /// it.
  [[nodiscard]] std::string_view Block() const { return {buffer_.data(), blockSize_}; }
  /// Of at least the block's size and the same for most blocks, since the parser makes its memory anew
  /// whenever it changes.
  [[nodiscard]] std::size_t ParserCapacity() const { return std::bit_ceil(buffer_.size()); }

  /// Which file is read, in the state in which it was opened; none where it is no regular file.
  [[nodiscard]] const std::optional<FileIdentity>& Identity() const { return identity_; }
  [[nodiscard]] std::size_t BytesRead() const { return bytesRead_; }
  [[nodiscard]] std::size_t BytesTotal() const { return bytesTotal_; }  ///< 0 when the file does not tell.

 private:
  void Fill(std::size_t wanted);

  std::string file_;
  std::size_t blockBytes_;
  std::size_t maxLineBytes_;
  int descriptor_;
  std::vector<char> buffer_;
  std::size_t filled_ = 0;     // bytes in the buffer
  std::size_t blockSize_ = 0;  // of these, the current block's
  bool atEnd_ = false;
  std::size_t bytesRead_ = 0;
  std::size_t bytesTotal_ = 0;
  std::optional<FileIdentity> identity_;
};

}  // namespace standalone
