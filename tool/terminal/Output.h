#pragma once

#include <fmt/format.h>

#include "terminal/Terminal.h"

namespace tool {

/// Standard output in the making, written as it grows.
class Output {
 public:
  Output() = default;
  ~Output() { Flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  [[nodiscard]] fmt::memory_buffer& Buffer() { return buffer_; }
  /// To be called between pieces.
  void FlushIfLarge() {
    constexpr std::size_t kFlushBytes = std::size_t{1} << 16;
    if (buffer_.size() >= kFlushBytes) Flush();
  }

 private:
  void Flush() {
    Say({buffer_.data(), buffer_.size()});
    buffer_.clear();
  }

  fmt::memory_buffer buffer_;
};

}  // namespace tool
