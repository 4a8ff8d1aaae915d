#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "record/DocumentResult.h"
#include "settings/RunOrigin.h"

/// \file
/// Reading reports.

namespace tool {

inline constexpr int kReportVersion = 4;

/// What a report begins with.
struct ReportHead {
  std::string tool;                    ///< The version of the program.
  std::string folder;                  ///< Where the command was given.
  std::vector<std::string> arguments;  ///< Those that decide what becomes of documents.
  RunOrigin origin;                    ///< Of a report: of the run that began it.

  /// Whether both are of one command, whenever it was given.
  [[nodiscard]] bool IsOfCommand(const ReportHead& other) const {
    return tool == other.tool && folder == other.folder && arguments == other.arguments;
  }
};

/// A file as a record knows it.
struct RecordedFile {
  std::string path;
  std::uint64_t bytes = 0;
  std::int64_t modified = 0;  ///< In nanoseconds.
};

/// A document's record, but for what was run on it and changed in it.
struct ReportLine {
  std::string file;
  DocumentResult result;  ///< Without summary; what needs a person is in `attention`.
  std::optional<RecordedFile> input;
  std::optional<RecordedFile> output;
  std::int64_t begin = 0;  ///< Where in the report its line begins, and
  std::int64_t size = 0;   ///< how many bytes that has, with the line feed.
  /// The record as JSON, but for what was changed, created and removed; only while it is handed over.
  std::string_view text = {};
};

/// What was read of a report.
struct ReadReportResult {
  ReportHead head = {};
  std::string headLine = {};  ///< As it stands there, with the line feed.
  /// The same of runs that went on with the report, and of what was merged into it, in their order.
  std::vector<std::string> otherLines = {};
  std::int64_t end = 0;      ///< Where the last record ends; what stands behind it may be cut off.
  bool isFinished = false;   ///< Whether the run came to its end line,
  std::size_t left = 0;      ///< and how many documents it had not done then.
  std::size_t exitCode = 0;  ///< At the end.
  std::string time = {};     ///< The same.
};

/// Whether a first line was written to the file, whatever it holds: a run that was killed at once has left
/// none. Throws as `ReadReport` does when it cannot be read.
[[nodiscard]] bool HasFirstLine(const std::filesystem::path& file);

/// The head of the report that stands there; an empty one when the file begins otherwise. Throws as
/// `ReadReport` does when it cannot be read.
[[nodiscard]] ReportHead ReadReportHead(const std::filesystem::path& file);

/// Reads a report, which may end in the middle of a line. Throws `standalone::DocumentError` when it cannot
/// be read (`kUnreadable`), or a line is not one of a report (`kInvalid`); the message names file and line.
/// `name`: what messages call the file, where that is not its own name.
ReadReportResult ReadReport(const std::filesystem::path& file,
                            const std::function<void(const ReportLine&)>& onRecord,
                            std::string_view name = {});

}  // namespace tool
