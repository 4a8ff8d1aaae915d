// Folders and lists of documents, as people have them.

#include <algorithm>
#include <filesystem>

#include "ToolRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;

class ArchiveTest : public ToolTest {
 protected:
  // A document beneath the folder of this test.
  void Place(const std::string& name, std::string_view upgrades = "") {
    fs::create_directories(fs::path(Path(name)).parent_path());
    static_cast<void>(Document(name, kJobLines, upgrades));
  }
  // All files beneath the folder, sorted.
  [[nodiscard]] std::vector<std::string> Files(const std::string& folder) const {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(Path(folder)))
      if (!entry.is_directory()) files.push_back(entry.path().lexically_relative(Path(folder)));
    std::ranges::sort(files);
    return files;
  }
  [[nodiscard]] Ended StatusOf(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "status");
    return Run(arguments);
  }
};

TEST_F(ArchiveTest, AFolderStandsForTheDocumentsBeneathIt) {
  Place("archive/a b/Träger 1.hvxdoc");
  Place("archive/a b/deep/er/x.hvxdoc");
  Place("archive/top.hvxdoc");
  Place("archive/top.hvxdoc.old");
  Place("archive/.hidden.hvxdoc");
  Place("archive/.snapshots/old.hvxdoc");
  Place("elsewhere/linked.hvxdoc");
  Put(Path("archive/notes.txt"), "no document");
  fs::create_directory_symlink(Path("elsewhere"), Path("archive/link"));
  fs::create_symlink(Path("elsewhere/linked.hvxdoc"), Path("archive/one.hvxdoc"));

  const std::vector<std::string> command = {"upgrade", Path("archive"), "--output-dir", Path("archive/new")};
  const Ended ended = Run(command);
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_TRUE(ended.out.ends_with("4 documents: 4 upgraded\n")) << ended.out;
  const std::vector<std::string> wanted = {"a b/Träger 1.hvxdoc", "a b/deep/er/x.hvxdoc", "one.hvxdoc",
                                           "top.hvxdoc"};
  EXPECT_EQ(Files("archive/new"), wanted);

  // Again: what this command wrote is no document of the archive.
  const Ended again = Run(command);
  EXPECT_TRUE(again.out.find("4 documents: ") != std::string::npos ||
              again.err.find("exists already") != std::string::npos)
      << again.out << again.err;
  EXPECT_EQ(Files("archive/new"), wanted);
}

TEST_F(ArchiveTest, PatternsChooseAmongThem) {
  Place("archive/a.hvxdoc");
  Place("archive/b.doc");
  Place("archive/drafts/c.hvxdoc");
  Place("archive/2019/drafts/d.hvxdoc");
  const auto found = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {Path("archive"), "--list", "pending"});
    const std::string out = StatusOf(arguments).out;
    std::string names;
    for (const char* const name : {"/a.hvxdoc\n", "/b.doc\n", "/c.hvxdoc\n", "/d.hvxdoc\n"})
      if (out.find(name) != std::string::npos) names.push_back(name[1]);
    return names;
  };
  EXPECT_EQ(found({}), "acd");
  EXPECT_EQ(found({"--include", "*.doc"}), "b");
  EXPECT_EQ(found({"--include", "*.doc", "--include", "a*"}), "ab");
  EXPECT_EQ(found({"--exclude", "drafts"}), "a");
  EXPECT_EQ(found({"--exclude", "drafts/"}), "a");
  EXPECT_EQ(found({"--exclude", "drafts/*"}), "ad");
  EXPECT_EQ(found({"--exclude", "*/drafts"}), "ac");
}

