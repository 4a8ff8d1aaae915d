#pragma once

#include <string>
#include <string_view>

#include "Comparison.h"
#include "ExitCode.h"

namespace tool {

enum class Verdict {
  kUpgraded,       ///< Possibly with failures.
  kCurrent,        ///< Nothing was pending.
  kNothingChosen,  ///< Nothing that was pending was chosen.
  kBadInput,
  kNewer,
  kUnwritable,
  kAborted,
  kTimedOut,
  kCrashed,
  kInterrupted,
};

/// What became of one document, as a worker process tells its parent.
struct DocumentResult {
  Verdict verdict = Verdict::kCrashed;
  std::size_t features = 0;     ///< Of the document before the run.
  std::size_t identifiers = 0;  ///< That were run.
  std::size_t failures = 0;     ///< Failed features and document-wide conversions.
  Totals totals;
  std::string problem;    ///< Why there is no result; empty when there is one.
  std::string summary;    ///< For people; empty when there is no result.
  std::string attention;  ///< JSON objects, separated by commas: what needs a person.

  [[nodiscard]] bool Succeeded() const { return verdict <= Verdict::kNothingChosen; }
};

/// A word for the verdict, as reports hold it.
[[nodiscard]] std::string_view NameOf(Verdict verdict);
[[nodiscard]] ExitCode ExitCodeOf(const DocumentResult& result);

/// The result as bytes for the same program, and back.
[[nodiscard]] std::string Pack(const DocumentResult& result);
[[nodiscard]] DocumentResult Unpack(std::string_view bytes);

}  // namespace tool
