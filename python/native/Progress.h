#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace python {

namespace py = pybind11;

/// What long work has to do with Python while it runs without the interpreter's lock: it tells the caller how
/// far it is, and lets Ctrl-C through. To be made and destroyed with the lock.
class Progress {
 public:
  /// `told` is called with what is done and with what there is; None for nobody. Raises TypeError for what
  /// cannot be called: once the work has begun it would be too late.
  explicit Progress(py::object told);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// What long work is given. It answers false, which stops the work, once the callback has answered False or
  /// raised, or a signal's handler has raised.
  [[nodiscard]] std::function<bool(std::uint64_t, std::uint64_t)> Teller();

  /// Throws what was raised meanwhile, if anything was; once.
  void ThrowRaised();

 private:
  bool Tell(std::uint64_t done, std::uint64_t total);

  py::object told_;
  std::optional<std::chrono::steady_clock::time_point> last_;
  std::optional<py::error_already_set> raised_;
};

/// Does the work without the interpreter's lock, so that other Python threads run. What was raised meanwhile
/// comes before what the work throws, since the work only stopped for it.
template <class Work>
auto WithoutLock(Progress& progress, const Work& work) {
  const auto unlocked = [&work] {
    const py::gil_scoped_release release;
    return work();
  };
  try {
    if constexpr (std::is_void_v<decltype(work())>) {
      unlocked();
      progress.ThrowRaised();
    } else {
      auto result = unlocked();
      progress.ThrowRaised();
      return result;
    }
  } catch (...) {
    progress.ThrowRaised();
    throw;
  }
}

}  // namespace python
