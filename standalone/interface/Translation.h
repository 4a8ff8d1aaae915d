#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "hvxupgrade/Error.h"

/// \file
/// What may leave the library: for the sources of the interface only.

namespace hvxupgrade {

/// To be called while an exception is handled: throws it again as an `Error`, about `file` where it names
/// none, or as it is when memory is short, and when it is the program's own. `otherwise` is the kind of those
/// that tell none.
[[noreturn]] void ThrowAsError(Error::Kind otherwise, const std::filesystem::path& file);

/// Throws `Error` of that kind when the name of a file is empty, or has a null character in it: the system
/// would take the name up to there.
void RequireNamed(const std::filesystem::path& file, Error::Kind kind);

/// Throws `Error` (`kUsage`).
[[noreturn]] void RefuseUse(std::string problem, std::string advice = {});

/// The text without what it says, in brackets, of the program's options: " (--data)". Programs of others have
/// none.
[[nodiscard]] std::string WithoutOptions(std::string text);

/// Does `action` and gives what it gives; what it throws leaves as `ThrowAsError` says.
template <class Action>
decltype(auto) Translated(Error::Kind otherwise, const std::filesystem::path& file, const Action& action) {
  try {
    return action();
  } catch (...) {
    ThrowAsError(otherwise, file);
  }
}

/// What is told of work that its program stopped.
struct Stopped {
  const char* problem;
  const char* advice;
};

/// Calls what a program gave to be told of progress, where it gave something. When it says so, ends the work
/// with an `Error` (`kStopped`); what it throws comes out of `Translated` as it is.
void TellProgress(const std::function<bool(std::uint64_t, std::uint64_t)>& onProgress, std::uint64_t done,
                  std::uint64_t total, const Stopped& stopped);

}  // namespace hvxupgrade
