// What the program tells when upgrades of other libraries fail, and what it proposes then.

#include <gmock/gmock.h>

#include <sstream>

#include "PluginRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kBolts = R"({"id":1,"type":"SAMContainer","name":"Root"}
{"id":2,"type":"AcmeBoltLT","name":"Bolt","father":{"ref":1}}
{"id":3,"type":"AcmeBoltLT","name":"Sound","father":{"ref":1},"attributes":{"Needed":1}}
)";
constexpr const char* kAcme = "name Acme\nversion 3.1\ntype AcmeBoltLT\nneeds AcmeBolt\n";

class OthersUpgradesTest : public PluginTest {
 protected:
  // Runs the command that the program proposes, which no shell needs to take apart.
  [[nodiscard]] Ended RunNext(const std::string& out) const {
    const std::size_t begin = out.find("Next: hvxupgrade ");
    const std::size_t end = out.find(" shows what each needs", begin);
    if (begin == std::string::npos || end == std::string::npos) {
      ADD_FAILURE() << "nothing is proposed: " << out;
      return {};
    }
    std::istringstream words(out.substr(begin + 17, end - begin - 17));
    std::vector<std::string> arguments;
    for (std::string word; words >> word;)
      arguments.push_back(word.starts_with('\'') ? word.substr(1, word.size() - 2) : word);
    return Run(arguments);
  }
};

TEST_F(OthersUpgradesTest, AFailureTellsClassAndLibrary) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string file = Document("bolts.hvxdoc", kBolts);
  const Ended ended =
      RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc"), "--report", Path("r.jsonl")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_THAT(ended.out,
              AllOf(HasSubstr(R"(AcmeBoltLT "Bolt" (id 2))"), HasSubstr("; AcmeClass of Acme 3.1)"),
                    HasSubstr("--retry --only AcmeBolt. If it is sound, ask those who make Acme 3.1")));
  EXPECT_THAT(Content(Path("r.jsonl")),
              HasSubstr(R"("class":"AcmeClass","library":"Acme","libraryVersion":"3.1")"));
  EXPECT_THAT(Run({"report", Path("r.jsonl")}).out,
              HasSubstr("(AcmeBolt 0xFFFFFFB3; AcmeClass of Acme 3.1)"));
  // Of the program's own library it is plain whose upgrades they are; programs are told.
  const std::string job = Document("job.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  const Ended own = Run({"upgrade", job, "--dry-run", "--report", Path("own.jsonl")});
  EXPECT_THAT(own.out, AllOf(HasSubstr("Stray Job"), Not(HasSubstr("of HVXUpgradeComponents"))));
  EXPECT_THAT(Content(Path("own.jsonl")), HasSubstr(R"("library":"HVXUpgradeComponents")"));
}

TEST_F(OthersUpgradesTest, WhatIsCorrectedInTheResultIsUpgradedByName) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string file = Document("bolts.hvxdoc", kBolts);
  ASSERT_EQ(RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc")}).code, 1);
  std::string corrected = Content(Path("new.hvxdoc"));
  const std::string_view bolt = R"("name":"Bolt","father":{"ref":1})";
  corrected.insert(corrected.find(bolt) + bolt.size(), R"(,"attributes":{"Needed":1})");
  Put(Path("new.hvxdoc"), corrected);
  // No rule knows of it.
  EXPECT_THAT(RunWith({acme}, {"upgrade", "--retry", Path("new.hvxdoc"), "--in-place"}).out,
              HasSubstr("already current"));
  const Ended again =
      RunWith({acme}, {"upgrade", "--retry", "--only", "AcmeBolt", Path("new.hvxdoc"), "--in-place"});
  EXPECT_EQ(again.code, 0) << again.out << again.err;
  EXPECT_THAT(again.out, HasSubstr("1 of 3 features changed"));
  EXPECT_THAT(Content(Path("new.hvxdoc")),
              AllOf(HasSubstr(R"("upgrades":["AcmeBolt"])"), HasSubstr(R"("Needed":1,"Ran":"Acme;"}})")));
  // What such a library adds to the built-in one's late types does not make that run again.
  const std::string more = Library(
      "more.so", "name More\ncontinues HVXUpgradeComponents\ntype HVXJobLT\nupgrade UpgradeJobMemoryUnit\n");
  const std::string job = Path("job.hvxdoc");
  ASSERT_EQ(Run({"upgrade", Document("old.hvxdoc", kJobLines), "-o", job}).code, 0);
  EXPECT_THAT(
      Run({"--library", more, "upgrade", "--retry", "--only", "UpgradeJobMemoryUnit", job, "--dry-run"}).out,
      HasSubstr("already current"));
}

