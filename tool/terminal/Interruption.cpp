#include "terminal/Interruption.h"

#include <unistd.h>

namespace tool {
namespace {

constexpr int kGraceSeconds = 3;
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t requested = 0;
volatile std::sig_atomic_t requests = 0;
volatile std::sig_atomic_t terminated = 0;
sigset_t whileWaiting;
bool isHeldBack = false;

volatile std::sig_atomic_t graceSeconds = 0;  // 0 for as long as it takes

// What does not notice the request, such as a routine that does not end, is ended by the alarm.
void Note(int signal) {
  requested = 1;
  if (signal == SIGINT) {
    requests = requests + 1;
  } else {
    terminated = 1;
  }
  if (graceSeconds != 0) alarm(static_cast<unsigned>(graceSeconds));
}

}  // namespace

void Interruption::HoldBack() {
  sigset_t held;
  sigemptyset(&held);
  struct sigaction action {};
  action.sa_handler = &Note;
  for (const int signal : kSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;  // who started this program wants it to go on
    sigaddset(&held, signal);
    sigaction(signal, &action, nullptr);
  }
  sigprocmask(SIG_BLOCK, &held, &whileWaiting);
  isHeldBack = true;
}

bool Interruption::IsHeldBack() {
  return isHeldBack;
}

const sigset_t& Interruption::WhileWaiting() {
  return whileWaiting;
}

void Interruption::LetIn() {
  requested = 0;
  isHeldBack = false;
  graceSeconds = kGraceSeconds;
  struct sigaction action {};
  action.sa_handler = &Note;
  sigaction(kParentDied, &action, nullptr);
  sigprocmask(SIG_SETMASK, &whileWaiting, nullptr);
}

void Interruption::GoOnToTheEnd() {
  graceSeconds = 0;
  alarm(0);
}

void Interruption::CutOffAgain() {
  graceSeconds = kGraceSeconds;
}

bool Interruption::Requested() {
  return requested != 0;
}

int Interruption::Requests() {
  return requests;
}

bool Interruption::IsTermination() {
  return terminated != 0;
}

void Interruption::StopIfRequested() {
  if (Requested()) throw Interrupted();
}

}  // namespace tool
