// One command on many documents: several workers, stopped and gone on with.

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <thread>

#include "ToolRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;

class ArchiveRunTest : public ToolTest {
 protected:
  ArchiveRunTest() {
    fs::create_directories(Path("archive/Träger 2019/Fuß & Kopf"));
    for (int i = 0; i < kSound; ++i) {
      const std::string place = i % 2 == 0 ? "Träger 2019/" : "Träger 2019/Fuß & Kopf/";
      static_cast<void>(Document(fmt::format("archive/{}teil {}.hvxdoc", place, i), kJobLines));
    }
    static_cast<void>(Document("archive/done.hvxdoc", "{\"id\":1,\"type\":\"AnalysisModel\"}\n",
                               R"("UpgradeJobForFromInputFile","UpgradeJobRestartData","AsNamed")"));
    static_cast<void>(Document("archive/newer.hvxdoc", kJobLines, R"("UpgradeOfTheFuture")"));
    static_cast<void>(Document("archive/broken.hvxdoc", std::string(kJobLines) + "{\"id\":\n"));
    static_cast<void>(Document("archive/stray.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine)));
    static_cast<void>(Document("archive/crashing.hvxdoc", std::string(kJobLines) + Named("Crash", 1)));
    // The largest is begun first.
    static_cast<void>(
        Document("archive/looping.hvxdoc", std::string(kJobLines) + Named("LoopForEver", 5000)));
  }

  static std::string Named(const char* name, std::size_t length) {
    return fmt::format(R"({{"id":9,"type":"SAMContainer","name":"{}","alias":"{}"}})", name,
                       std::string(length, 'x')) +
           "\n";
  }

  [[nodiscard]] std::vector<std::string> Command(const std::string& results, const std::string& report,
                                                 const char* workers) const {
    return {"--library",     UPGRADE_LIBRARY, "--library",
            TROUBLE_LIBRARY, "upgrade",       Path("archive"),
            "--output-dir",  Path(results),   "--report",
            Path(report),    "--only",        "AsNamed,UpgradeJobForFromInputFile,UpgradeJobRestartData",
            "--timeout",     kTimeout,        "-j",
            workers};
  }

  // How many records there are of each verdict.
  [[nodiscard]] std::map<std::string, int> Verdicts(const std::string& report) const {
    std::map<std::string, int> verdicts;
    const std::string text = Content(Path(report));
    constexpr std::string_view kRecord = R"("record":"document")";
    constexpr std::string_view kVerdict = R"("verdict":")";
    for (std::size_t at = text.find(kRecord); at != std::string::npos; at = text.find(kRecord, at + 1)) {
      const std::size_t begin = text.find(kVerdict, at) + kVerdict.size();
      ++verdicts[text.substr(begin, text.find('"', begin) - begin)];
    }
    return verdicts;
  }

  [[nodiscard]] int Records(const std::string& report) const {
    int records = 0;
    for (const auto& [verdict, count] : Verdicts(report)) records += count;
    return records;
  }

  [[nodiscard]] std::map<std::string, std::string> Results(const std::string& folder) const {
    std::map<std::string, std::string> results;
    for (const auto& entry : fs::recursive_directory_iterator(Path(folder))) {
      if (!entry.is_directory())
        results[entry.path().lexically_relative(Path(folder)).string()] = Content(entry.path().string());
    }
    return results;
  }

  static constexpr int kSound = 30;
  // Enough for what ends.
#ifdef HVX_SANITIZED
  static constexpr const char* kTimeout = "5";
#else
  static constexpr const char* kTimeout = "0.5";
#endif
};

TEST_F(ArchiveRunTest, StoppedAndGoneOnWithItEndsAsInOneGo) {
  const std::vector<std::string> command = Command("new", "r.jsonl", "2");
  for (const int signal : {SIGINT, SIGTERM}) {
    const int before = Records("r.jsonl");
    const pid_t program = Start(command);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (Records("r.jsonl") < before + (signal == SIGINT ? 5 : 0) &&
           std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    if (signal == SIGTERM) std::this_thread::sleep_for(std::chrono::milliseconds(300));
    kill(program, signal);
    const auto asked = std::chrono::steady_clock::now();
    const Ended stopped = Wait(program);
    EXPECT_EQ(stopped.code, 130) << stopped.out << stopped.err;
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(5));
    EXPECT_TRUE(stopped.err.find("The same command resumes the run") != std::string::npos) << stopped.err;
    EXPECT_TRUE(Content(Path("r.jsonl")).find(R"("exitCode":130,"left":)") != std::string::npos);
  }
  const Ended ended = Run(command);
  EXPECT_EQ(ended.code, 3);
  EXPECT_TRUE(ended.out.starts_with("resuming ")) << ended.out;
  const std::map<std::string, int> wanted = {
      {"upgraded", kSound + 1}, {"nothingChosen", 1}, {"newer", 1}, {"broken", 1},
      {"crashed", 1},           {"timedOut", 1}};
  EXPECT_EQ(Verdicts("r.jsonl"), wanted);
  for (const char* const name :
       {"stray.hvxdoc: 1 thing needs a person", "newer.hvxdoc: ", "broken.hvxdoc:5: ",
        "crashing.hvxdoc: the upgrade crashed", "looping.hvxdoc: the upgrade timed out"})
    EXPECT_TRUE(ended.out.find("  " + Path("archive/") + name) != std::string::npos) << name << ended.out;
  EXPECT_TRUE(
      ended.out.find("36 documents: 30 upgraded, 1 upgraded but needing a person, 1 with nothing to do") !=
      std::string::npos)
      << ended.out;

  // Once more: all is told, and nothing is done.
  const auto results = Results("new");
  const auto written = fs::last_write_time(Path("new/stray.hvxdoc"));
  const Ended again = Run(command);
  EXPECT_EQ(again.code, 3);
  EXPECT_EQ(Verdicts("r.jsonl"), wanted);
  EXPECT_EQ(fs::last_write_time(Path("new/stray.hvxdoc")), written);

  // In one go, one after the other.
  EXPECT_EQ(Run(Command("alone", "alone.jsonl", "1")).code, 3);
  EXPECT_EQ(Verdicts("alone.jsonl"), wanted);
  EXPECT_TRUE(Results("alone") == results);
}

TEST_F(ArchiveRunTest, WhatChangedOrIsWantedAgainIsDoneAgain) {
  std::vector<std::string> command = Command("new", "r.jsonl", "2");
  EXPECT_EQ(Run(command).code, 3);
  const int all = Records("r.jsonl");
  fs::remove(Path("archive/broken.hvxdoc"));
  static_cast<void>(Document("archive/broken.hvxdoc", kJobLines));  // corrected
  EXPECT_EQ(Run(command).code, 4);
  EXPECT_EQ(Records("r.jsonl"), all + 1);
  EXPECT_NE(Content(Path("new/broken.hvxdoc")), "");

  command.insert(command.end(), {"--again", "failed"});
  EXPECT_EQ(Run(command).code, 4);
  EXPECT_EQ(Records("r.jsonl"), all + 1 + 3);  // the one that loops, the one that crashes, the newer one
  command.back() = "incomplete";
  EXPECT_EQ(Run(command).code, 4);
  EXPECT_EQ(Records("r.jsonl"), all + 1 + 3 + 4);

  // Another command must not go on with it; anew it may begin.
  command.insert(command.end() - 2, "--strict");
  const Ended other = Run(command);
  EXPECT_EQ(other.code, 5);
  EXPECT_TRUE(other.err.find("r.jsonl: the report belongs to another command") != std::string::npos)
      << other.err;
  EXPECT_TRUE(other.err.find("Give the report another name, or --force to replace it") != std::string::npos);
}

TEST_F(ArchiveRunTest, WithoutAReportTheSameCommandGoesOnToo) {
  std::vector<std::string> command = Command("new", "unused", "2");
  command.erase(command.begin() + 8, command.begin() + 10);
  fs::remove(Path("archive/looping.hvxdoc"));
  EXPECT_EQ(Run(command).code, 3);
  const auto results = Results("new");
  fs::remove(Path("new/Träger 2019/teil 4.hvxdoc"));
  const Ended again = Run(command);
  EXPECT_EQ(again.code, 3);
  EXPECT_TRUE(Results("new") == results) << again.err;
  EXPECT_EQ(again.err.find("exists already"), std::string::npos) << again.err;

  // What somebody else put there is not taken for the result.
  Put(Path("new/Träger 2019/teil 4.hvxdoc"), "mine");
  EXPECT_EQ(Run(command).code, 5);
  EXPECT_EQ(Content(Path("new/Träger 2019/teil 4.hvxdoc")), "mine");
}

TEST_F(ArchiveRunTest, TheSystemIsHeardAlsoWhenNobodyReadsTheOutput) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const int reader = open(Path("pipe").c_str(), O_RDWR | O_NONBLOCK);
  while (write(reader, "full", 4) > 0) continue;
  std::vector<std::string> command = Command("new", "r.jsonl", "2");
  command.emplace_back("--verbose");
  const pid_t program = Start(command, Path("pipe"));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!fs::exists(Path("new")) && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  kill(program, SIGTERM);
  const auto asked = std::chrono::steady_clock::now();
  EXPECT_EQ(Wait(program).code, 130);
  EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(5));
  EXPECT_TRUE(Content(Path("r.jsonl")).find(R"("exitCode":130,"left":)") != std::string::npos);
  close(reader);
}

