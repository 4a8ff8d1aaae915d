#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

namespace standalone {

/// Names the upgrade library that ends the program while it is loaded or unloaded. To live on the thread that
/// does so, just as long.
///
/// Code of a library runs before anything can be asked of it: its static objects, then its entry. Where that
/// crashes, aborts, throws or calls `exit`, a line on standard error tells which file it was. What follows is
/// as it would be without this: a crash goes on to the handler that the program has, or dumps its core; what
/// was thrown goes on to the program's own terminate handler. Without one, and after `exit`, the program ends
/// with code `kExitCode`: no script may take an `exit(0)` for success.
///
/// Several threads may load at a time. The program's handlers are back when the last guard is gone.
class LoadGuard {
 public:
  enum class Work { kLoading, kUnloading };

  /// That of `hvxupgrade` for a library that cannot be loaded.
  static constexpr int kExitCode = 3;

  /// `file` must outlive it.
  LoadGuard(const std::filesystem::path& file, Work work) noexcept;
  ~LoadGuard();
  LoadGuard(const LoadGuard&) = delete;
  LoadGuard& operator=(const LoadGuard&) = delete;

  [[nodiscard]] const std::filesystem::path& File() const noexcept { return file_; }
  [[nodiscard]] Work GetWork() const noexcept { return work_; }

 private:
  void TakeStack() noexcept;
  void GiveBackStack() const noexcept;

  const std::filesystem::path& file_;
  Work work_;
  const LoadGuard* outer_;
  std::unique_ptr<std::byte[]> stack_;  // of handlers, where the thread has none for them
};

}  // namespace standalone
