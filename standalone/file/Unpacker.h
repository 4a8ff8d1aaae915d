#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "file/Compression.h"

namespace standalone {

/// Why compressed bytes cannot be unpacked.
struct NotUnpacked {
  std::string problem;
  std::string_view advice;
};

/// Unpacks one stream of compressed bytes, piece by piece. The stream may consist of several members (gzip)
/// or frames (zstd), one behind the other: what they hold is one text.
class Unpacker {
 public:
  struct Step {
    std::size_t taken = 0;  ///< Of the packed bytes.
    std::size_t made = 0;
  };

  /// `compression` is not `kNone`. Throws `std::bad_alloc`.
  [[nodiscard]] static std::unique_ptr<Unpacker> Make(Compression compression);
  virtual ~Unpacker() = default;

  /// Unpacks as much of `packed` as `to`, which is not empty, has room for. What is made may come from
  /// bytes taken earlier; `packed` is empty to ask for that. Throws `NotUnpacked` for damage and for what
  /// is no member, and `std::bad_alloc`.
  virtual Step Unpack(std::string_view packed, std::span<char> to) = 0;
  /// Whether the stream may end after what was taken: all members are whole.
  [[nodiscard]] virtual bool MayEnd() const = 0;
};

}  // namespace standalone
