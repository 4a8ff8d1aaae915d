// What an upgrade library does wrong must not reach the documents.

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "ToolRun.h"

namespace tool_testing {
namespace {

class ContainmentTest : public ToolTest {
 protected:
  // A command on a document that comes to no end, with a report.
  [[nodiscard]] std::vector<std::string> EndlessRun() const {
    return {"--library",    TROUBLE_LIBRARY, "upgrade",     Document("job.hvxdoc", kJobLines),
            "--dry-run",    "--only",        "LoopForEver", "--report",
            Path("r.jsonl")};
  }
  // Comes back when the endless work has begun.
  [[nodiscard]] pid_t StartAndAwait(const std::vector<std::string>& endless) const {
    const pid_t program = Start(endless);
    while (ErrorsSoFar() != "looping\n") std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return program;
  }
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
  EXPECT_NE(ended.err.find("timed out after 0.3 s (--timeout raises the limit) in the whole document, "
                           "LoopForEver (TroubleUpgrades 0.1)."),
            std::string::npos)
      << ended.err;
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
  EXPECT_NE(ended.err.find("the whole document, GiveUp (TroubleUpgrades 0.1): AssertionFailed:NULL_var != "
                           "spThis in src/Trouble"),
            std::string::npos)
      << ended.err;
}

TEST_F(ContainmentTest, OtherDocumentsGoOn) {
  const std::string troubled =
      Document("a.hvxdoc", kJobLines, R"("Succeed","LoopForEver","GiveUp","Fail","AsNamed")");
  const std::string sound =
      Document("b.hvxdoc", kJobLines, R"("LoopForEver","Crash","GiveUp","Fail","AsNamed")");
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
  EXPECT_NE(
      ended.out.find("the conversion of the whole document failed (Fail: 0x80001234; TroubleUpgrades 0.1)"),
      std::string::npos)
      << ended.out;
  EXPECT_NE(Content(Path("new.hvxdoc")), "");
}

TEST_F(ContainmentTest, AnInterruptionLeavesNothingBehind) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  for (const int signal : {SIGINT, SIGTERM}) {
    const pid_t program = StartAndAwait({"--library", TROUBLE_LIBRARY, "upgrade", file, file, "--dry-run",
                                         "--only", "LoopForEver", "--report", Path("r.jsonl")});
    kill(program, signal);
    const Ended ended = Wait(program);
    EXPECT_EQ(ended.code, 130) << ended.err;
    EXPECT_TRUE(ended.err.find("interrupted") != std::string::npos) << ended.err;
    EXPECT_EQ(Content(file), before);
    EXPECT_EQ(Names(), "job.hvxdoc r.jsonl");
    EXPECT_NE(Content(Path("r.jsonl")).find(R"("exitCode":130,"left":1)"), std::string::npos);
    EXPECT_EQ(Content(Path("r.jsonl")).find(R"("record":"document")"), std::string::npos);
  }
}

// Whom signals cannot reach through its parent, since that was killed.
TEST_F(ContainmentTest, AWorkerEndsWithItsParent) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const pid_t program = StartAndAwait({"--library", TROUBLE_LIBRARY, "upgrade", file, "--dry-run", "--only",
                                       "LoopForEver", "--timeout", "0"});
  const std::string id = std::to_string(program);
  const pid_t worker = std::stoi(Content("/proc/" + id + "/task/" + id + "/children"));
  kill(program, SIGKILL);
  static_cast<void>(Wait(program));
  const auto begun = std::chrono::steady_clock::now();
  while (kill(worker, 0) == 0 && std::chrono::steady_clock::now() - begun < std::chrono::seconds(20))
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_NE(kill(worker, 0), 0);
}

TEST_F(ContainmentTest, ACrashIsReportedAlsoWhereEndsOfProcessesAreIgnored) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  ::signal(SIGCHLD, SIG_IGN);  // which the program inherits
  const pid_t program =
      Start({"--library", TROUBLE_LIBRARY, "upgrade", file, "--dry-run", "--only", "Crash"});
  ::signal(SIGCHLD, SIG_DFL);
  const Ended ended = Wait(program);
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.err.find("crashed (signal 6, "), std::string::npos) << ended.err;
}

// Its workers need a moment to notice.
TEST_F(ContainmentTest, ARunThatWasKilledCanBeGoneOnWithAtOnce) {
  std::vector<std::string> run = EndlessRun();
  const pid_t first = StartAndAwait(run);
  kill(first, SIGKILL);
  static_cast<void>(Wait(first));
  run.insert(run.end(), {"--timeout", "0.1"});
  const Ended second = Run(run);
  EXPECT_EQ(second.code, 1);
  EXPECT_NE(second.err.find("timed out after 0.1 s"), std::string::npos) << second.err;
}

TEST_F(ContainmentTest, AReportIsWrittenByOneRunAtATime) {
  std::vector<std::string> run = EndlessRun();
  const pid_t first = StartAndAwait(run);
  const std::string report = Content(Path("r.jsonl"));
  run.emplace_back("--force");
  const Ended second = Run(run);
  EXPECT_EQ(second.code, 5);
  EXPECT_NE(second.err.find("another run is writing this report"), std::string::npos) << second.err;
  EXPECT_EQ(Content(Path("r.jsonl")), report);
  kill(first, SIGTERM);
  int status = 0;
  waitpid(first, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 130);
  EXPECT_TRUE(Content(Path("r.jsonl")).starts_with(report));
  EXPECT_NE(Content(Path("r.jsonl")).find(R"("exitCode":130,"left":1)"), std::string::npos);
}

