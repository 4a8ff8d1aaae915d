// What an upgrade library does wrong must not reach the documents.

#include <signal.h>

#include <chrono>
#include <thread>

#include "ToolRun.h"

namespace tool_testing {
namespace {

class ContainmentTest : public ToolTest {
 protected:
  // Runs conversion `identifier` in place on a document, which must stay as it is.
  Ended RunOn(const std::string& identifier, std::vector<std::string> more = {}) {
    const std::string file = Document("job.hvxdoc", kJobLines);
    const std::string before = Content(file);
    more.insert(more.begin(),
                {"--library", TROUBLE_LIBRARY, "upgrade", file, "--in-place", "--only", identifier});
    Ended ended = Run(more);
    EXPECT_EQ(Content(file), before);
    EXPECT_EQ(Names(), "job.hvxdoc");
    return ended;
  }
};

TEST_F(ContainmentTest, ARunThatTakesTooLongIsStopped) {
  const auto begun = std::chrono::steady_clock::now();
  const Ended ended = RunOn("LoopForEver", {"--timeout", "0.3"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.err.find("stopped after 0.3 s"), std::string::npos) << ended.err;
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
}

TEST_F(ContainmentTest, ACrashIsReported) {
  const Ended ended = RunOn("Crash");
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.err.find("crashed (signal 6, "), std::string::npos) << ended.err;
}

TEST_F(ContainmentTest, AFatalAssertionIsReportedWithItsSource) {
  const Ended ended = RunOn("GiveUp");
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.err.find("GiveUp: AssertionFailed:NULL_var != spThis in src/Trouble"), std::string::npos)
      << ended.err;
}

TEST_F(ContainmentTest, OtherDocumentsGoOn) {
  const std::string troubled = Document("a.hvxdoc", kJobLines, R"("Succeed","LoopForEver","GiveUp","Fail")");
  const std::string sound = Document("b.hvxdoc", kJobLines, R"("LoopForEver","Crash","GiveUp","Fail")");
  const Ended ended =
      Run({"--library", TROUBLE_LIBRARY, "upgrade", troubled, sound, "--output-dir", Path("new")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_EQ(Content(Path("new/a.hvxdoc")), "");
  EXPECT_NE(Content(Path("new/b.hvxdoc")).find("\"Succeed\"]"), std::string::npos);
}

TEST_F(ContainmentTest, AFailedConversionOfTheDocumentIsReportedAndTheResultWritten) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const Ended ended =
      Run({"--library", TROUBLE_LIBRARY, "upgrade", file, "-o", Path("new.hvxdoc"), "--only", "Fail"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.out.find("the conversion of the whole document failed (Fail: 0x80001234)"),
            std::string::npos)
      << ended.out;
  EXPECT_NE(Content(Path("new.hvxdoc")), "");
}

TEST_F(ContainmentTest, AnInterruptionLeavesNothingBehind) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  for (const int signal : {SIGINT, SIGTERM}) {
    const pid_t program = Start({"--library", TROUBLE_LIBRARY, "upgrade", file, file, "--dry-run", "--only",
                                 "LoopForEver", "--report", Path("r.json")});
    while (OutputSoFar() != "looping\n") std::this_thread::sleep_for(std::chrono::milliseconds(10));
    kill(program, signal);
    const Ended ended = Wait(program);
    EXPECT_EQ(ended.code, 130) << ended.err;
    EXPECT_EQ(ended.out, "looping\n");  // the second document was not begun
    EXPECT_EQ(Content(file), before);
    EXPECT_EQ(Names(), "job.hvxdoc");
  }
}

}  // namespace
}  // namespace tool_testing