TEST_F(ArchiveRunTest, ShardsTogetherDoEachDocumentOnce) {
  fs::remove(Path("archive/looping.hvxdoc"));
  std::vector<std::string> merge = {"merge", "--report", Path("all.jsonl")};
  for (int shard = 1; shard <= 3; ++shard) {
    std::vector<std::string> command = Command("new", fmt::format("r{}.jsonl", shard), "1");
    command.insert(command.end(), {"--shard", fmt::format("{}/3", shard)});
    static_cast<void>(Run(command));
    merge.push_back(Path(fmt::format("r{}.jsonl", shard)));
  }
  const Ended merged = Run(merge);
  EXPECT_EQ(merged.code, 3);
  EXPECT_EQ(merged.err, "");
  EXPECT_EQ(Records("all.jsonl"), kSound + 5);
  EXPECT_TRUE(merged.out.find("35 documents: 30 upgraded") != std::string::npos) << merged.out;

  merge.pop_back();
  merge.emplace_back("--force");
  const Ended missing = Run(merge);
  EXPECT_EQ(missing.code, 130);
  EXPECT_TRUE(missing.err.find("no report of these shards was given: 3/3") != std::string::npos)
      << missing.err;
  EXPECT_TRUE(missing.err.find("no shard did these documents: ") != std::string::npos) << missing.err;
  EXPECT_EQ(Run({"upgrade", Path("archive"), "--dry-run", "--shard", "4/3"}).code, 2);

  Put(Path("r3.jsonl"), R"({"record":"ru)");  // killed at once
  merge.push_back(Path("r3.jsonl"));
  const Ended unbegun = Run(merge);
  EXPECT_EQ(unbegun.code, 130);
  EXPECT_TRUE(unbegun.err.find("these runs ended before they wrote anything; run their shards again: " +
                               Path("r3.jsonl")) != std::string::npos)
      << unbegun.err;
}

