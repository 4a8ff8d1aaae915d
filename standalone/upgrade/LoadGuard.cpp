#include "upgrade/LoadGuard.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

namespace standalone {
namespace {

constexpr std::array kSignals{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

// That of this thread.
constinit thread_local const LoadGuard* current = nullptr;

constinit std::mutex mutex;
constinit int guards = 0;

// What the program had before the first guard.
struct Former {
  std::array<struct sigaction, kSignals.size()> actions;
  std::terminate_handler terminate;
};
constinit Former former{};

// A line, put together by what is safe in a handler of signals. What would change the terminal is left out.
class Line {
 public:
  Line& operator<<(std::string_view text) noexcept {
    constexpr unsigned char kFirstVisible = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    for (const char c : text.substr(0, kMost - size_)) {
      const auto code = static_cast<unsigned char>(c);
      text_[size_++] = code < kFirstVisible || code == kDelete ? ' ' : c;
    }
    return *this;
  }
  Line& operator<<(int number) noexcept {
    constexpr int kTen = 10;
    if (number >= kTen) *this << number / kTen;
    const char digit = static_cast<char>('0' + number % kTen);
    return *this << std::string_view(&digit, 1);
  }
  // Where nobody reads it, nothing can be done.
  void Write() noexcept {
    text_[size_] = '\n';
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text_.data(), size_ + 1);
  }

 private:
  static constexpr std::size_t kMost = 8191;  // the longest path and a few words

  std::array<char, kMost + 1> text_{};
  std::size_t size_ = 0;
};

Line& operator<<(Line& line, const LoadGuard& guard) noexcept {
  const bool isLoading = guard.GetWork() == LoadGuard::Work::kLoading;
  return line << "hvxupgrade: " << guard.File().native() << ": the upgrade library ended the program while "
              << (isLoading ? "it was loaded (" : "it was unloaded, when all work was done (");
}

constexpr std::string_view kAdvice = "). Correct it, or leave it out";

// Gives the signal to whom it would have gone. A fault happens again when its handler returns; what was sent
// is sent again.
void PassOn(int number, const siginfo_t& info) {
  const auto place = static_cast<std::size_t>(std::ranges::find(kSignals, number) - kSignals.begin());
  static_cast<void>(sigaction(number, &former.actions[place], nullptr));
  if (info.si_code <= 0) static_cast<void>(raise(number));
}

void OnSignal(int number, siginfo_t* info, void* /*context*/) {
  if (const LoadGuard* const guard = std::exchange(current, nullptr)) {
    Line line;
    line << *guard << "signal " << number << ", " << sigdescr_np(number) << kAdvice;
    line.Write();
  }
  PassOn(number, *info);
}

void TellException(const LoadGuard& guard) noexcept {
  Line line;
  line << guard;
  std::string_view advice = kAdvice;
  try {
    if (std::current_exception()) std::rethrow_exception(std::current_exception());
    line << "it threw";
  } catch (const std::bad_alloc&) {
    line << "there was not enough memory";
    advice = "). Free some, or use a machine with more";
  } catch (const std::exception& error) {
    line << "it threw: " << error.what();
  } catch (...) {  // tells nothing of itself
    line << "it threw";
  }
  line << advice;
  line.Write();
}

[[noreturn]] void OnTerminate() {
  if (const LoadGuard* const guard = std::exchange(current, nullptr)) {
    TellException(*guard);
    // That of the runtime would tell it again, and leave the core of a stack that is unwound already.
    if (former.terminate == &__gnu_cxx::__verbose_terminate_handler) _exit(LoadGuard::kExitCode);
  }
  if (former.terminate != nullptr) former.terminate();
  std::abort();
}

// The C library goes on with the handlers that are left, and takes the new code.
void OnExit() {
  const LoadGuard* const guard = std::exchange(current, nullptr);
  if (guard == nullptr) return;
  Line line;
  line << *guard << "it called exit" << kAdvice;
  line.Write();
  std::exit(LoadGuard::kExitCode);
}

// A second call of quick_exit would be no end of the first.
void OnQuickExit() {
  const LoadGuard* const guard = std::exchange(current, nullptr);
  if (guard == nullptr) return;
  Line line;
  line << *guard << "it called quick_exit" << kAdvice;
  line.Write();
  _exit(LoadGuard::kExitCode);
}

void SetHandlers() noexcept {
  struct sigaction action {};
  action.sa_sigaction = &OnSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    static_cast<void>(sigaction(kSignals[i], &action, &former.actions[i]));
  former.terminate = std::set_terminate(&OnTerminate);
  [[maybe_unused]] static const int kAtExit = std::atexit(&OnExit);
  [[maybe_unused]] static const int kAtQuickExit = std::at_quick_exit(&OnQuickExit);
}

// But those that somebody put in their place meanwhile.
void RestoreHandlers() noexcept {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    struct sigaction now {};
    if (sigaction(kSignals[i], nullptr, &now) == 0 && now.sa_sigaction == &OnSignal)
      static_cast<void>(sigaction(kSignals[i], &former.actions[i], nullptr));
  }
  if (std::get_terminate() == &OnTerminate) std::set_terminate(former.terminate);
}

}  // namespace

LoadGuard::LoadGuard(const std::filesystem::path& file, Work work) noexcept
    : file_(file), work_(work), outer_(current) {
  {
    const std::lock_guard lock(mutex);
    if (guards++ == 0) SetHandlers();
  }
  TakeStack();
  current = this;
}

LoadGuard::~LoadGuard() {
  current = outer_;
  GiveBackStack();
  const std::lock_guard lock(mutex);
  if (--guards == 0) RestoreHandlers();
}

// A recursion without an end leaves no stack to tell of it.
void LoadGuard::TakeStack() noexcept {
  constexpr std::size_t kBytes = std::size_t{1} << 16U;
  stack_t now{};
  if (sigaltstack(nullptr, &now) != 0 || (now.ss_flags & SS_DISABLE) == 0) return;
  stack_.reset(new (std::nothrow) std::byte[kBytes]);
  stack_t own{};
  own.ss_sp = stack_.get();
  own.ss_size = kBytes;
  if (stack_ != nullptr && sigaltstack(&own, nullptr) != 0) stack_.reset();
}

void LoadGuard::GiveBackStack() const noexcept {
  stack_t now{};
  if (stack_ == nullptr || sigaltstack(nullptr, &now) != 0 || now.ss_sp != stack_.get()) return;
  stack_t none{};
  none.ss_flags = SS_DISABLE;
  static_cast<void>(sigaltstack(&none, nullptr));
}

}  // namespace standalone
