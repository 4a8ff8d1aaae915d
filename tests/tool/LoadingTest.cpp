// Upgrade libraries that cannot be loaded, that should not be, and that end the program meanwhile.

#include <sys/stat.h>

#include "PluginRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class LoadingTest : public PluginTest {
 protected:
  [[nodiscard]] std::string Complaint(std::vector<std::string> arguments) const {
    arguments.emplace_back("identifiers");
    const Ended ended = Run(arguments);
    EXPECT_EQ(ended.code, 3);
    return ended.err;
  }
  // Of a file with these bytes of a library, the byte at `place` being another.
  [[nodiscard]] std::string ComplaintOfBytes(std::size_t size, std::size_t place, char byte) const {
    std::string bytes = Content(SCRIPTED_LIBRARY);
    bytes.at(place) = byte;
    Put(Path("bytes.so"), bytes.substr(0, size));
    return Complaint({"--library", Path("bytes.so")});
  }
};

TEST_F(LoadingTest, WhatIsNoLibraryIsToldByItsName) {
  ASSERT_EQ(mkfifo(Path("pipe.so").c_str(), 0600), 0);
  EXPECT_THAT(Complaint({"--library", Path("pipe.so")}), HasSubstr("pipe.so: this is not a regular file"));
  Put(Path("text.so"), "text");
  EXPECT_THAT(Complaint({"--library", Path("text.so")}),
              HasSubstr("text.so: the upgrade library cannot be loaded (this is no shared library). Give"));
  EXPECT_THAT(Complaint({"--library", Path("none.so")}),
              HasSubstr("none.so: the upgrade library cannot be loaded (No such file or directory)"));
  EXPECT_THAT(Complaint({"--library", HVXUPGRADE_PROGRAM}), HasSubstr("(this is a program). Give another"));
  EXPECT_THAT(Complaint({"--library", Library("nameless.so", "name \n")}),
              HasSubstr("nameless.so: the upgrade library has no name"));
  constexpr std::size_t kWhole = std::string::npos;
  constexpr std::size_t kClass = 4;
  constexpr std::size_t kType = 16;
  constexpr std::size_t kMachine = 18;
  EXPECT_THAT(ComplaintOfBytes(kWhole, kClass, 1), HasSubstr("(it was built for another kind of processor)"));
  EXPECT_THAT(ComplaintOfBytes(kWhole, kMachine, 1),
              HasSubstr("(it was built for another kind of processor)"));
  EXPECT_THAT(ComplaintOfBytes(kWhole, kType, 1), HasSubstr("Link it as one (-shared)"));
  EXPECT_THAT(ComplaintOfBytes(0, 0, 0), HasSubstr("(the file is empty). Reinstall it"));
  // Mapping such a library would end the program.
  for (const std::size_t size : {20U, 100U, 5000U})
    EXPECT_THAT(ComplaintOfBytes(size, 9, 0), HasSubstr("(the file is cut off). Reinstall it"));
}

TEST_F(LoadingTest, WhatALibraryLacksIsToldWithWhatToDo) {
  EXPECT_THAT(
      Complaint({"--library", LACKING_SYMBOL}),
      HasSubstr("(it uses VLMNeverMade::Call(int), which is not found). Rebuild it with the headers"));
  EXPECT_THAT(Complaint({"--library", LACKING_LIBRARY}),
              HasSubstr("(it needs libNeededLibrary.so, which is not found). Install that, or"));
}

