#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hvxupgrade/Document.h"
#include "hvxupgrade/Error.h"

namespace hvxupgrade {

struct ReadOptions {
  /// A compressed file that unpacks to more is refused. None for the default: 256 MiB, and a hundred bytes
  /// for each byte of the file.
  std::optional<std::uint64_t> maxUnpackedBytes = std::nullopt;
  /// Told, now and then, by the thread that reads, how many bytes of the file were read and how many there
  /// are (0 when that is not known). False ends the reading with `Error` (`kStopped`), and so does what it
  /// throws, which comes out as it is.
  std::function<bool(std::uint64_t read, std::uint64_t total)> onProgress = nullptr;
};

/// Reads the document that `file` holds, plain or compressed by gzip or zstd, whatever its name. Throws
/// `Error` when it cannot be read whole and sound: `kUnreadable`, `kInvalid`, `kNewer`, and `kChanged` when
/// another program wrote to the file meanwhile.
[[nodiscard]] HVXUPGRADE_API Document Read(const std::filesystem::path& file,
                                           const ReadOptions& options = {});

/// What a document tells in its first line.
struct Header {
  /// An upgrade that the document has been through.
  struct Recorded {
    std::string identifier;
    std::string library;  ///< The upgrade library that it came from; empty where the document does not say.
    std::string version;  ///< Of that library, then; empty likewise.
  };

  int version = 1;  ///< Of the format.
  std::vector<Recorded> upgrades;
  std::uint64_t features = 0;  ///< How many it announces.
};

/// Reads the first line only, in a time that does not depend on the size of the document. Throws `Error` as
/// `Read` does, for faults of that line.
[[nodiscard]] HVXUPGRADE_API Header ReadHeader(const std::filesystem::path& file);

/// One line of a document file, read by itself: links are ids.
struct FeatureLine {
  FeatureId id = 0;
  std::string lateType;
  std::string name;
  std::string alias;
  FeatureId father = Link::kNothing;
  FeatureId container = Link::kNothing;
  bool isUpToDate = true;
  std::string physicalType;
  struct Attribute {
    std::string key;
    Value value;
    std::int32_t mode = 0;
  };
  std::vector<Attribute> attributes;  ///< In their order.

  /// The value of the attribute of that name; null when the line has none.
  [[nodiscard]] HVXUPGRADE_API const Value* Find(std::string_view key) const;
};

/// Reads a document line by line, in memory that does not depend on its size: for documents that are too
/// large to be read whole, and for programs that need a few features of many documents. Of what `Read`
/// refuses, it notices what a line shows by itself, and at the end a wrong number of features; it does not
/// notice links without a target, ids that occur twice, and cycles. It belongs to one thread at a time; one
/// that was moved from can be destroyed and assigned to, and nothing else.
class HVXUPGRADE_API LineReader {
 public:
  /// Opens the file and reads its first line. Throws `Error` as `ReadHeader` does.
  explicit LineReader(const std::filesystem::path& file, const ReadOptions& options = {});
  ~LineReader();
  LineReader(LineReader&&) noexcept;
  LineReader& operator=(LineReader&&) noexcept;
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  [[nodiscard]] const Header& GetHeader() const;
  /// Reads the next feature into `line`, whose memory is used again; false after the last one, and then as it
  /// was. Throws `Error` as `Read` does, once the lines before the one that is to blame were read; then it
  /// throws that again and again. A wrong number of features is told at the end, whatever its cause.
  bool Next(FeatureLine& line);
  /// The number of the line that was read last, from 1, the header's.
  [[nodiscard]] std::size_t LineNumber() const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace hvxupgrade
