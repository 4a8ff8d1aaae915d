// Several upgrade libraries together, and documents that were through upgrades of one that is not loaded.

#include <gmock/gmock.h>

#include <cstdlib>

#include "PluginRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kBolts = R"({"id":1,"type":"SAMContainer","name":"Root"}
{"id":2,"type":"AcmeBoltLT","name":"Bolt","father":{"ref":1}}
)";
constexpr const char* kAcme = "name Acme\nversion 3.1\ntype AcmeBoltLT\nupgrade AcmeBolt\n";

class LibrariesTest : public PluginTest {
 protected:
  // What the routines of the libraries left at the bolt of a document that was upgraded by them.
  [[nodiscard]] std::string Ran(const std::vector<std::string>& libraries) {
    const std::string file = Document("bolts.hvxdoc", kBolts);
    const Ended ended = RunWith(
        libraries, {"upgrade", file, "-o", Path("new.hvxdoc"), "--force", "--report", Path("r.jsonl")});
    EXPECT_LE(ended.code, 1) << ended.err;
    const std::string result = Content(Path("new.hvxdoc"));
    const std::size_t begin = result.find(R"("Ran":")") + 7;
    return result.substr(begin, result.find('"', begin) - begin);
  }
};

TEST_F(LibrariesTest, LibrariesComeFromOptionsFoldersAndTheEnvironment) {
  const std::string one = Library("one.so", kAcme);
  static_cast<void>(Library("plugins/b.so", "name Bolts\nconversion BoltOfFolder\n"));
  static_cast<void>(Library("plugins/a.so", "name Zinc\nconversion ZincOfFolder\n"));
  static_cast<void>(Library("more/c.so", "name Extra\nconversion ExtraOfVariable\n"));
  Put(Path("plugins/.hidden.so"), "no library");
  fs::create_directories(Path("plugins/folder.so"));
  fs::create_symlink(one, Path("more/again.so"));
  setenv("HVXUPGRADE_PLUGINS", (":" + Path("more") + ":").c_str(), 1);

  const Ended all = Run({"--plugins", Path("plugins"), "--library", one, "--library", one, "identifiers"});
  EXPECT_EQ(all.code, 0) << all.err;
  // The built-in one first, the others by name.
  EXPECT_THAT(all.out, HasSubstr("HVXUpgradeComponents 1."));
  std::size_t last = 0;
  for (const char* const next :
       {"UpgradeJobMemoryUnit", "AcmeBolt", "BoltOfFolder", "ExtraOfVariable", "ZincOfFolder"}) {
    const std::size_t found = all.out.find(std::string("  ") + next);
    EXPECT_NE(found, std::string::npos) << next;
    EXPECT_GT(found, last) << next;
    last = found;
  }
  EXPECT_THAT(
      Run({"--no-default-library", "identifiers", "--json"}).out,
      AllOf(HasSubstr(R"("upgrade":"ExtraOfVariable","library":"Extra")"), Not(HasSubstr("Components"))));
  unsetenv("HVXUPGRADE_PLUGINS");
  const Ended none = Run({"--no-default-library", "identifiers"});
  EXPECT_EQ(none.code, 2);
  EXPECT_THAT(none.err, HasSubstr("give one with --library or --plugins"));
}

TEST_F(LibrariesTest, LibrariesThatClaimTheSameAreRefused) {
  const std::string acme = Library("acme.so", kAcme);
  ExpectRefused({acme, Library("copy.so", kAcme)},
                AllOf(HasSubstr("are both the upgrade library Acme"), HasSubstr(acme), HasSubstr("copy.so")));
  ExpectRefused({acme, Library("b.so", "name B\ntype AcmeBoltLT\nupgrade OfB\n")},
                AllOf(HasSubstr("both extend AcmeBoltLT with HVXIUpgrade: AcmeClass and BClass"),
                      HasSubstr("if B was written to be used with Acme")));
  ExpectRefused({acme, Library("b.so", "name B\nconversion AcmeBolt\n")},
                HasSubstr("both have the upgrade AcmeBolt. A document"));
  // No word in a description makes these two work together.
  ExpectRefused({Library("a.so", "name A\ntype T\ninterface VLMISamUpgrade\n"),
                 Library("b.so", "name B\ncontinues A\ntype T\ninterface VLMISamUpgrade\n")},
                AllOf(HasSubstr("both extend T with VLMISamUpgrade"), Not(HasSubstr("written to be used"))));
  ExpectRefused({Library("a.so", "name A\nconversion Same\n"),
                 Library("b.so", "name B\ncontinues A\nconversion Same\n")},
                HasSubstr("both convert whole documents for the upgrade Same"));
  ExpectRefused({Library("b.so", "name B\ntype HVXJobLT\nupgrade OfB\n")},
                HasSubstr("both extend HVXJobLT with HVXIUpgrade: HVXEJobUpgrade and BClass"), true);
  EXPECT_THAT(Run({"--library", Library("c.so", "name HVXUpgradeComponents\n"), "identifiers"}).err,
              HasSubstr("--no-default-library leaves out the installed one"));
}

