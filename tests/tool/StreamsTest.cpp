// Documents from standard input, results to standard output.

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "ToolRun.h"
#include "file/Compression.h"
#include "support/Packed.h"

namespace tool_testing {
namespace {

class StreamsTest : public ToolTest {
 protected:
  StreamsTest() : old_(Document("old.hvxdoc", kJobLines)) {
    EXPECT_EQ(Run({"upgrade", old_, "-o", Path("current.hvxdoc")}).code, 0);
  }
  // With these bytes on standard input, from a pipe, which holds them all.
  Ended RunOn(std::string_view bytes, const std::vector<std::string>& arguments,
              const std::filesystem::path& out = {}) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    EXPECT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(ends[1]);
    const int before = dup(STDIN_FILENO);
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
    Ended ended = Run(arguments, out);
    dup2(before, STDIN_FILENO);
    close(before);
    return ended;
  }

  std::string old_;
};

TEST_F(StreamsTest, AResultGoesToStandardOutputAlone) {
  const std::string current = Content(Path("current.hvxdoc"));
  const std::string packed = testing_support::Packed(Content(old_), standalone::Compression::kGzip);
  for (const std::string& bytes : {Content(old_), packed, current}) {
    const Ended ended = RunOn(bytes, {"upgrade", "-", "-o", "-"});
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, current);
    EXPECT_NE(ended.err.find("  Result: standard output"), std::string::npos) << ended.err;
  }
  EXPECT_EQ(Run({"upgrade", Path("current.hvxdoc"), "-o", "-", "-q"}).out, current);
  const Ended dry = RunOn(packed, {"upgrade", "-", "-o", "-", "--dry-run"});
  EXPECT_EQ(dry.out, "");
  const Ended full = RunOn(packed, {"upgrade", "-", "-o", "-"}, "/dev/full");
  EXPECT_EQ(full.code, 5);
  EXPECT_NE(full.err.find("standard output: cannot be written"), std::string::npos) << full.err;
}

TEST_F(StreamsTest, HelpThatCannotBeWrittenIsTold) {
  for (const char* const option : {"--help", "--version"}) {
    const Ended full = Run({option}, "/dev/full");
    EXPECT_EQ(full.code, 5);
    EXPECT_EQ(full.err, "hvxupgrade: standard output cannot be written (No space left on device)\n");
  }
}

TEST_F(StreamsTest, EveryCommandReadsStandardInput) {
  const std::string old = Content(old_);
  EXPECT_NE(RunOn(old, {"status", "-"}).out.find("/dev/stdin: upgrade needed"), std::string::npos);
  EXPECT_EQ(RunOn(old, {"check", "-"}).code, 6);
  EXPECT_EQ(RunOn(old, {"show", "-"}).out, Run({"show", old_}).out);
  EXPECT_EQ(RunOn(old, {"diff", "-", old_}).code, 0);
  EXPECT_EQ(RunOn(old, {"diff", Path("current.hvxdoc"), "-"}).code, 1);
  EXPECT_EQ(RunOn(old, {"upgrade", "-", old_, "--dry-run"}).code, 0);
  EXPECT_EQ(RunOn(old, {"upgrade", "-", "-o", Path("new.hvxdoc")}).code, 0);
  EXPECT_EQ(Content(Path("new.hvxdoc")), Content(Path("current.hvxdoc")));
}

TEST_F(StreamsTest, AStreamIsReadOnceAndHasNoName) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"diff", "-", "-"},
                                                    {"status", "-", "-"},
                                                    {"check", "-", "--files-from", "-"},
                                                    {"upgrade", "-", "--in-place"},
                                                    {"upgrade", "-", "--output-dir", Path("new")},
                                                    {"upgrade", old_, Path("current.hvxdoc"), "-o", "-"}}) {
    const Ended ended = RunOn("", arguments);
    EXPECT_EQ(ended.code, 2) << ended.err;
    EXPECT_EQ(ended.out, "");
  }
  EXPECT_EQ(RunOn("", {"check", "-"}).code, 3);
}

}  // namespace
}  // namespace tool_testing
