#pragma once

namespace tool {

/// How the program ends, as scripts see it.
enum class ExitCode {
  kDone = 0,            ///< Done, or nothing to do.
  kFailedFeatures = 1,  ///< Something needs a person: left behind, failed, held back, or given up.
  kDifferent = 1,       ///< The documents differ (`diff` only).
  kNeedsPerson = 1,     ///< Something that no pending upgrade changes (`check` only).
  kUnaccounted = 1,     ///< A difference that no upgrade is there to make (`sheet` only).
  kUsage = 2,           ///< Wrong usage.
  kBadInput = 3,        ///< Some input is unreadable or invalid.
  kNewer = 4,           ///< Some document needs a newer program, or a library that is not loaded.
  kUnwritable = 5,      ///< Some output could not be written; what stood there is as it was.
  kUpgradeNeeded = 6,   ///< Some document needs an upgrade (`check` and `status --check` only).
  kInterrupted = 130,   ///< Stopped by the user.
};

/// The code for both together. From the most serious: 130, 2, 5, 3, 4, 1, 6, 0.
[[nodiscard]] constexpr ExitCode MoreSerious(ExitCode left, ExitCode right) {
  constexpr ExitCode kOrder[] = {ExitCode::kInterrupted,  ExitCode::kUsage, ExitCode::kUnwritable,
                                 ExitCode::kBadInput,     ExitCode::kNewer, ExitCode::kFailedFeatures,
                                 ExitCode::kUpgradeNeeded};
  for (const ExitCode code : kOrder) {
    if (left == code || right == code) return code;
  }
  return ExitCode::kDone;
}

}  // namespace tool
