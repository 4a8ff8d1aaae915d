#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "file/InputFile.h"
#include "file/Unpacker.h"

namespace standalone {

struct ReadOptions;

/// The text of a file that is stored plain or compressed, as a stream: neither the file nor its text is ever
/// whole in memory. Everything throws `DocumentError`: `kUnreadable` when the file cannot be read, `kInvalid`
/// when it is damaged or unpacks to more than it may.
class StoredText {
 public:
  /// The options must outlive it.
  StoredText(std::string file, const ReadOptions& options);

  /// Gives how many bytes it put into `to`; fewer than there is room for only at the end of the text.
  [[nodiscard]] std::size_t Read(std::span<char> to);

  /// Reads a compressed file to its end, to see whether it is damaged. A fault of its text is no fault of
  /// who wrote the text then.
  void RefuseDamaged();

  [[nodiscard]] InputFile& File() { return file_; }
  [[nodiscard]] const InputFile& File() const { return file_; }
  /// How many bytes the text has, or is likely to have; 0 when the file does not tell.
  [[nodiscard]] std::size_t LikelyBytes() const;

 private:
  [[nodiscard]] std::size_t ReadUnpacked(std::span<char> to);
  /// Gives how much it unpacked; 0 at the end only.
  [[nodiscard]] std::size_t UnpackSome(std::span<char> to);
  [[nodiscard]] bool IsBeyondLimit() const;
  [[noreturn]] void FailBeyondLimit() const;
  [[noreturn]] void Fail(std::string_view problem, std::string_view advice) const;

  InputFile file_;
  const ReadOptions& options_;
  std::unique_ptr<Unpacker> unpacker_;  // none for a plain file
  std::vector<char> buffer_;            // of packed bytes
  std::string_view packed_;             // of these, what is left
  std::uint64_t unpacked_ = 0;          // bytes
};

/// How many bytes of text a file of `bytes` is likely to hold.
[[nodiscard]] std::uint64_t LikelyTextBytes(Compression compression, std::uint64_t bytes);

}  // namespace standalone
