#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sha256_ctx;

namespace standalone {

using Sha256Sum = std::array<std::uint8_t, 32>;

/// The content of a file as it is stored, compressed or not.
struct FileDigest {
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;  ///< As `FileIdentity` has it; 0 where it is no regular file.
  Sha256Sum sha256{};

  /// The sum in hexadecimal digits, as other programs print it.
  [[nodiscard]] std::string Sha256Text() const;
  friend bool operator==(const FileDigest&, const FileDigest&) = default;
};

/// A SHA-256 sum in the making.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void Add(std::string_view bytes);
  /// The sum of all that was added since the last one was taken.
  [[nodiscard]] Sha256Sum Take();

 private:
  std::unique_ptr<sha256_ctx> context_;
};

}  // namespace standalone
