// How results get to their place when another run, or another program, was there before.

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "ToolRun.h"
#include "file/TemporaryName.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;

bool Has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

class PlaceTest : public ToolTest {
 protected:
  // What a process leaves that is killed while it writes `name`.
  void LeaveTemporary(const std::string& name, std::string_view content) const {
    const pid_t process = fork();
    if (process == 0) {
      std::string temporary;
      static_cast<void>(standalone::MakeTemporary(Path(name), temporary));
      Put(temporary, content);
      _exit(0);
    }
    waitpid(process, nullptr, 0);
  }

  [[nodiscard]] std::string CurrentDocument(const std::string& name) const {
    const std::string old = Document("old.hvxdoc", kJobLines);
    EXPECT_EQ(Run({"upgrade", old, "-o", Path(name)}).code, 0);
    fs::remove(old);
    return Path(name);
  }
};

TEST_F(PlaceTest, ADocumentThatAnotherProgramSavesMeanwhileIsNotReplaced) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string other = Document("other.hvxdoc", kJobLines, R"("LoopForEver","Crash","GiveUp","Fail")");
  setenv("HVX_TEST_MEDDLES_WITH", file.c_str(), 1);
  for (const std::vector<std::string>& place :
       {std::vector<std::string>{"--in-place", "--backup", ".bak"}, {"-o", file, "--force"}}) {
    const std::string before = Content(file);
    std::vector<std::string> arguments = {"--library", TROUBLE_LIBRARY, "upgrade", file, "--only", "Meddle"};
    arguments.insert(arguments.end(), place.begin(), place.end());
    const Ended ended = Run(arguments);
    EXPECT_EQ(ended.code, 5);
    EXPECT_TRUE(Has(ended.err, file + ": changed meanwhile: ")) << ended.err;
    EXPECT_EQ(Content(file), before + "\n");
    EXPECT_EQ(Names(), "job.hvxdoc other.hvxdoc");
  }
  // One after the other: both meddle with the first, which must not be just then being read.
  const Ended kept = Run({"--library", TROUBLE_LIBRARY, "upgrade", file, other, "--only", "Meddle", "-j", "1",
                          "--in-place", "--keep-result", "--report", Path("r.json")});
  unsetenv("HVX_TEST_MEDDLES_WITH");
  EXPECT_EQ(kept.code, 5);
  EXPECT_TRUE(Has(kept.err, "kept as " + file + ".upgraded")) << kept.err;
  EXPECT_TRUE(Has(kept.out, "2 documents: 1 upgraded, 1 changed meanwhile")) << kept.out;
  EXPECT_TRUE(Has(Content(file + ".upgraded"), R"("upgrades":["Meddle"])"));
  EXPECT_TRUE(Has(Content(Path("r.json")), R"("verdict":"changedMeanwhile")"));
  EXPECT_TRUE(Has(Content(Path("r.json")), R"("kept":")" + file + ".upgraded\""));
}

TEST_F(PlaceTest, AFinishedRunCanBeRepeated) {
  const std::string first = CurrentDocument("a.hvxdoc");
  const std::string second = CurrentDocument("b.hvxdoc");
  EXPECT_EQ(Run({"upgrade", first, second, "--output-dir", Path("new")}).code, 0);
  const auto written = fs::last_write_time(Path("new/a.hvxdoc"));
  const Ended again = Run({"upgrade", first, second, "--output-dir", Path("new")});
  EXPECT_EQ(again.code, 0) << again.err;
  EXPECT_EQ(again.out, "2 documents: 2 already current\n");
  EXPECT_EQ(fs::last_write_time(Path("new/a.hvxdoc")), written);

  Put(Path("new/b.hvxdoc"), "mine");
  const Ended differs = Run({"upgrade", first, second, "--output-dir", Path("new")});
  EXPECT_EQ(differs.code, 5);
  EXPECT_TRUE(Has(differs.err, "b.hvxdoc: the file exists already. Choose another name, or give --force"));
  EXPECT_EQ(Content(Path("new/b.hvxdoc")), "mine");
  EXPECT_EQ(Run({"upgrade", first, second, "--output-dir", Path("new"), "--force"}).code, 0);
  EXPECT_EQ(Content(Path("new/b.hvxdoc")), Content(second));

  // In place, with the backup of the run that did the work.
  const std::string file = Document("job.hvxdoc", kJobLines);
  for (int run = 0; run < 2; ++run)
    EXPECT_EQ(Run({"upgrade", file, "--in-place", "--backup", ".old"}).code, 0);
}

TEST_F(PlaceTest, ABackupOfAKilledRunDoesNotStandInTheWay) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  fs::create_hard_link(file, file + ".old");
  EXPECT_EQ(Run({"upgrade", file, "--in-place", "--backup", ".old"}).code, 0);
  EXPECT_EQ(Content(file + ".old"), before);
  EXPECT_NE(Content(file), before);

  const std::string other = Document("other.hvxdoc", kJobLines);
  Put(other + ".old", "mine");
  EXPECT_EQ(Run({"upgrade", other, "--in-place", "--backup", ".old"}).code, 5);
  EXPECT_EQ(Content(other + ".old"), "mine");
}

