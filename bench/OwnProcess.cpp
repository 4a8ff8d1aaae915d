#include "OwnProcess.h"

#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace bench {
namespace {

// In the copy: does the work, sends what became of it, and gives the copy's exit code.
int Work(const std::function<void()>& work, const void* result, std::size_t size, int channel) {
  try {
    work();
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
  return write(channel, result, size) == static_cast<ssize_t>(size) ? 0 : 1;
}

}  // namespace

void InOwnProcess(const std::function<void()>& work, void* result, std::size_t size) {
  std::fflush(nullptr);
  std::array<int, 2> channel{};
  if (pipe(channel.data()) != 0) throw std::runtime_error("a pipe cannot be created");
  const pid_t copy = fork();
  if (copy < 0) throw std::runtime_error("a process cannot be started");
  if (copy == 0) _exit(Work(work, result, size, channel[1]));
  close(channel[1]);  // so that a copy that dies is noticed
  const bool received = read(channel[0], result, size) == static_cast<ssize_t>(size);
  close(channel[0]);
  int status = 0;
  waitpid(copy, &status, 0);
  if (!received || status != 0) throw std::runtime_error("what was to be measured did not come to its end");
}

}  // namespace bench
