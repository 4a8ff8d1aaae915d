#include "Interruption.h"

namespace tool {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t requested = 0;
sigset_t whileWaiting;

void Note(int /*signal*/) {
  requested = 1;
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
}

const sigset_t& Interruption::WhileWaiting() {
  return whileWaiting;
}

void Interruption::LetIn() {
  requested = 0;
  sigprocmask(SIG_SETMASK, &whileWaiting, nullptr);
}

bool Interruption::Requested() {
  return requested != 0;
}

void Interruption::StopIfRequested() {
  if (Requested()) throw Interrupted();
}

}  // namespace tool