TEST_F(OthersUpgradesTest, TheCommandThatIsProposedShowsWhatEachNeeds) {
  const std::string acme = Library("acme.so", kAcme);
  const auto place = [this] {
    fs::create_directories(Path("archive"));
    static_cast<void>(Document("archive/a.hvxdoc", kBolts));
    static_cast<void>(Document("archive/b.hvxdoc", kBolts));
  };
  const auto expect = [&](std::vector<std::string> more, std::string_view command) {
    place();
    more.insert(more.begin(), {"upgrade", Path("archive")});
    const Ended ended = RunWith({acme}, more);
    EXPECT_EQ(ended.code, 1) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr(command));
    const Ended next = RunNext(ended.out);
    EXPECT_THAT(next.out, AllOf(HasSubstr("/a.hvxdoc"), HasSubstr("/b.hvxdoc"),
                                HasSubstr(R"(AcmeBoltLT "Bolt" (id 2))")))
        << ended.out << next.err;
    fs::remove_all(Path("archive"));
  };
  expect({"--output-dir", Path("new")}, "upgrade --dry-run --verbose");
  expect({"--dry-run"}, "upgrade --dry-run --verbose");
  expect({"--in-place", "--backup", ".old"}, "--include '*.old'");
  expect({"--in-place", "--strict"}, "upgrade --dry-run --verbose");
  expect({"--output-dir", Path("more"), "--report", Path("r.jsonl")}, "Next: hvxupgrade report ");
  // What rules find, they find in the result.
  fs::create_directories(Path("jobs"));
  static_cast<void>(Document("jobs/a.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine)));
  static_cast<void>(Document("jobs/b.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine)));
  const Ended jobs = Run({"--library", acme, "upgrade", Path("jobs"), "--output-dir", Path("jobs.new")});
  EXPECT_THAT(jobs.out,
              HasSubstr("Next: hvxupgrade --library " + acme + " check --verbose " + Path("jobs.new")));
  EXPECT_THAT(RunNext(jobs.out).out, HasSubstr("Stray Job"));
}

TEST_F(OthersUpgradesTest, WhatEndsAnUpgradeIsToldWithItsPlace) {
  const std::string acme = Library("acme.so", "name Acme\nversion 3.1\ntype AcmeBoltLT\nthrows AcmeBolt\n");
  const std::string named =
      Document("named.hvxdoc", R"({"id":2,"type":"AcmeBoltLT","name":"Bolt","alias":"Bolt.7"})"
                               "\n");
  const std::string nameless = Document("nameless.hvxdoc", R"({"id":2,"type":"AcmeBoltLT"})"
                                                           "\n");
  const std::string sound = Document("sound.hvxdoc", R"({"id":1,"type":"SAMContainer"})"
                                                     "\n");
  const Ended thrown = RunWith({acme}, {"upgrade", named, nameless, sound, "--output-dir", Path("new")});
  EXPECT_EQ(thrown.code, 1);
  EXPECT_THAT(
      thrown.err,
      AllOf(HasSubstr(named + ": the upgrade was stopped: AcmeBoltLT \"Bolt.7\" (id 2), AcmeBolt (AcmeClass "
                              "of Acme 3.1): an exception got out of it: std::out_of_range (Bolt). Nothing "
                              "was written. Look at the feature; if it is sound, give the document to those "
                              "who make Acme 3.1"),
            HasSubstr(nameless + ": the upgrade was stopped: AcmeBoltLT (id 2), AcmeBolt (AcmeClass of Acme "
                                 "3.1): an exception got out of it: int.")));
  EXPECT_FALSE(fs::exists(Path("new/named.hvxdoc")));
  EXPECT_TRUE(fs::exists(Path("new/sound.hvxdoc")));
  const std::string bad = Library("bad.so", "name Bad\ntype AcmeBoltLT\ncrashes BadBolt\n");
  EXPECT_THAT(
      RunWith({bad}, {"upgrade", named, "--dry-run"}).err,
      HasSubstr("in AcmeBoltLT \"Bolt.7\" (id 2), BadBolt (BadClass of Bad). Its file is as it was. Look at "
                "the feature; if it is sound, give the document to those who make Bad; "));
}

TEST_F(OthersUpgradesTest, ADocumentWithoutAResultIsOneThingForAPerson) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string file = Document("bolts.hvxdoc", kBolts);
  static_cast<void>(RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc")}));
  EXPECT_EQ(Run({"upgrade", Path("new.hvxdoc"), "--dry-run", "--report", Path("r.jsonl")}).code, 4);
  EXPECT_THAT(Content(Path("r.jsonl")), AllOf(HasSubstr(R"("verdict":"notLoaded")"),
                                              HasSubstr(R"("thingsForPerson":1,"needsPerson":[{)")));
  EXPECT_THAT(Run({"report", Path("r.jsonl")}).out, HasSubstr("1 thing needs a person"));
}

TEST_F(OthersUpgradesTest, DiffAndShowTellTheLibraries) {
  const std::string old = Library("old.so", "name Acme\nversion 3.1\nconversion AcmeBolt\n");
  const std::string recent = Library("new.so", "name Acme\nversion 4\nconversion AcmeBolt\n");
  const std::string file = Document("bolts.hvxdoc", kBolts);
  ASSERT_EQ(RunWith({old}, {"upgrade", file, "-o", Path("a.hvxdoc")}).code, 0);
  ASSERT_EQ(RunWith({recent}, {"upgrade", file, "-o", Path("b.hvxdoc")}).code, 0);
  const std::string untold = Document("c.hvxdoc", kBolts, R"("AcmeBolt")");
  const auto differ = [this](const std::string& before, const std::string& after, const std::string& words,
                             const std::string& json) {
    const Ended text = Run({"diff", before, after});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out, AllOf(HasSubstr("0 features changed"), HasSubstr("\n" + words + "\n")));
    EXPECT_THAT(Run({"diff", "--json", before, after}).out,
                AllOf(HasSubstr(R"("different":true)"), HasSubstr("\"sources\":[" + json + "]")));
  };
  differ(
      Path("a.hvxdoc"), Path("b.hvxdoc"), "~ upgrade AcmeBolt: Acme 3.1 -> Acme 4",
      R"({"upgrade":"AcmeBolt","before":{"name":"Acme","version":"3.1"},"after":{"name":"Acme","version":"4"}})");
  differ(untold, Path("b.hvxdoc"), "~ upgrade AcmeBolt: a library that is not told -> Acme 4",
         R"({"upgrade":"AcmeBolt","after":{"name":"Acme","version":"4"}})");
  differ(file, Path("b.hvxdoc"), "+ upgrade AcmeBolt of Acme 4",
         R"({"upgrade":"AcmeBolt","after":{"name":"Acme","version":"4"}})");
  EXPECT_EQ(Run({"diff", Path("a.hvxdoc"), Path("a.hvxdoc")}).code, 0);
  EXPECT_EQ(Run({"diff", Path("a.hvxdoc"), Path("b.hvxdoc"), "--html", Path("diff.html")}).code, 1);

  EXPECT_THAT(Run({"show", Path("a.hvxdoc")}).out,
              testing::StartsWith("upgrades of Acme 3.1: AcmeBolt\n1 SAM"));
  EXPECT_THAT(Run({"show", untold}).out, testing::StartsWith("1 SAM"));
  EXPECT_THAT(Run({"show", "--json", Path("a.hvxdoc")}).out,
              HasSubstr(R"("libraries":[{"name":"Acme","version":"3.1","upgrades":["AcmeBolt"]}])"));
}

// Of documents that have no result there are none.
TEST_F(OthersUpgradesTest, TheCommandThatIsProposedNamesTheBackupsThatThereAre) {
  const std::string acme = Library("acme.so", kAcme);
  const std::string bolts = Document("bolts.hvxdoc", kBolts);
  const std::string broken = Document("broken.hvxdoc", "{\n");
  const Ended ended = RunWith({acme}, {"upgrade", bolts, broken, "--in-place", "--backup", ".old"});
  EXPECT_THAT(ended.out, HasSubstr("--verbose " + bolts + ".old shows what each needs\n"));
  const Ended next = RunNext(ended.out);
  EXPECT_EQ(next.code, 1) << next.err;
  EXPECT_THAT(next.out, HasSubstr(R"(AcmeBoltLT "Bolt" (id 2))"));
}

TEST_F(OthersUpgradesTest, NoCommandIsProposedThatWouldNotShowIt) {
  const std::string acme = Library("acme.so", kAcme);
  const auto run = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"upgrade", Document("a.hvxdoc", kBolts), Document("b.hvxdoc", kBolts),
                               "--in-place", "--accept-failures"});
    return RunWith({acme}, more).out;
  };
  EXPECT_THAT(run({}), AllOf(Not(HasSubstr("Next:")), HasSubstr("give --report FILE to keep that")));
  const std::string reported = run({"--report", Path("r.jsonl")});
  EXPECT_THAT(reported, Not(HasSubstr("--report FILE")));
  EXPECT_THAT(RunNext(reported).out, HasSubstr(R"(AcmeBoltLT "Bolt" (id 2))"));
}

