// Faults of the machine, as scripts/torture makes them: some that once broke a promise.
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>

#include "ToolRun.h"

namespace tool_testing {
namespace {

bool Has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

class FaultTest : public ToolTest {
 protected:
  // Runs the program with a call that fails, as torture/Faults.h tells.
  Ended RunUnder(const std::string& fault, const std::vector<std::string>& arguments) const {
    setenv("LD_PRELOAD", HVX_FAILING_CALLS, 1);
    setenv("HVX_TORTURE", fault.c_str(), 1);
    Ended ended = Run(arguments);
    unsetenv("LD_PRELOAD");
    unsetenv("HVX_TORTURE");
    return ended;
  }

  std::string file_ = Document("job.hvxdoc", kJobLines);
  std::string before_ = Content(file_);
  std::vector<std::string> inPlace_ = {"upgrade", file_,      "--in-place",    "--backup",
                                       ".old",    "--report", Path("r.jsonl"), "--force"};
};

TEST_F(FaultTest, AWorkerThatEndsWhenTheResultIsInPlaceHasUpgradedTheDocument) {
  const Ended ended = RunUnder("worker:fsync:3:signal9", inPlace_);  // of the folder, behind the rename
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_TRUE(Has(ended.err, "ended (signal 9, Killed) after the result was in place")) << ended.err;
  EXPECT_TRUE(Has(ended.out, "job.hvxdoc: upgraded"));
  EXPECT_TRUE(Has(Content(Path("r.jsonl")), R"("verdict":"upgraded")"));
  EXPECT_EQ(Content(file_ + ".old"), before_);
}

TEST_F(FaultTest, AWorkerThatEndsBeforeTheResultIsInPlaceHasNot) {
  const Ended ended = RunUnder("worker:rename:1:signal9", inPlace_);
  EXPECT_EQ(ended.code, 1);
  EXPECT_TRUE(Has(ended.err, "crashed (signal 9, Killed). Its file is as it was")) << ended.err;
  EXPECT_EQ(Content(file_), before_);
  EXPECT_EQ(Names(), "job.hvxdoc job.hvxdoc.old r.jsonl");
  EXPECT_EQ(Run(inPlace_).code, 0);
}

TEST_F(FaultTest, ABackupWhoseNameDoesNotGetToDiskIsNone) {
  const Ended ended = RunUnder("worker:fsync:2:5", inPlace_);
  EXPECT_EQ(ended.code, 5);
  EXPECT_TRUE(Has(ended.err, "the backup cannot be made (Input/output error)")) << ended.err;
  EXPECT_EQ(Content(file_), before_);
  EXPECT_EQ(Names(), "job.hvxdoc r.jsonl");
}

TEST_F(FaultTest, LackOfMemoryIsToldWhereverItComes) {
  for (const std::string fault : {"worker:alloc:1500:12:forever", "worker:alloc:1500:12"}) {
    const Ended ended = RunUnder(fault, inPlace_);
    EXPECT_EQ(ended.code, 1);
    EXPECT_TRUE(Has(ended.err, "there is not enough memory")) << ended.err;
    EXPECT_EQ(Content(file_), before_);
  }
  const Ended ended = RunUnder("program:alloc:2000:12:forever", inPlace_);
  EXPECT_EQ(ended.code, 3);
  EXPECT_EQ(ended.err, "hvxupgrade: there is not enough memory; free some, or use a machine with more\n");
}

TEST_F(FaultTest, ARecordThatCannotBeTakenOverIsNotBegun) {
  const Ended ended = RunUnder("program:pread:2:5", inPlace_);
  EXPECT_EQ(ended.code, 5);
  EXPECT_TRUE(Has(ended.err, "the report cannot be written (Input/output error)")) << ended.err;
  EXPECT_TRUE(Has(ended.err, "results that were written are in place")) << ended.err;
  EXPECT_EQ(Names(), "job.hvxdoc job.hvxdoc.old r.jsonl");
  const std::string report = Content(Path("r.jsonl"));
  EXPECT_TRUE(report.ends_with("\n"));
  EXPECT_FALSE(Has(report, R"("record":"document")")) << report;
}

TEST_F(FaultTest, AFileThatMayNotGrowIsToldAsThat) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{1500, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const Ended ended = Run(inPlace_);
  setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_EQ(ended.code, 5);
  EXPECT_TRUE(Has(ended.err, "(File too large)")) << ended.err;
  EXPECT_EQ(Names(), "job.hvxdoc r.jsonl");
  EXPECT_EQ(Content(file_), before_);
}

TEST_F(FaultTest, ADocumentThatCannotBeLookedAtIsNotReplaced) {
  // Once each; which of them look at the document may change.
  for (int number = 1; number <= 30; ++number) {
    const Ended ended = RunUnder("worker:stat:" + std::to_string(number) + ":5", inPlace_);
    const bool isUpgraded = Content(file_) != before_;
    EXPECT_EQ(ended.code == 0, isUpgraded) << number << ended.err;
    EXPECT_FALSE(Has(ended.err, "not a regular file")) << number << ended.err;
    EXPECT_TRUE(isUpgraded || Has(ended.err, "Input/output error")) << number << ended.err;
    file_ = Document("job.hvxdoc", kJobLines);
    std::filesystem::remove(file_ + ".old");
  }
}

TEST_F(FaultTest, AReportThatCannotBeReadIsNotCutOff) {
  inPlace_.pop_back();  // --force
  ASSERT_EQ(Run(inPlace_).code, 0);
  const std::string report = Content(Path("r.jsonl"));
  for (const std::string fault : {"program:getline:1:5", "program:getline:3:5", "program:getline:3:12"}) {
    const Ended ended = RunUnder(fault, inPlace_);
    EXPECT_EQ(ended.code, 3) << ended.err;
    EXPECT_TRUE(Has(ended.err, "the report cannot be read (")) << ended.err;
    EXPECT_EQ(Content(Path("r.jsonl")), report);
  }
}

// Least of all is it taken for one that this run has made, and removed.
TEST_F(FaultTest, AReportThatCannotBeLookedAtStays) {
  inPlace_.pop_back();  // --force
  ASSERT_EQ(Run(inPlace_).code, 0);
  const std::string report = Content(Path("r.jsonl"));
  for (int number = 1; number <= 40; ++number) {
    const Ended ended = RunUnder("program:stat:" + std::to_string(number) + ":13:forever", inPlace_);
    EXPECT_TRUE(Content(Path("r.jsonl")).starts_with(report.substr(0, report.find(R"({"record":"end")"))))
        << number << ended.err;
  }
}

TEST_F(FaultTest, AReportWhoseHeadCannotBeWrittenIsNotThere) {
  for (const std::string fault : {"program:write:1:28", "program:write:1:28:forever"}) {
    const Ended ended = RunUnder(fault, inPlace_);
    EXPECT_EQ(ended.code, 5) << ended.err;
    EXPECT_EQ(Names(), "job.hvxdoc");
  }
}

TEST_F(FaultTest, AFileSystemWithoutLocksTakesReports) {
  for (const std::string error : {"38", "95", "37"})
    EXPECT_EQ(RunUnder("program:flock:1:" + error, inPlace_).code, 0);
}

TEST_F(FaultTest, ARunThatWasKilledWhileItWroteTheHeadIsGoneOnWith) {
  inPlace_.pop_back();  // --force
  ASSERT_EQ(Run(inPlace_).code, 0);
  const std::string head = Content(Path("r.jsonl")).substr(0, 40);
  Put(Path("r.jsonl"), head);
  EXPECT_EQ(Run(inPlace_).code, 0);
  EXPECT_TRUE(Has(Content(Path("r.jsonl")), "\"exitCode\":0,\"left\":0"));
  Put(Path("r.jsonl"), head + "?");
  EXPECT_EQ(Run(inPlace_).code, 5);
  EXPECT_EQ(Content(Path("r.jsonl")), head + "?");
}

TEST_F(FaultTest, WhatTheSystemRefusesTheSupervisorDoesNotHangTheRun) {
  const std::string other = Document("other.hvxdoc", kJobLines);
  // No room for a number on its way to a worker; no waiting for news; no word of the end of a worker.
  for (const std::string fault :
       {"program:send:1:105", "program:send:2:105", "program:ppoll:1:12:forever", "program:shutdown:1:107"}) {
    const Ended ended = RunUnder(fault, {"upgrade", file_, other, "-j", "2", "--output-dir", Path("new"),
                                         "--report", Path("new/r.jsonl"), "--force"});
    EXPECT_EQ(ended.code, 0) << fault << ended.err;
    EXPECT_TRUE(Has(Content(Path("new/r.jsonl")), "\"exitCode\":0,\"left\":0")) << fault;
    std::filesystem::remove_all(Path("new"));
  }
}

TEST_F(FaultTest, AWorkerOfWhichTheSystemDoesNotTellWhetherItStandsIsStopped) {
  const Ended ended =
      RunUnder("program:waitpid:1:10", {"--library", TROUBLE_LIBRARY, "upgrade", file_, "--dry-run", "--only",
                                        "LoopForEver", "--timeout", "0.1"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_TRUE(Has(ended.err, "timed out after 0.1 s")) << ended.err;
}

TEST_F(FaultTest, WorkersThatEndBeforeTheyBeginAreToldAsTheCause) {
  const Ended ended = RunUnder("worker:prctl:1:signal9:forever", inPlace_);
  EXPECT_EQ(ended.code, 1);
  EXPECT_TRUE(Has(ended.err, "not begun, since its worker ended too early (signal 9, Killed)")) << ended.err;
  EXPECT_EQ(Content(file_), before_);
}

TEST_F(FaultTest, AnInterruptionBeforeTheOnlyDocumentIsTold) {
  const Ended ended = RunUnder("program:socketpair:1:signal15", inPlace_);
  EXPECT_EQ(ended.code, 130);
  EXPECT_EQ(ended.err, "hvxupgrade: " + file_ + ": interrupted. Nothing was written\n");
}

TEST_F(FaultTest, ATemporaryFileBesideTheReportIsRemovedByTheNextRun) {
  std::filesystem::create_directory(Path("reports"));
  const std::vector<std::string> run = {"upgrade", file_, "--dry-run", "--report", Path("reports/r.jsonl")};
  EXPECT_EQ(RunUnder("program:unlink:1:signal9", run).code, -1);
  EXPECT_EQ(Run(run).code, 0);
  std::filesystem::remove(Path("reports/r.jsonl"));
  EXPECT_TRUE(std::filesystem::is_empty(Path("reports")));
}

TEST_F(FaultTest, AnInstallationThatCannotBeReadIsNotToBlame) {
  const Ended ended = RunUnder("program:open:2:24:forever", inPlace_);
  EXPECT_EQ(ended.code, 3);
  EXPECT_TRUE(Has(ended.err, "(Too many open files)")) << ended.err;
  EXPECT_FALSE(Has(ended.err, "Reinstall")) << ended.err;
}

}  // namespace
}  // namespace tool_testing