TEST_F(ArchiveTest, BackupsAreNoDocumentsWhateverThePattern) {
  Place("archive/beam 1.hvxdoc");
  const std::vector<std::string> command = {"upgrade", Path("archive"), "--in-place", "--backup",
                                            ".old",    "--include",     "beam*"};
  ASSERT_EQ(Run(command).code, 0);
  const std::string backup = Content(Path("archive/beam 1.hvxdoc.old"));
  const Ended again = Run(command);
  EXPECT_EQ(again.code, 0) << again.err;
  EXPECT_EQ(Content(Path("archive/beam 1.hvxdoc.old")), backup);
  EXPECT_FALSE(fs::exists(Path("archive/beam 1.hvxdoc.old.old")));
}

TEST_F(ArchiveTest, AListMayHoldAnyNames) {
  Place("a b.hvxdoc");
  Place("line\nbreak.hvxdoc");
  Place("folder/c.hvxdoc");
  Put(Path("list"), Path("a b.hvxdoc") + "\n\n" + Path("folder"));
  EXPECT_EQ(StatusOf({"--files-from", Path("list"), "--check"}).code, 6);
  Put(Path("list"), Path("a b.hvxdoc") + '\0' + Path("line\nbreak.hvxdoc") + '\0');
  const Ended ended = Run({"upgrade", "--files-from", Path("list"), "-0", "--in-place"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_TRUE(ended.out.ends_with("2 documents: 2 upgraded\n")) << ended.out;

  Put(Path("list"), "");  // such as a list of what is pending
  const Ended nothing = Run({"upgrade", "--files-from", Path("list"), "--in-place"});
  EXPECT_EQ(nothing.code, 0) << nothing.err;
  EXPECT_EQ(nothing.out, "0 documents\n");

  const Ended missing = StatusOf({"--files-from", Path("none")});
  EXPECT_EQ(missing.code, 3);
  EXPECT_TRUE(missing.err.find("the list of documents cannot be read (No such file") != std::string::npos)
      << missing.err;
}

TEST_F(ArchiveTest, ALinkThatLeadsNowhereIsTold) {
  Place("archive/a.hvxdoc");
  fs::create_symlink("nowhere.hvxdoc", Path("archive/gone.hvxdoc"));
  fs::create_symlink("round.hvxdoc", Path("archive/round.hvxdoc"));
  const Ended ended = Run({"upgrade", Path("archive"), "--dry-run"});
  EXPECT_EQ(ended.code, 3);
  EXPECT_TRUE(ended.err.find("gone.hvxdoc: cannot be opened (No such file") != std::string::npos)
      << ended.err;
  EXPECT_TRUE(ended.err.find("round.hvxdoc: cannot be opened (Too many levels") != std::string::npos)
      << ended.err;
}

// From the first lines alone: what stands below may be broken.
TEST_F(ArchiveTest, StatusCountsAndLists) {
  const std::string file = Document("done.hvxdoc", kJobLines);
  ASSERT_EQ(Run({"upgrade", file, "--in-place"}).code, 0);
  fs::create_directories(Path("archive/sub"));
  fs::rename(file, Path("archive/done.hvxdoc"));
  Place("archive/old 1.hvxdoc");
  static_cast<void>(Document("archive/old 2.hvxdoc", std::string(kJobLines) + "{\"id\":\n"));
  Place("archive/sub/newer.hvxdoc", R"("UpgradeOfTheFuture")");
  Put(Path("archive/sub/broken.hvxdoc"), "{\"format\":\"hvx");
  Put(Path("archive/sub/empty.hvxdoc"), "");

  const Ended ended = StatusOf({Path("archive")});
  EXPECT_EQ(ended.code, 3);
  EXPECT_EQ(ended.out,
            "6 documents, 13 features\n"
            "  upgrade needed                         2   --list pending\n"
            "  current                                1   --list current\n"
            "  newer or with unknown upgrades         1   --list newer\n"
            "  broken                                 2   --list broken\n"
            "\nBroken:\n"
            "  " +
                Path("archive/sub/broken.hvxdoc") +
                ":1: the file ends within a line. It was cut off; restore it from a backup\n"
                "  " +
                Path("archive/sub/empty.hvxdoc") +
                ": the file is empty. Give a document: a header line and one line per feature\n"
                "\nNewer or with unknown upgrades:\n"
                "  " +
                Path("archive/sub/newer.hvxdoc") +
                ": 1 upgrade unknown here, such as UpgradeOfTheFuture\n"
                "\nUpgrade needed:\n"
                "  " +
                Path("archive/old 1.hvxdoc") + ": 66 upgrades pending\n" + "  " +
                Path("archive/old 2.hvxdoc") + ": 66 upgrades pending\n");
  EXPECT_EQ(StatusOf({Path("archive"), "--list", "pending"}).out,
            Path("archive/old 1.hvxdoc") + "\n" + Path("archive/old 2.hvxdoc") + "\n");
  const Ended broken = StatusOf({Path("archive"), "--list", "broken", "-0"});
  EXPECT_EQ(broken.out, Path("archive/sub/broken.hvxdoc") + '\0' + Path("archive/sub/empty.hvxdoc") + '\0');
  EXPECT_TRUE(broken.err.find(Path("archive/sub/empty.hvxdoc") + ": the file is empty") != std::string::npos)
      << broken.err;
  EXPECT_EQ(StatusOf({Path("archive/sub"), "--exclude", "[be]*", "--check"}).code, 4);

  // What is wrong with a document that was named is a complaint.
  const Ended named = StatusOf({Path("archive/done.hvxdoc"), Path("archive/sub/empty.hvxdoc")});
  EXPECT_EQ(named.out,
            "2 documents, 3 features\n"
            "  current                         1   --list current\n"
            "  broken                          1   --list broken\n");
  EXPECT_TRUE(named.err.find("the file is empty") != std::string::npos) << named.err;
}

TEST_F(ArchiveTest, StatusNamesTheFirstOfVeryMany) {
  for (int i = 10; i < 32; ++i) Place("archive/" + std::to_string(i) + ".hvxdoc");
  const std::string text = StatusOf({Path("archive")}).out;
  EXPECT_TRUE(
      text.ends_with("/29.hvxdoc: 66 upgrades pending\n"
                     "  and 2 more; --list pending prints all\n"))
      << text;
}

TEST_F(ArchiveTest, WhatWasGivenTwiceIsDoneOnce) {
  Place("archive/a.hvxdoc");
  const Ended ended =
      Run({"upgrade", Path("archive"), Path("archive/a.hvxdoc"), Path("archive/"), "--in-place"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_EQ(ended.out.find("documents:"), std::string::npos) << ended.out;
}

TEST_F(ArchiveTest, AFolderWithoutDocumentsIsNoSuccess) {
  fs::create_directory(Path("archive"));
  const Ended ended = Run({"upgrade", Path("archive"), "--in-place"});
  EXPECT_EQ(ended.code, 3);
  EXPECT_TRUE(ended.err.find("no documents were found (*.hvxdoc, *.hvxdoc.gz, *.hvxdoc.zst)") !=
              std::string::npos)
      << ended.err;
}

TEST_F(ArchiveTest, AClashConcernsTheLaterDocument) {
  Place("one/a.hvxdoc");
  Place("two/a.hvxdoc");
  Place("two/b.hvxdoc");
  const Ended ended = Run({"upgrade", Path("one"), Path("two"), "--output-dir", Path("new")});
  EXPECT_EQ(ended.code, 5);
  EXPECT_TRUE(ended.err.find("would be written twice") != std::string::npos) << ended.err;
  EXPECT_EQ(Files("new"), (std::vector<std::string>{"a.hvxdoc", "b.hvxdoc"}));

  // A result must not become the document that comes next.
  Place("three/sub/a.hvxdoc");
  const std::string second = Content(Path("two/a.hvxdoc"));
  EXPECT_EQ(Run({"upgrade", Path("one"), Path("two"), "--output-dir", Path("two"), "--force"}).code, 5);
  EXPECT_EQ(Content(Path("two/a.hvxdoc")), second);
}

}  // namespace
}  // namespace tool_testing