TEST_F(OthersUpgradesTest, ACommandAboutSomeOfThemSaysSo) {
  std::vector<std::string> arguments = {"upgrade", "--jobs", "1", "--in-place", "--backup", ".old"};
  for (const char* const name : {"a", "b", "c", "d", "e", "f"})
    arguments.push_back(Document(std::string(name) + ".hvxdoc", kBolts));
  EXPECT_THAT(
      RunWith({Library("acme.so", kAcme)}, arguments).out,
      AllOf(HasSubstr("e.hvxdoc.old shows what the first 5 of them need\n"), Not(HasSubstr("f.hvxdoc.old"))));
}

// No rule judges what they change, but a gate must not let through what no upgrade has seen.
TEST_F(OthersUpgradesTest, CheckTellsWhatIsPending) {
  const std::string acme = Library("acme.so", std::string(kAcme) + "conversion AcmeDocument\n");
  const std::string file = Document("bolts.hvxdoc", kBolts);
  const Ended pending = RunWith({acme}, {"check", file});
  EXPECT_EQ(pending.code, 6);
  EXPECT_THAT(pending.out, AllOf(HasSubstr("does not conform"), HasSubstr("(AcmeBolt)"),
                                 HasSubstr("(AcmeDocument)"), HasSubstr(R"(2 AcmeBoltLT "Bolt")")));
  EXPECT_THAT(RunWith({acme}, {"check", "--json", file}).out,
              HasSubstr(R"("kind":"pending","upgrade":"AcmeBolt")"));
  static_cast<void>(RunWith({acme}, {"upgrade", file, "-o", Path("new.hvxdoc")}));
  EXPECT_EQ(RunWith({acme}, {"check", Path("new.hvxdoc")}).code, 0);
}

// A document of an older program names no library: the upgrade may be a newer program's or any library's.
TEST_F(OthersUpgradesTest, WhereNobodyCanTellBothAreSaid) {
  const std::string file = Document("bolts.hvxdoc", kBolts, R"("AcmeBolt")");
  const auto both =
      AllOf(HasSubstr("of a newer release of this program, or of a library that is not loaded"),
            HasSubstr("Use a newer release of this program, or load the library that has AcmeBolt "
                      "with --library FILE or --plugins FOLDER"));
  const Ended ended = Run({"upgrade", file, "--dry-run"});
  EXPECT_EQ(ended.code, 4);
  EXPECT_THAT(ended.err, both);
  EXPECT_THAT(Run({"status", file}).out,
              AllOf(HasSubstr("upgraded by a newer program or a library that is not loaded"),
                    HasSubstr("or load the library that has AcmeBolt")));
}

}  // namespace
}  // namespace tool_testing
