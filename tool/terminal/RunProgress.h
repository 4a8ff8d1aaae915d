#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tool {

/// How far a run over many documents is.
struct RunState {
  std::size_t documents = 0;  ///< In all.
  std::size_t done = 0;
  std::size_t needPerson = 0;  ///< Of those that are done, also those without a result.
  std::uint64_t bytes = 0;
  std::uint64_t bytesDone = 0;
  std::vector<std::string> atWork;  ///< The documents that are being worked on.
};

/// Tells on standard error how far a run is: on a terminal one line that stays where it is and fits its
/// width, else a line a minute.
class RunProgress {
 public:
  enum class Kind { kAuto, kPlain, kNone };  ///< `kPlain`: as without a terminal.

  explicit RunProgress(Kind kind);
  ~RunProgress();
  RunProgress(const RunProgress&) = delete;
  RunProgress& operator=(const RunProgress&) = delete;

  /// To be called often; draws when it is time.
  void Update(const RunState& state);
  /// Takes the line away, before anything else is printed.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] std::string TextOf(const RunState& state) const;

  bool onTerminal_;
  bool wanted_;
  bool drawn_ = false;
  Clock::time_point begun_;
  Clock::time_point next_;
};

}  // namespace tool
