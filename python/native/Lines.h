#pragma once

#include <cstddef>
#include <deque>
#include <exception>
#include <filesystem>
#include <optional>

#include "hvxupgrade/Reader.h"
#include "native/Progress.h"

namespace python {

/// A line of a document file as Python holds it.
struct HeldLine {
  hvxupgrade::FeatureLine feature;
  std::size_t number = 0;  ///< From 1, the header's.
};

/// Reads a document line by line. Several lines are read at a time, since each time the interpreter's lock
/// has to be got again.
class Lines {
 public:
  Lines(const std::filesystem::path& file, py::object told, std::optional<std::uint64_t> maxUnpackedBytes);

  [[nodiscard]] const std::filesystem::path& File() const { return file_; }
  [[nodiscard]] const hvxupgrade::Header& GetHeader() const { return header_; }
  /// None after the last line, and once it is closed.
  [[nodiscard]] std::optional<HeldLine> Next();
  /// Lets go of the file.
  void Close();

 private:
  void ReadAhead();
  void RequireIdle() const;

  std::filesystem::path file_;
  Progress progress_;
  std::optional<hvxupgrade::LineReader> reader_;  // none when closed, or read to the end
  hvxupgrade::Header header_;
  std::deque<HeldLine> ahead_;
  std::exception_ptr fault_;  // met behind the lines that were read ahead
  bool isReading_ = false;
};

}  // namespace python