constexpr std::string_view kEndlessForce =
    R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
{"id":4,"type":"HVXConcentratedForce","alias":"Force","father":{"ref":1},"attributes":{"SonsList":[{"ref":10},{"ref":11},{"ref":12}]}}
{"id":10,"type":"SAMBasicComponent","name":"AxisSystemType","father":{"ref":4}}
{"id":11,"type":"SAMBasicComponent","name":"Stray","father":{"ref":4}}
{"id":12,"type":"SAMBasicComponent","name":"Stray","father":{"ref":4}}
)";

TEST_F(ContainmentTest, ARunThatChangesNothingAnyMoreIsEndedAndTheNextDocumentGoesOn) {
  const std::string force = Document("force.hvxdoc", kEndlessForce);
  const std::string job = Document("job.hvxdoc", kJobLines);
  const auto begun = std::chrono::steady_clock::now();
  const Ended ended = Run({"upgrade", force, job, "--output-dir", Path("new")});
  EXPECT_EQ(ended.code, 1);
  for (const char* const what :
       {"HVXConcentratedForce \"Force\" (id 4), UpgradeConcForceBasicComponents (HVXEConcForceUpgrade of ",
        ": more than 1000500 calls of the host in a row changed nothing"})
    EXPECT_NE(ended.err.find(what), std::string::npos) << ended.err;
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(60));
  EXPECT_NE(Content(Path("new/job.hvxdoc")), "");
  EXPECT_EQ(Content(Path("new/force.hvxdoc")), "");
}

TEST_F(ContainmentTest, LimitsAreToldWithWhatReachedThem) {
  std::string lines = R"({"id":1,"type":"AnalysisModel"}
{"id":2,"type":"PropertySet","father":{"ref":1}}
{"id":3,"type":"Surface"}
{"id":4,"type":"Surface"}
)";
  for (int id = 10; id < 50; id += 2) {
    const std::string number = std::to_string(id);
    const std::string son = std::to_string(id + 1);
    lines +=
        R"({"id":)" + number +
        R"(,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}})" +
        "\n" + R"({"id":)" + son + R"(,"type":"HVXInteractionContainerLT","father":{"ref":)" + number +
        "}}\n";
  }
  for (int id = 50; id < 60; id += 2) {
    const std::string number = std::to_string(id);
    const std::string son = std::to_string(id + 1);
    lines += R"({"id":)" + number +
             R"(,"type":"SAMFaceFaceContact","father":{"ref":2},"attributes":{"Supports":[{"ref":)" + son +
             "}]}}\n" + R"({"id":)" + son + R"(,"type":"GeometrySmartConnector","father":{"ref":)" + number +
             R"(},"attributes":{"FirstObject":{"ref":3},"SecondObject":{"ref":4}}})" + "\n";
  }
  const std::string file = Document("product.hvxdoc", lines);
  const auto givenUp = [&](const std::vector<std::string>& limit) {
    std::vector<std::string> arguments{"upgrade", file, "--dry-run"};
    arguments.insert(arguments.end(), limit.begin(), limit.end());
    const Ended ended = Run(arguments);
    EXPECT_EQ(ended.code, 1);
    return ended.err;
  };
  const std::string features = givenUp({"--limit-features", "60"});
  EXPECT_NE(features.find("): it created 60 features in a document of 54 (5 connection properties in 20 "
                          "cases), which is the limit. Nothing was "
                          "written. Raise it with --limit-features"),
            std::string::npos)
      << features;
#ifndef HVX_SANITIZED
  const std::string memory = givenUp({"--limit-memory", "1"});
  EXPECT_NE(memory.find("not enough memory (the limit is 1 MB; --limit-memory raises it)"), std::string::npos)
      << memory;
#endif
}

#ifndef HVX_SANITIZED  // which needs pipes itself
TEST_F(ContainmentTest, WithoutWorkersTheDocumentsAreLeft) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  LimitOpenFiles(6);  // the three streams, the report, its next record, and one end of a pipe
  const Ended ended = Run({"upgrade", file, "--dry-run", "--report", Path("r.jsonl")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.err.find("not begun, since a pipe cannot be created (Too many open files)"),
            std::string::npos)
      << ended.err;
  EXPECT_NE(Content(Path("r.jsonl")).find(R"("left":1)"), std::string::npos);
}
#endif

TEST_F(ContainmentTest, AReportThatFailsAtTheEndSaysThatTheDocumentsAreDone) {
  const std::string old = Document("job.hvxdoc", kJobLines);
  std::filesystem::create_directory(Path("reports"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const pid_t program =
      Start({"upgrade", Path("pipe"), "-o", Path("new.hvxdoc"), "--report", Path("reports/r.json")});
  const std::string content = Content(old);
  std::ofstream pipe(Path("pipe"), std::ios::binary);  // by then the report was begun
  std::filesystem::remove_all(Path("reports"));
  pipe << content;
  pipe.close();
  const Ended ended = Wait(program);
  EXPECT_EQ(ended.code, 5);
  EXPECT_NE(Content(Path("new.hvxdoc")), "");
  EXPECT_EQ(ended.err.find("nothing was changed"), std::string::npos) << ended.err;
  EXPECT_NE(ended.err.find("results that were written are in place"), std::string::npos) << ended.err;
}

}  // namespace
}  // namespace tool_testing
