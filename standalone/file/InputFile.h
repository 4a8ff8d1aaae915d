#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "file/Compression.h"
#include "file/FileDigest.h"
#include "file/FileIdentity.h"

namespace standalone {

/// A file that is read once, from its beginning to its end, as it is stored.
class InputFile {
 public:
  /// Throws `DocumentError` (`kUnreadable`) when the file cannot be opened or read. With `isDigested`, its
  /// digest is made on the way.
  InputFile(std::string name, bool isDigested);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  [[nodiscard]] const std::string& Name() const { return name_; }
  /// Which file is read, in the state in which it was opened; none where it is no regular file.
  [[nodiscard]] const std::optional<FileIdentity>& Identity() const { return identity_; }
  /// Whether another program has written to it since.
  [[nodiscard]] bool WasWrittenTo() const;
  [[nodiscard]] Compression Stored() const { return CompressionOf({start_.data(), startSize_}); }

  /// Gives how many bytes it put into `to`; fewer than there is room for only at the end of the file. Throws
  /// as the constructor does.
  [[nodiscard]] std::size_t Read(std::span<char> to);

  [[nodiscard]] std::size_t BytesRead() const { return bytesRead_; }
  /// 0 when the file does not tell.
  [[nodiscard]] std::size_t BytesTotal() const;
  /// Of what was read, where it was wanted.
  [[nodiscard]] FileDigest Digest();

 private:
  [[nodiscard]] std::size_t ReadOn(std::span<char> to);

  std::string name_;
  int descriptor_;
  std::optional<FileIdentity> identity_;
  std::array<char, kCompressionBytes> start_{};
  std::size_t startSize_ = 0;
  std::size_t startGiven_ = 0;
  std::size_t bytesRead_ = 0;
  std::optional<Sha256> sum_;
};

}  // namespace standalone
