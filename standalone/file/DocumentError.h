#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

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
  [[nodiscard]] std::size_t Line() const noexcept { return line_; }
  /// What went wrong, without the file and the advice.
  [[nodiscard]] const std::string& Problem() const noexcept { return problem_; }

 private:
  Kind kind_;
  std::size_t line_;
  std::string problem_;
};

}  // namespace standalone
