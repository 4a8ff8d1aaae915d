#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace standalone {

/// Why a document could not be read or written, told so that the user knows what to do next.
class DocumentError : public std::runtime_error {
 public:
  enum class Kind {
    kUnreadable,  ///< The file cannot be opened or read.
    kInvalid,     ///< What it holds is not a sound document.
    kNewer,       ///< It was written by a later release.
    kUnwritable,  ///< The result could not be written; whatever stood there before is as it was.
  };

  /// `line` counts from 1; 0 where no line is to blame. `advice` is the next move, a sentence of its own.
  DocumentError(Kind kind, std::string_view file, std::size_t line, std::string_view problem,
                std::string_view advice);

  [[nodiscard]] Kind GetKind() const noexcept { return kind_; }
  [[nodiscard]] const std::string& File() const noexcept { return file_; }
  [[nodiscard]] std::size_t Line() const noexcept { return line_; }
  /// What went wrong, without the file and the advice.
  [[nodiscard]] const std::string& Problem() const noexcept { return problem_; }
  [[nodiscard]] const std::string& Advice() const noexcept { return advice_; }

 private:
  Kind kind_;
  std::string file_;
  std::size_t line_;
  std::string problem_;
  std::string advice_;
};

/// The document is no longer what was read: another program has saved, replaced or removed it since, or while
/// it was being read. Nothing was written in its place.
class ChangedMeanwhile : public DocumentError {
 public:
  /// `how` is what became of it: "another program wrote to it". `kept` is where the result was kept instead;
  /// empty for nowhere.
  ChangedMeanwhile(std::string_view file, std::string_view how, std::string kept, std::string_view advice)
      : DocumentError(Kind::kUnwritable, file, 0, std::string("changed meanwhile: ").append(how), advice),
        kept_(std::move(kept)) {}

  [[nodiscard]] const std::string& Kept() const noexcept { return kept_; }

 private:
  std::string kept_;
};

}  // namespace standalone
