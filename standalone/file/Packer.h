#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "file/Compression.h"

namespace standalone {

/// Compresses a text, piece by piece. The same pieces give the same bytes, whenever and wherever they are
/// packed with one release of the libraries.
class Packer {
 public:
  using Sink = std::function<void(std::string_view packed)>;

  /// Hands what it makes to `sink`, and lets out what that throws. Throws `std::bad_alloc`.
  [[nodiscard]] static std::unique_ptr<Packer> Make(Compression compression, Sink sink);
  virtual ~Packer() = default;

  /// Throws `std::bad_alloc`.
  virtual void Add(std::string_view text) = 0;
  /// Packs what is left; nothing may be added then.
  virtual void Finish() = 0;
};

}  // namespace standalone