TEST_F(LibrariesTest, ContinuingNeedsWhatIsContinuedAndNoCircle) {
  ExpectRefused({Library("b.so", "name B\ncontinues A\n")},
                HasSubstr("continues the upgrade library A, which is not loaded"));
  ExpectRefused({Library("b.so", "name B\ncontinues HVXUpgradeComponents\n")},
                HasSubstr("Do not leave out the installed library (--no-default-library)"));
  ExpectRefused({Library("s.so", "name Self\ncontinues Self\n")}, HasSubstr("Self continues Self"));
  ExpectRefused({Library("a.so", "name A\ncontinues C\n"), Library("b.so", "name B\ncontinues A\n"),
                 Library("c.so", "name C\ncontinues B\n"), Library("d.so", "name 0\ncontinues A\n")},
                HasSubstr("A continues C continues B continues A"));
}

TEST_F(LibrariesTest, ALibraryThatContinuesAnotherSharesItsFeatures) {
  const std::string acme =
      Library("acme.so", "name Zacme\nversion 1\ntype AcmeBoltLT\nfails Both\nupgrade OfZacme\n");
  const std::string more =
      Library("more.so", "name Amore\ncontinues Zacme\ntype AcmeBoltLT\nfails Both\nupgrade OfAmore\n");
  for (const std::vector<std::string>& order : {std::vector{acme, more}, {more, acme}}) {
    // The continued one first, for what both bind, and each its own.
    EXPECT_EQ(Ran(order), "Zacme;Amore;Zacme;Amore;");
    // Both results were looked at.
    const std::string report = Content(Path("r.jsonl"));
    EXPECT_THAT(report, HasSubstr(R"("thingsForPerson":2)"));
    fs::remove(Path("r.jsonl"));
    const Ended told = RunWith(order, {"identifiers", "Both"});
    EXPECT_THAT(
        told.out,
        AllOf(HasSubstr("Of Zacme 1\n"),
              HasSubstr("Features of AcmeBoltLT are handed to ZacmeClass of Zacme, then to AmoreClass")));
    EXPECT_THAT(
        RunWith(order, {"identifiers", "--json"}).out,
        AllOf(HasSubstr(R"("shared":[{"lateType":"AcmeBoltLT","classes":["ZacmeClass","AmoreClass"]}])"),
              HasSubstr(R"("continues":["Zacme"])")));
  }
}

TEST_F(LibrariesTest, WhatTheFirstExtensionRemovesTheSecondIsNotHanded) {
  const std::string acme = Library("acme.so", "name A\ntype AcmeBoltLT\nremoves Both\n");
  const std::string more = Library("more.so", "name B\ncontinues A\ntype AcmeBoltLT\nfails Both\n");
  const std::string file = Document("bolts.hvxdoc", kBolts);
  const Ended ended = RunWith({acme, more}, {"upgrade", file, "-o", Path("new.hvxdoc")});
  EXPECT_EQ(ended.code, 0) << ended.out << ended.err;
  EXPECT_THAT(Content(Path("new.hvxdoc")), Not(HasSubstr("AcmeBoltLT")));
}

TEST_F(LibrariesTest, AnOrderMayNameUpgradesOfOtherLibraries) {
  const std::string a =
      Library("a.so", "name A\ntype AcmeBoltLT\nupgrade OfA\norder OfB OfA\norder OfNobody OfA\n");
  const std::string b = Library("b.so", "name B\ncontinues A\ntype AcmeBoltLT\nupgrade OfB\n");
  EXPECT_EQ(Ran({a, b}), "B;A;");
  EXPECT_THAT(Content(Path("new.hvxdoc")), HasSubstr(R"("upgrades":["OfA","OfB"])"));
  // Of a library that is not there, an order makes nothing known.
  EXPECT_THAT(RunWith({a}, {"identifiers", "--json"}).out, Not(HasSubstr("OfB")));
}