TEST_F(PlaceTest, TheNextRunRemovesWhatKilledOnesLeft) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  LeaveTemporary("job.hvxdoc", "half");
  LeaveTemporary("r.json", "{");
  EXPECT_EQ(Run({"upgrade", file, "--dry-run"}).err, "");
  std::string mine;  // this process lives
  close(standalone::MakeTemporary(Path("x"), mine));
  const Ended ended = Run({"upgrade", file, "--in-place"});
  EXPECT_EQ(ended.code, 0);
  EXPECT_EQ(ended.err, "removed 2 temporary files (5 bytes) that killed runs left in " +
                           fs::canonical(fs::path(file).parent_path()).string() + "\n");
  EXPECT_EQ(Names(), fs::path(mine).filename().string() + " job.hvxdoc");
}

TEST_F(PlaceTest, LeftoversGoAlsoWhereTheDocumentIsGivenByItsNameAlone) {
  static_cast<void>(Document("job.hvxdoc", kJobLines));
  LeaveTemporary("job.hvxdoc", "half");
  fs::create_directory(Path("apart"));
  const fs::path before = fs::current_path();
  fs::current_path(Path(""));
  const Ended ended = Run({"upgrade", "job.hvxdoc", "--in-place", "--report", "apart/r.jsonl"});
  fs::current_path(before);
  EXPECT_EQ(ended.code, 0);
  EXPECT_EQ(ended.err, "removed 1 temporary file (4 bytes) that killed runs left in .\n");
  EXPECT_EQ(Names(), "apart job.hvxdoc");
}

TEST_F(PlaceTest, CleanListsAndRemovesLeftoversOfProcessesThatAreGone) {
  fs::create_directories(Path("top/sub"));
  fs::create_directory(Path("elsewhere"));
  fs::create_directory_symlink(Path("elsewhere"), Path("top/link"));
  LeaveTemporary("top/sub/a.hvxdoc", "half");
  LeaveTemporary("elsewhere/b.hvxdoc", "half");
  Put(Path("top/.c.hvxdoc.another-host.1.2.3.hvxtmp-abcdef"), "half");
  Put(Path("top/.hidden.hvxdoc"), "mine");
  std::string mine;
  close(standalone::MakeTemporary(Path("top/d.hvxdoc"), mine));

  const Ended listed = Run({"clean", "--dry-run", Path("top"), Path("top/sub")});
  EXPECT_EQ(listed.code, 0);
  EXPECT_TRUE(Has(listed.out, "would be removed (4 bytes)\n")) << listed.out;
  EXPECT_TRUE(Has(listed.out, "1 leftover would be removed, 4 bytes\n"));
  const Ended json = Run({"clean", "--json", Path("top")});
  EXPECT_EQ(json.code, 0);
  for (const char* const part : {R"("outcome":"removed")", R"("outcome":"inUse")",
                                 R"("outcome":"ofOtherHost")", R"("removed":1,"bytes":4})"})
    EXPECT_TRUE(Has(json.out, part)) << json.out;
  EXPECT_TRUE(fs::is_empty(Path("top/sub")));
  EXPECT_TRUE(fs::exists(mine));
  EXPECT_FALSE(fs::is_empty(Path("elsewhere")));  // a link does not lead there
  EXPECT_EQ(Content(Path("top/.hidden.hvxdoc")), "mine");

  const Ended text = Run({"clean", Path("top"), Path("none")});
  EXPECT_EQ(text.code, 3);
  EXPECT_TRUE(Has(text.out, "skipped, process " + std::to_string(getpid()))) << text.out;
  EXPECT_TRUE(Has(text.out, "skipped, it belongs to host another-host"));
  EXPECT_TRUE(Has(text.err, "none: the folder cannot be read")) << text.err;
}

TEST_F(PlaceTest, AFolderThatARunMadeInVainGoesAgain) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const pid_t program = Start({"--library", TROUBLE_LIBRARY, "upgrade", file, "--output-dir",
                               Path("made/new"), "--only", "LoopForEver"});
  while (ErrorsSoFar() != "looping\n") std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(program, SIGINT);
  EXPECT_EQ(Wait(program).code, 130);
  EXPECT_EQ(Names(), "job.hvxdoc");
}

TEST_F(PlaceTest, AFileIsNoFolder) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  for (const std::string& folder : {file, file + "/sub"}) {
    const Ended ended = Run({"upgrade", file, "--output-dir", folder});
    EXPECT_EQ(ended.code, 5);
    EXPECT_TRUE(Has(ended.err, "job.hvxdoc: this is a file, and results cannot be put into it")) << ended.err;
  }
}

TEST_F(PlaceTest, AnotherUsersDocumentStaysTheirs) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file to another user";
  const std::string file = Document("job.hvxdoc", kJobLines);
  ASSERT_EQ(chown(file.c_str(), 12345, 12346), 0);
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  EXPECT_EQ(Run({"upgrade", file, "--in-place"}).code, 0);
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 12345U);
  EXPECT_EQ(status.st_gid, 12346U);
}

}  // namespace
}  // namespace tool_testing
