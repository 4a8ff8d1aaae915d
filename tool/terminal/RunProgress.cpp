#include "terminal/RunProgress.h"

#include <fmt/format.h>

#include <algorithm>

#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::chrono::milliseconds kBeforeFirst{500};
constexpr std::chrono::milliseconds kBetween{200};
constexpr std::chrono::minutes kBetweenLines{1};
constexpr double kMegabyte = 1e6;

std::string Duration(double seconds) {
  const auto whole = static_cast<std::uint64_t>(seconds);
  if (whole < 60) return fmt::format("{} s", whole);
  if (whole < 3600) return fmt::format("{} min {:02} s", whole / 60, whole % 60);
  return fmt::format("{} h {:02} min", whole / 3600, whole / 60 % 60);
}

// As much from the beginning as fits, with a column left free. Scripts of wide characters, and some others
// with them, count two columns a character.
std::string Fitted(const std::string& text, std::size_t width) {
  std::size_t columns = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool begins = (byte & 0xC0U) != 0x80U;
    if (begins) columns += byte >= 0xE1U ? 2 : 1;
    if (begins && columns >= width) return text.substr(0, i);
  }
  return text;
}

}  // namespace

RunProgress::RunProgress(Kind kind)
    : onTerminal_(kind == Kind::kAuto && TakesCommands(stderr)),
      wanted_(kind != Kind::kNone),
      begun_(Clock::now()),
      next_(begun_ + (onTerminal_ ? Clock::duration(kBeforeFirst) : Clock::duration(kBetweenLines))) {}

RunProgress::~RunProgress() {
  Clear();
}

void RunProgress::Update(const RunState& state) {
  const Clock::time_point now = Clock::now();
  if (!wanted_ || now < next_) return;
  next_ = now + (onTerminal_ ? Clock::duration(kBetween) : Clock::duration(kBetweenLines));
  const std::string text = TextOf(state);
  if (onTerminal_) {
    Put(stderr, fmt::format("\r\033[K{}", Fitted(text, ColumnsOf(stderr))));
    drawn_ = true;
  } else {
    Put(stderr, text + "\n");
  }
  std::fflush(stderr);
}

void RunProgress::Clear() {
  if (!drawn_) return;
  Put(stderr, "\r\033[K");
  std::fflush(stderr);
  drawn_ = false;
}

std::string RunProgress::TextOf(const RunState& state) const {
  const double seconds = std::chrono::duration<double>(Clock::now() - begun_).count();
  const auto bytes = static_cast<double>(state.bytes);
  const auto done = static_cast<double>(state.bytesDone);
  std::string text = fmt::format("{} of {} documents, {:.1f} of {:.1f} MB", state.done, state.documents,
                                 done / kMegabyte, bytes / kMegabyte);
  if (state.needPerson != 0) text += fmt::format(", {} needing a person", state.needPerson);
  if (state.done != 0 && done > 0) {
    text += fmt::format(", {:.1f} MB/s, {} left", done / kMegabyte / seconds,
                        Duration(seconds * (bytes - done) / done));
  }
  for (std::size_t i = 0; i < state.atWork.size(); ++i) {
    const std::string& name = state.atWork[i];
    const std::size_t slash = name.rfind('/');
    text += fmt::format("{}{}", i == 0 ? "; working on " : ", ",
                        Printable(slash == std::string::npos ? name : name.substr(slash + 1)));
  }
  return text;
}

}  // namespace tool