TEST_F(LibrariesTest, TheHeaderTellsWhichLibraryUpgradesCameFrom) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string file = Document("bolts.hvxdoc", kBolts);
  ASSERT_EQ(RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc")}).code, 0);
  const std::string header =
      R"({"format":"hvxdoc","version":2,"upgrades":["AcmeBolt"],"libraries":[{"name":"Acme","version":"3.1","upgrades":["AcmeBolt"]}],"features":2})";
  EXPECT_THAT(Content(Path("new.hvxdoc")), testing::StartsWith(header + "\n"));
  // A newer version adds to it.
  static_cast<void>(Library("acme.so", std::string(kAcme) + "version 4\nupgrade AcmeNut\n"));
  ASSERT_EQ(RunWith({acme}, {"upgrade", Path("new.hvxdoc"), "--in-place"}).code, 0);
  EXPECT_THAT(Content(Path("new.hvxdoc")),
              HasSubstr(R"("libraries":[{"name":"Acme","version":"3.1","upgrades":["AcmeBolt"]},)"
                        R"({"name":"Acme","version":"4","upgrades":["AcmeNut"]}])"));
  // An older program told no library. Of which version that was, nobody knows.
  const std::string old = Document("old.hvxdoc", kBolts, R"("AcmeBolt")");
  ASSERT_EQ(RunWith({acme}, {"upgrade", old, "--in-place"}).code, 0);
  EXPECT_THAT(Content(old), HasSubstr(R"("libraries":[{"name":"Acme","upgrades":["AcmeBolt"]},)"));
  // What came from the built-in library alone needs nothing new.
  const std::string job = Document("job.hvxdoc", kJobLines);
  ASSERT_EQ(Run({"--library", acme, "upgrade", job, "--in-place", "--only", "UpgradeJobMemoryUnit"}).code, 0);
  EXPECT_THAT(Content(job), testing::StartsWith(R"({"format":"hvxdoc","version":1,)"));
}

TEST_F(LibrariesTest, ADocumentOfALibraryThatIsNotLoadedIsToldAsThat) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string file = Document("bolts.hvxdoc", kBolts);
  ASSERT_EQ(RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc")}).code, 0);
  const std::string before = Content(Path("new.hvxdoc"));
  const auto expect = [&](const std::vector<std::string>& command, int code,
                          const testing::Matcher<std::string>& what) {
    const Ended ended = Run(command);
    EXPECT_EQ(ended.code, code) << ended.out << ended.err;
    EXPECT_THAT(ended.out + ended.err, what);
  };
  // Something is pending: nothing may run behind the back of that library.
  const auto isNamed = HasSubstr("of Acme 3.1, which is not loaded");
  const auto isTold = HasSubstr("upgraded by Acme 3.1, which is not loaded");
  const std::string json =
      R"("missingLibraries":[{"name":"Acme","version":"3.1","loaded":false,"upgrades":["AcmeBolt"]}])";
  expect(
      {"upgrade", Path("new.hvxdoc"), "--in-place", "--report", Path("r.jsonl")}, 4,
      AllOf(isTold, HasSubstr("Load Acme with --library FILE or --plugins FOLDER"), Not(HasSubstr("newer"))));
  EXPECT_THAT(Content(Path("r.jsonl")), AllOf(HasSubstr(R"("verdict":"notLoaded")"), HasSubstr(json)));
  expect({"status", Path("new.hvxdoc")}, 4,
         HasSubstr("upgraded by a library that is not loaded, 66 upgrades"));
  expect({"status", Path("new.hvxdoc")}, 4,
         HasSubstr("Unknown here, of Acme 3.1, which is not loaded: AcmeBolt"));
  expect({"status", "--json", Path("new.hvxdoc")}, 4,
         AllOf(HasSubstr(R"("verdict":"notLoaded")"), HasSubstr(json), HasSubstr(R"("newerUpgrades":[])")));
  expect({"status", "--list", "notLoaded", Path("new.hvxdoc"), file}, 4, Path("new.hvxdoc") + "\n");
  expect({"check", Path("new.hvxdoc")}, 4, isTold);
  expect({"check", Path("new.hvxdoc"), file}, 4, HasSubstr("1 upgraded by a library that is not loaded"));
  expect({"check", "--json", Path("new.hvxdoc")}, 4,
         AllOf(HasSubstr(R"("verdict":"notLoaded")"), HasSubstr(json)));
  expect({"upgrade", Path("new.hvxdoc"), file, "--dry-run"}, 4,
         HasSubstr("1 upgraded by a library that is not loaded"));
  EXPECT_EQ(Content(Path("new.hvxdoc")), before);

  // Nothing is pending: nothing is to be done, and that is no failure.
  ASSERT_EQ(Run({"--library", acme, "upgrade", Path("new.hvxdoc"), "--in-place"}).code, 0);
  expect({"status", Path("new.hvxdoc")}, 0,
         AllOf(HasSubstr("current, 66 upgrades done, 1 unknown"), HasSubstr("Acme 3.1")));
  expect({"upgrade", Path("new.hvxdoc"), "-o", Path("copy.hvxdoc")}, 0,
         AllOf(HasSubstr("already current"), isTold));
  EXPECT_EQ(Content(Path("copy.hvxdoc")), Content(Path("new.hvxdoc")));
  expect({"check", Path("new.hvxdoc")}, 0, AllOf(HasSubstr("conforms"), isTold));
  expect({"upgrade", Path("new.hvxdoc"), Path("copy.hvxdoc"), "--in-place"}, 0,
         HasSubstr("2 documents: 2 already current"));
  // An upgrade of that name in another library is another upgrade, and nobody knows whether it is needed.
  const std::string other = Library("other.so", "name Other\nconversion AcmeBolt\n");
  expect({"--library", other, "status", Path("new.hvxdoc")}, 4, isNamed);
  expect({"--library", other, "upgrade", Path("new.hvxdoc"), "--in-place"}, 4, isTold);
  // The same the other way round.
  expect({"--no-default-library", "--library", acme, "status", Path("new.hvxdoc")}, 0,
         AllOf(HasSubstr("HVXUpgradeComponents or another library, which is not loaded"),
               HasSubstr("Leave out --no-default-library")));
}

