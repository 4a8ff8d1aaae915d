#pragma once

#include <csignal>
#include <exception>

/// \file
/// Being stopped by the user (or by the parent process): nothing stops at once, the work looks now and then
/// whether it should, so that temporary files go and documents stay whole.

namespace tool {

/// Unwinds the work that was asked to stop.
class Interrupted : public std::exception {};

class Interruption {
 public:
  Interruption() = delete;

  /// From now on SIGINT, SIGTERM and SIGHUP, as far as they were not ignored, only make `Requested` true.
  /// They are let in only within calls that take `WhileWaiting` as their signal mask.
  static void HoldBack();
  /// Whether that was called, in this process.
  [[nodiscard]] static bool IsHeldBack();
  [[nodiscard]] static const sigset_t& WhileWaiting();

  /// In a fresh child process: lets the signals in at any time, and forgets those that the parent got. From
  /// now on a request that is not noticed within some seconds ends the process. `kParentDied` is such a
  /// request too, whatever is ignored.
  static void LetIn();
  static constexpr int kParentDied = SIGUSR1;
  /// What is left is short, and must not be cut off: requests are noticed, but do not end the process.
  static void GoOnToTheEnd();
  /// That is over: requests count as before it.
  static void CutOffAgain();

  [[nodiscard]] static bool Requested();
  /// How often the user asked, by SIGINT.
  [[nodiscard]] static int Requests();
  /// Whether the system did, by SIGTERM or SIGHUP: it will soon end this process itself.
  [[nodiscard]] static bool IsTermination();
  /// Throws `Interrupted` when a stop was requested.
  static void StopIfRequested();
};

}  // namespace tool
