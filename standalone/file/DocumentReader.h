#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "file/Compression.h"
#include "file/FileDigest.h"
#include "file/FileIdentity.h"
#include "model/Document.h"

namespace standalone {

struct ReadOptions {
  std::size_t blockBytes = std::size_t{1} << 18;    ///< How much is read at a time.
  std::size_t maxLineBytes = std::size_t{1} << 28;  ///< A longer line is refused.
  /// A compressed file that unpacks to more is refused. None for the default: 256 MiB, and a hundred bytes
  /// for each byte of the file.
  std::optional<std::uint64_t> maxUnpackedBytes;
  /// What to do then, as a sentence without its stop.
  std::string_view unpackedAdvice =
      "If you trust it, unpack it with gzip -d or zstd -d, and give the file that comes out";
  /// Where set, gets how the file is compressed, before `onHeader` is called.
  Compression* compression = nullptr;
  /// Where set, gets the digest of the file as it is stored, once all of it was read.
  FileDigest* digest = nullptr;
  /// Told, before any feature is read, what the header says, and which file is read in which state (none
  /// where it is no regular file). What it throws ends the reading.
  std::function<void(const Document& header, const std::optional<FileIdentity>& file)> onHeader;
  /// Told, now and then, how many bytes of the file were read and how many there are (0 when that is not
  /// known).
  std::function<void(std::size_t read, std::size_t total)> onProgress;
};

/// What a document tells in its first line.
struct DocumentHeader {
  DocumentPtr document;        ///< With the upgrades that it has been through, and no feature.
  std::uint64_t features = 0;  ///< How many it announces.
};

/// Reads the first line only, and no more of the file than it takes, in a time that does not depend on the
/// size of the document. Throws `DocumentError` as `ReadDocument` does, for faults of that line.
[[nodiscard]] DocumentHeader ReadHeader(const std::filesystem::path& file);

/// Reads the document that `file` holds, plain or compressed by gzip or zstd, whatever its name. Throws
/// `DocumentError` when it cannot be read whole and sound; the message names the file, the line and what to
/// do. Throws `ChangedMeanwhile` when another program wrote to the file while it was being read.
[[nodiscard]] DocumentPtr ReadDocument(const std::filesystem::path& file, const ReadOptions& options = {});

}  // namespace standalone