TEST_F(LibrariesTest, AnotherVersionOfALibraryIsNotCalledNewer) {
  const std::string acme = Library("acme.so", std::string(kAcme) + "upgrade AcmeNut\n");
  const std::string file = Document("bolts.hvxdoc", kBolts);
  ASSERT_EQ(RunWith({acme}, {"upgrade", file, "--in-place"}).code, 0);
  static_cast<void>(Library("acme.so", std::string(kAcme) + "version 2.0\n"));
  const Ended ended = RunWith({acme}, {"upgrade", file, "--in-place"});
  EXPECT_EQ(ended.code, 4);
  EXPECT_THAT(ended.err,
              HasSubstr("upgraded by Acme 3.1, of which another version is loaded (2.0). Use the version of "
                        "Acme that has AcmeNut"));
  EXPECT_THAT(
      RunWith({acme}, {"status", "--json", file}).out,
      AllOf(
          HasSubstr(R"("verdict":"newer","words":"upgraded by another version of a library that is loaded")"),
          HasSubstr(R"("newerUpgrades":["AcmeNut"])"), HasSubstr(R"("loaded":true,"loadedVersion":"2.0")")));
}

// Names of documents, permissions of results and what is on standard output are the user's.
TEST_F(LibrariesTest, WhatARoutineDoesToTheProcessReachesNoDocument) {
  const std::string acme = Library("acme.so", "name Acme\ntype AcmeBoltLT\ndisturbs AcmeBolt\n");
  for (const char* const name : {"a.hvxdoc", "b.hvxdoc"}) static_cast<void>(Document(name, kBolts));
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Path(""));
  const Ended ended = RunWith({acme}, {"upgrade", "a.hvxdoc", "b.hvxdoc", "--output-dir", "new", "-j", "1"});
  const Ended streamed = RunWith({acme}, {"upgrade", "a.hvxdoc", "-o", "-"});
  std::filesystem::current_path(before);
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_EQ(streamed.code, 0) << streamed.err;
  EXPECT_EQ(streamed.out, Content(Path("new/a.hvxdoc")));
  EXPECT_EQ(Content(Path("new/b.hvxdoc")), Content(Path("new/a.hvxdoc")));
  EXPECT_THAT(streamed.err, HasSubstr("out\nof the library"));
}

}  // namespace
}  // namespace tool_testing
