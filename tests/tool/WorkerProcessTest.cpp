// A worker, with this test in the supervisor's place.

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <string>

#include "archive/WorkerProcess.h"
#include "file/AtomicFile.h"
#include "support/TempFolder.h"

namespace tool {
namespace {

// As when the supervisor ends for lack of memory: the worker that wants to tell that its result is ready
// takes its temporary file along.
TEST(WorkerProcessTest, LeavesNothingWhenNobodyIsThereToReportTo) {
  const testing_support::TempFolder folder;
  std::array<int, 2> ends{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
  const pid_t self = getpid();
  const pid_t worker = fork();
  ASSERT_GE(worker, 0);
  if (worker == 0) {
    std::signal(SIGPIPE, SIG_IGN);
    close(ends[0]);
    const auto work = [&](std::size_t /*document*/, const RequestCommit& requestCommit) {
      standalone::AtomicFile file(folder / "result.hvxdoc", {});
      file.Write("begun");
      pollfd gone{ends[1], POLLRDHUP, 0};
      poll(&gone, 1, -1);
      requestCommit("ready");
      file.Commit();
      return std::string("done");
    };
    BeWorker(work, ends[1], self);
  }
  close(ends[1]);
  const std::uint64_t document = 1;
  ASSERT_EQ(send(ends[0], &document, sizeof document, 0), static_cast<ssize_t>(sizeof document));
  std::array<char, 64> begun{};
  ASSERT_GT(recv(ends[0], begun.data(), begun.size(), 0), 0);
  EXPECT_EQ(begun[0], kBegunMessage);
  close(ends[0]);
  int status = 0;
  ASSERT_EQ(waitpid(worker, &status, 0), worker);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_TRUE(folder.Names().empty());
}

}  // namespace
}  // namespace tool
