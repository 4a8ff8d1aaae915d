#include "native/Progress.h"

#include "native/Arguments.h"

namespace python {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The lock is asked for now and then only: where other threads hold it, that takes milliseconds.
constexpr milliseconds kBetweenCalls{25};
constexpr milliseconds kBetweenLooksForSignals{100};

Progress::Progress(py::object told) : told_(std::move(told)) {
  if (!told_.is_none() && PyCallable_Check(told_.ptr()) == 0)
    RaiseTypeError("progress", "a function or None", told_);
}

std::function<bool(std::uint64_t, std::uint64_t)> Progress::Teller() {
  return [this](std::uint64_t done, std::uint64_t total) { return Tell(done, total); };
}

bool Progress::Tell(std::uint64_t done, std::uint64_t total) {
  if (raised_) return false;
  const bool hasCaller = !told_.is_none();
  const bool isEnd = hasCaller && done == total && total != 0;
  const auto now = steady_clock::now();
  if (!last_ && !hasCaller) last_ = now;
  if (last_ && !isEnd && now - *last_ < (hasCaller ? kBetweenCalls : kBetweenLooksForSignals)) return true;
  last_ = now;

  const py::gil_scoped_acquire lock;
  try {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    return !hasCaller || !IsStop(told_(done, total));
  } catch (py::error_already_set& error) {
    raised_ = std::move(error);
    return false;
  }
}

void Progress::ThrowRaised() {
  if (!raised_) return;
  py::error_already_set raised = std::move(*raised_);
  raised_.reset();
  throw raised;
}

}  // namespace python