TEST_F(LoadingTest, FoldersOfPluginsAreToldFromWhereTheyWereNamed) {
  fs::create_directories(Path("empty"));
  Put(Path("text.so"), "text");
  EXPECT_THAT(Complaint({"--plugins", Path("none")}), HasSubstr(Path("none") + ": the folder of plug-ins"));
  EXPECT_THAT(Complaint({"--plugins", Path("empty")}), HasSubstr("empty: this folder of plug-ins holds no"));
  EXPECT_THAT(Complaint({"--plugins", Path("text.so")}), HasSubstr("--library takes files"));
  EXPECT_THAT(Complaint({"--library", Path("empty")}), HasSubstr("--plugins takes folders"));
  setenv("HVXUPGRADE_PLUGINS", Path("gone").c_str(), 1);
  EXPECT_THAT(Complaint({}),
              HasSubstr("HVXUPGRADE_PLUGINS: " + Path("gone") + ": the folder of plug-ins cannot be read"));
  // Nobody who is not asked for this folder is held up by it, and told once, whatever the number of workers.
  setenv("HVXUPGRADE_PLUGINS", Path("empty").c_str(), 1);
  const std::string first = Document("a.hvxdoc", kJobLines);
  const Ended ended = Run({"upgrade", first, Document("b.hvxdoc", kJobLines), "--in-place", "--jobs", "2"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  const std::string told = "HVXUPGRADE_PLUGINS names " + Path("empty") + ", a folder that holds no upgrade";
  EXPECT_THAT(ended.err, HasSubstr(told));
  EXPECT_EQ(ended.err.find(told), ended.err.rfind(told));
}

// Whatever its code does before it can be asked for anything.
TEST_F(LoadingTest, ALibraryThatEndsTheProgramIsNamed) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  for (const std::string_view when : {"loading", "asked"}) {
    for (const std::string_view how : {"throws", "exits", "quits", "aborts", "crashes", "recurses"}) {
      SCOPED_TRACE(std::string(when) + " " + std::string(how));
      const std::string library =
          Library("e.so", "name E\nconversion L\nends " + std::string(when) + " " + std::string(how) + "\n");
      const Ended ended = Run({"--library", library, "upgrade", file, "--in-place"});
      // Signals go on, so that there is a core.
      const bool isSignal = how != "throws" && how != "exits" && how != "quits";
      EXPECT_THAT(ended.code, isSignal ? testing::Matcher<int>(testing::Ne(0)) : 3);
      EXPECT_THAT(ended.err, HasSubstr("e.so: the upgrade library "));
      const bool isCaught = when == "asked" && how == "throws";
      EXPECT_THAT(ended.err, HasSubstr(isCaught ? "threw something when it was asked for its description (no"
                                                : "ended the program while it was loaded ("));
      EXPECT_EQ(Content(file), before);
    }
  }
  static_cast<void>(Library("e.so", "name E\nends loading throws\n"));
  EXPECT_THAT(Run({"--library", Path("e.so"), "identifiers"}).err,
              HasSubstr("(it threw: no licence). Correct it, or leave it out\n"));
  static_cast<void>(Library("e.so", "name E\nends loading exits\n"));
  EXPECT_THAT(Run({"--library", Path("e.so"), "identifiers"}).err, HasSubstr("(it called exit)"));
}

TEST_F(LoadingTest, ALibraryThatEndsTheProgramAtItsEndIsNamedAndTakesNoOutputAlong) {
  for (const std::string how : {"throws", "exits", "aborts", "crashes"}) {
    const Ended ended =
        RunWith({Library("e.so", "name E\nconversion OfE\nends unloading " + how + "\n")}, {"identifiers"});
    EXPECT_NE(ended.code, 0) << how;
    EXPECT_THAT(ended.err, HasSubstr("e.so: the upgrade library ended the program while it was unloaded"));
    EXPECT_THAT(ended.out, HasSubstr("OfE"));
  }
}

TEST_F(LoadingTest, TablesThatNobodyCouldWorkWithAreRefused) {
  const auto expect = [this](const std::string& script, const testing::Matcher<std::string>& why) {
    ExpectRefused({Library("t.so", "name T\n" + script)}, why);
  };
  expect("version \xFF\n", HasSubstr("t.so: the upgrade library has a name or version that is not UTF-8"));
  expect("continues \n", HasSubstr("continues a library that it does not name"));
  expect("type AcmeBoltLT\nrival AcmeBoltLT\n",
         HasSubstr("extends AcmeBoltLT with HVXIUpgrade twice: TClass and Rival"));
  expect("type AcmeBoltLT\nundeclared\n", HasSubstr("describes TClass for AcmeBoltLT and never declared it"));
  expect("type AcmeBoltLT\ntype AcmeBoltLT\n", HasSubstr("names the late type AcmeBoltLT twice in TClass"));
  expect("type AcmeBoltLT\nupgrade A\nupgrade A\n",
         HasSubstr("has two rows for A in TClass, of which only the first would run"));
  expect("type AcmeBoltLT\nlists AcmeBolts\nupgrade AcmeBolt\n",
         HasSubstr("lists AcmeBolts among its identifiers, and no row or conversion answers it: it would be "
                   "recorded without having run (did you mean AcmeBolt?)"));
  expect("lists A\nlists A\nconversion A\n", HasSubstr("lists A twice among its identifiers"));
  expect("conversion A\nconversion A\n", HasSubstr("converts whole documents twice for A"));
}

TEST_F(LoadingTest, IdentifiersThatNoCommandCouldNameAreRefused) {
  const auto expect = [this](const std::string& identifier, const std::string& why) {
    ExpectRefused({Library("t.so", "name T\nconversion " + identifier + "\n")}, HasSubstr(why));
  };
  expect("A,B", R"(has the identifier "A,B", which no command could name: it has a comma)");
  expect("-A", R"(has the identifier "-A", which no command could name: it begins with "-")");
  expect("A\x1b[31m", "it has a blank or a control character");
}

// It gives them a place in its own order.
TEST_F(LoadingTest, ALibraryMayListWhatTheOneThatItContinuesAnswers) {
  const std::string more =
      Library("more.so", "name More\ncontinues HVXUpgradeComponents\nlists UpgradeJobMemoryUnit\n");
  EXPECT_EQ(RunWith({more}, {"identifiers"}, true).code, 0);
}

TEST_F(LoadingTest, OrdersThatCannotBeKeptAreRefused) {
  const auto a = [this](const std::string& orders) {
    return Library("a.so", "name A\nconversion A1\nconversion A2\nconversion A3\n" + orders);
  };
  ExpectRefused({a("order A1 A1\n")}, HasSubstr("wants A1 to run before itself"));
  ExpectRefused({a("order A1 \n")}, HasSubstr("identifier that is empty"));
  ExpectRefused({a("order B1 B2\n")}, HasSubstr("has an upgrade of neither name"));
  // What only leads to the circle is no part of it.
  ExpectRefused({a("order A3 A1\norder A1 A2\norder A2 A1\n")},
                AllOf(HasSubstr("the orders of A ("), HasSubstr(": A1 before A2 before A1. Correct them\n")));
  const std::string b = Library("b.so", "name B\nconversion B1\norder B1 A1\n");
  ExpectRefused({a("order A1 A2\norder A2 B1\n"), b},
                AllOf(HasSubstr("A1 before A2 before B1 before A1"), HasSubstr("a.so"), HasSubstr("b.so"),
                      HasSubstr("or leave one of the libraries out")));
  const Ended alone = RunWith({a("order A1 A2\norder A2 B1\n")}, {"identifiers"});
  EXPECT_EQ(alone.code, 0);
  EXPECT_THAT(alone.out, HasSubstr("A orders A2 before B1; no library that is loaded has B1\n"));
}

}  // namespace
}  // namespace tool_testing