TEST_F(ArchiveRunTest, MergeKnowsDocumentsWhoseNamesBeginWithADash) {
  const fs::path before = fs::current_path();
  fs::current_path(Path(""));
  for (const char* const name : {"-a.hvxdoc", "--b.hvxdoc"}) static_cast<void>(Document(name, kJobLines));
  std::vector<std::string> merge = {"merge", "--report", "all.jsonl"};
  for (const char* const shard : {"1/2", "2/2"}) {
    merge.push_back(fmt::format("r{}.jsonl", shard[0]));
    static_cast<void>(Run({"upgrade", "--in-place", "--shard", shard, "--report", merge.back(), "--",
                           "-a.hvxdoc", "--b.hvxdoc"}));
  }
  const Ended merged = Run(merge);
  fs::current_path(before);
  EXPECT_EQ(merged.code, 0) << merged.err;
  EXPECT_TRUE(merged.out.find("2 documents: 2 upgraded") != std::string::npos) << merged.out;
}

TEST_F(ArchiveRunTest, AMergeTellsWhatItCannotKnow) {
  fs::create_directory(Path("run"));
  const std::string document = Document("run/part.hvxdoc", kJobLines);
  const fs::path before = fs::current_path();
  fs::current_path(Path("run"));
  const auto upgrade = [&](const char* report, const char* shard) {
    return Run({"upgrade", ".", "--output-dir", Path("new"), "--report", Path(report), "--shard", shard})
        .code;
  };
  ASSERT_EQ(upgrade("a.jsonl", "1/1"), 0);
  ASSERT_EQ(upgrade("b.jsonl", "1/1"), 0);
  ASSERT_EQ(upgrade("c.jsonl", "1/2"), 0);
  fs::current_path(before);

  const Ended twice = Run({"merge", Path("a.jsonl"), Path("./a.jsonl")});
  EXPECT_EQ(twice.code, 0) << twice.err;
  EXPECT_EQ(twice.err, "");
  const Ended two = Run({"merge", Path("a.jsonl"), Path("b.jsonl")});
  EXPECT_EQ(two.code, 1);
  EXPECT_TRUE(two.err.find("several reports of these shards were given; ") != std::string::npos) << two.err;
  EXPECT_EQ(two.err.find("several shards did"), std::string::npos) << two.err;
  const Ended other = Run({"merge", Path("a.jsonl"), Path("c.jsonl")});
  EXPECT_EQ(other.code, 2);
  EXPECT_TRUE(other.err.find("--shard 1/1 -- . in ") != std::string::npos) << other.err;

  // A folder that could not be searched may hold documents that no shard did.
  fs::remove(document);
  const Ended empty = Run({"merge", Path("a.jsonl")});
  EXPECT_EQ(empty.code, 3);
  EXPECT_TRUE(empty.err.find(".: no documents were found") != std::string::npos) << empty.err;
  fs::remove(Path("run"));
  const Ended gone = Run({"merge", Path("a.jsonl")});
  EXPECT_EQ(gone.code, 3);
  EXPECT_TRUE(gone.err.find("the folder of the run cannot be entered") != std::string::npos) << gone.err;
}

