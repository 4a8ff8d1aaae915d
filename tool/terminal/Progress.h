#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace tool {

/// A line on standard error that tells how far a long run is; only on a terminal, and only once the run has
/// taken long enough for somebody to wonder.
class Progress {
 public:
  /// `subject`: what is worked on, such as a file name.
  Progress(std::string_view subject, bool wanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `phase` is a word such as "reading"; `total` is 0 when it is not known.
  void Update(const char* phase, std::size_t done, std::size_t total);

  /// Takes the line of a process that could not do it itself off the terminal.
  static void ClearLine();

 private:
  using Clock = std::chrono::steady_clock;

  std::string subject_;
  bool wanted_;
  bool drawn_ = false;
  Clock::time_point nextDrawing_;
};

}  // namespace tool
