#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "hvxupgrade/Error.h"

/// \file
/// What may leave the library: for the sources of the interface only.

namespace hvxupgrade {

/// To be called while an exception is handled: throws it again as an `Error` about `file`, or as it is when
/// it is one, when memory is short, and when it is the program's own. `otherwise` is the kind of those that
/// tell none.
[[noreturn]] void ThrowAsError(Error::Kind otherwise, const std::filesystem::path& file);

/// Throws `Error` (`kUsage`).
[[noreturn]] void RefuseUse(std::string problem, std::string advice = {});

/// Does `action` and gives what it gives; what it throws leaves as `ThrowAsError` says.
template <class Action>
decltype(auto) Translated(Error::Kind otherwise, const std::filesystem::path& file, const Action& action) {
  try {
    return action();
  } catch (...) {
    ThrowAsError(otherwise, file);
  }
}

/// Calls what a program gave to be told of progress, where it gave something. When it says so, ends the work
/// with an `Error` (`kStopped`) that says "`what` was stopped"; what it throws comes out of `Translated` as
/// it is.
void TellProgress(const std::function<bool(std::uint64_t, std::uint64_t)>& onProgress, std::uint64_t done,
                  std::uint64_t total, std::string_view what);

}  // namespace hvxupgrade
