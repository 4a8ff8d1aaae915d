#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "hvxupgrade/Export.h"

namespace hvxupgrade {

/// Why something could not be done, told so that the user knows what to do next. `what()` holds all of it.
class HVXUPGRADE_API Error : public std::runtime_error {
 public:
  enum class Kind {
    kUnreadable,    ///< A file cannot be opened or read.
    kInvalid,       ///< What a file holds is not a sound document.
    kNewer,         ///< A document was written by a later release.
    kUnwritable,    ///< The result could not be written; whatever stood there before is as it was.
    kChanged,       ///< Another program has changed the file meanwhile; nothing was written.
    kInstallation,  ///< A library, catalog or message file is missing, broken or does not fit.
    kUsage,         ///< The caller asked for what cannot be: an unknown identifier, a removed feature.
    kStopped,       ///< An upgrade was stopped: by its caller, by a limit, or by a routine that gave up.
  };

  /// `line` counts from 1; 0 where no line is to blame. `file` may be empty. `advice` is the next move, a
  /// sentence of its own, or empty.
  Error(Kind kind, std::string file, std::size_t line, std::string problem, std::string advice);
  ~Error() override;
  Error(const Error&) = default;
  Error& operator=(const Error&) = default;

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

}  // namespace hvxupgrade
