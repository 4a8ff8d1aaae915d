#include "terminal/Progress.h"

#include <fmt/format.h>

#include <algorithm>

#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::chrono::milliseconds kBeforeFirst{500};
constexpr std::chrono::milliseconds kBetween{100};
constexpr std::size_t kBarWidth = 30;

bool OnTerminal() {
  static const bool onTerminal = TakesCommands(stderr);
  return onTerminal;
}

}  // namespace

Progress::Progress(std::string_view subject, bool wanted)
    : subject_(Printable(subject)),
      wanted_(wanted && OnTerminal()),
      nextDrawing_(Clock::now() + kBeforeFirst) {}

Progress::~Progress() {
  if (drawn_) ClearLine();
}

void Progress::Update(const char* phase, std::size_t done, std::size_t total) {
  if (!wanted_ || Clock::now() < nextDrawing_) return;
  nextDrawing_ = Clock::now() + kBetween;
  drawn_ = true;
  if (total == 0) {
    Put(stderr, fmt::format("\r\033[K{}: {}", subject_, phase));
  } else {
    const std::size_t filled = std::min(kBarWidth, done * kBarWidth / total);
    Put(stderr, fmt::format("\r\033[K{}: {:<9} [{:#<{}}{:.<{}}] {:3}%", subject_, phase, "", filled, "",
                            kBarWidth - filled, std::min<std::size_t>(100, done * 100 / total)));
  }
  std::fflush(stderr);
}

void Progress::ClearLine() {
  if (OnTerminal()) Put(stderr, "\r\033[K");
}

}  // namespace tool