// As in archives of times before UTF-8.
TEST_F(ArchiveRunTest, NamesOfAnyBytesAreFoundAgain) {
  for (const char* const name : {"Tr\xe4ger/a \xe4.hvxdoc", "Tr\xe4ger/a \xf6.hvxdoc",
                                 "Tr\xe4ger/a \xf4\x8d\xb3\xa4.hvxdoc", "Tr\xe4ger/a\xff\\xff.hvxdoc"}) {
    fs::create_directory(Path("Tr\xe4ger"));
    static_cast<void>(Document(name, kJobLines));
  }
  const std::vector<std::string> command = {"upgrade",  Path("Tr\xe4ger"), "--output-dir", Path("n\xfcu"),
                                            "--report", Path("r.jsonl"),   "--shard",      "1/1"};
  ASSERT_EQ(Run(command).code, 0);
  const Ended again = Run(command);
  EXPECT_EQ(again.code, 0);
  EXPECT_TRUE(again.out.find("4 documents done before, 0 left") != std::string::npos)
      << again.out << again.err;
  const Ended merged = Run({"merge", Path("r.jsonl")});
  EXPECT_EQ(merged.code, 0);
  EXPECT_EQ(merged.err, "");
  EXPECT_TRUE(Content(Path("r.jsonl")).find("a \xf4\x8d\xb3\xb6.hvxdoc") != std::string::npos);
}

// Whatever the number of workers: replacing what the one name stands for is no change of the other document.
TEST_F(ArchiveRunTest, NamesOfOneFileAreUpgradedOneAfterTheOther) {
  constexpr int kFiles = 12;
  fs::create_directory(Path("linked"));
  for (int i = 0; i < kFiles; ++i) {
    const std::string file = Document(fmt::format("linked/{}.hvxdoc", i), kJobLines);
    for (int name = 1; name <= 3; ++name)
      fs::create_hard_link(file, Path(fmt::format("linked/{}-{}.hvxdoc", i, name)));
  }
  const Ended ended = Run({"upgrade", Path("linked"), "--in-place", "--backup", ".old", "-j", "4"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_TRUE(ended.out.ends_with("48 documents: 48 upgraded\n")) << ended.out;
}

}  // namespace
}  // namespace tool_testing
