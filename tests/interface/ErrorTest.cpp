// What goes wrong is told so that a program can show it, and its user knows what to do next.

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using ErrorTest = InterfaceTest;

TEST_F(ErrorTest, AFaultOfADocumentNamesFileLineAndNextMove) {
  const std::filesystem::path file =
      Put("bad.hvxdoc", "{\"id\":1,\"type\":\"A\"}\n{\"id\":2,\"type\":\"B\",\"attributes\":{\"x\":[}}\n");
  const auto error = ErrorOf([&] { static_cast<void>(Read(file)); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->GetKind(), Kind::kInvalid);
  EXPECT_EQ(error->File(), file.string());
  EXPECT_EQ(error->Line(), 3U);
  EXPECT_THAT(error->Problem(), HasSubstr("not valid JSON"));
  EXPECT_EQ(error->what(), file.string() + ":3: " + error->Problem() + ". " + error->Advice());
}

TEST_F(ErrorTest, EachCauseHasItsKind) {
  const auto read = [](const std::filesystem::path& file) { static_cast<void>(Read(file)); };
  ExpectError(Kind::kUnreadable, "cannot be opened", [&] { read(folder_ / "nothing"); });
  ExpectError(Kind::kUnreadable, "cannot be opened",
              [&] { static_cast<void>(ReadHeader(folder_ / "nothing")); });
  ExpectError(Kind::kUnreadable, "cannot be opened", [&] { LineReader(folder_ / "nothing"); });
  const std::filesystem::path newer =
      folder_.Put("newer.hvxdoc", R"({"format":"hvxdoc","version":99,"upgrades":[],"features":0})");
  ExpectError(Kind::kNewer, "format version 99", [&] { read(newer); });
  ExpectError(Kind::kNewer, "format version 99", [&] { LineReader{newer}; });
  Document document("none");
  ExpectError(Kind::kUnwritable, "", [&] { Write(document, folder_ / "no folder/new.hvxdoc"); });
  ExpectError(Kind::kUnwritable, "exists already", [&] { Write(document, newer); });
}

// Where a display name would not lead to it.
TEST_F(ErrorTest, WhateverFailsNamesTheFileAsItWasGiven) {
  const std::filesystem::path file = folder_.Put("in.hvxdoc", BytesOf(Example("bolted_bracket")));
  const std::filesystem::path target = folder_ / "new.hvxdoc";
  const auto stop = [](std::uint64_t, std::uint64_t) { return false; };
  const Upgrader upgrader;
  Document document = Read(file);
  Document spoilt = Read(file);
  const auto expect = [](const std::filesystem::path& expected, const auto& action) {
    const auto error = ErrorOf(action);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->File(), expected.string()) << error->what();
    EXPECT_THAT(error->Advice(), Not(IsEmpty())) << error->what();
  };
  EXPECT_EQ(document.File(), file);
  expect(file, [&] { static_cast<void>(Read(file, {.onProgress = stop})); });
  expect(file, [&] { LineReader(file, {.onProgress = stop}); });
  expect(target, [&] { Write(document, target, {.onProgress = stop}); });
  expect(file, [&] { upgrader.Upgrade(document, {.identifiers = std::vector<std::string>{"No"}}); });
  expect(file, [&] { upgrader.Upgrade(spoilt, {.maxFeaturesCreated = 1}); });
  expect(file, [&] { Write(spoilt, target); });
  expect(file, [&] { upgrader.Upgrade(spoilt); });

  Document made("Draft");
  EXPECT_EQ(made.File(), "");
  Write(made, target);
  EXPECT_EQ(made.File(), target);
  Write(document, folder_ / "copy.hvxdoc");
  EXPECT_EQ(document.File(), file);
}

TEST_F(ErrorTest, AnEmptyNameIsTold) {
  Document document;
  const auto isTold = [](Kind kind, const auto& action) {
    ExpectError(kind, "the name of the file is empty", action);
  };
  isTold(Kind::kUnreadable, [] { static_cast<void>(Read("")); });
  isTold(Kind::kUnreadable, [] { static_cast<void>(ReadHeader("")); });
  isTold(Kind::kUnreadable, [] { LineReader(""); });
  isTold(Kind::kUnwritable, [&] { Write(document, ""); });
  isTold(Kind::kInstallation, [] { Upgrader({.libraries = {""}}); });
}

// The system would take the name up to the null character, and so would who reads `what()`.
TEST_F(ErrorTest, ANullCharacterInANameIsTold) {
  using namespace std::string_literals;
  const std::filesystem::path file = (folder_ / "w").string() + "\0x"s;
  folder_.Put("w", WithHeader(""));
  Document document;
  const auto isTold = [&file](Kind kind, const auto& action) {
    const auto error = ErrorOf(action);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetKind(), kind);
    EXPECT_EQ(error->File(), file.string());
    EXPECT_THAT(error->what(), HasSubstr("w\\0x: the name of the file has a null character in it. Give"));
  };
  isTold(Kind::kUnreadable, [&] { static_cast<void>(Read(file)); });
  isTold(Kind::kUnreadable, [&] { static_cast<void>(ReadHeader(file)); });
  isTold(Kind::kUnreadable, [&] { LineReader{file}; });
  isTold(Kind::kUnwritable, [&] { Write(document, file, {.overwrite = true}); });
  isTold(Kind::kInstallation, [&] { Upgrader({.libraries = {file}}); });
  isTold(Kind::kInstallation, [&] { Upgrader({.data = file}); });
}

TEST_F(ErrorTest, AnUnknownLanguageIsAnsweredWithThoseThereAre) {
  using namespace std::string_literals;
  for (const std::string& language : {"zz"s, ""s, "../messages/en"s, "en/"s, "en\0"s}) {
    const auto error = ErrorOf([&] { Upgrader({.language = language}); });
    ASSERT_TRUE(error) << language;
    EXPECT_EQ(error->GetKind(), Kind::kInstallation);
    EXPECT_EQ(error->Problem(), "there are no messages in language \"" + language + "\"");
    EXPECT_EQ(error->Advice(), "Choose one of: de, en");
    EXPECT_THAT(error->what(), HasSubstr("Choose one of: de, en"));
  }
}

TEST_F(ErrorTest, WhatIsWrongWithAnInstallationNamesTheFileAndTheRemedy) {
  struct Case {
    UpgraderOptions options;
    std::string file;
    const char* problem;
  };
  const std::filesystem::path text = folder_.Put("text.so", "no library");
  std::filesystem::create_directories(folder_ / "empty");
  const Case cases[] = {
      {{.libraries = {folder_ / "none.so"}}, (folder_ / "none.so").string(), "cannot be loaded"},
      {{.libraries = {text}}, text.string(), "cannot be loaded"},
      {{.libraries = {folder_ / "empty"}}, (folder_ / "empty").string(), "this is a folder"},
      {{.libraries = {HVX_OLDER_LAYOUT_LIBRARY}}, HVX_OLDER_LAYOUT_LIBRARY, "built for an older version"},
      {{.data = folder_ / "empty"}, (folder_ / "empty/catalogs").string(), "is missing"},
  };
  for (const Case& each : cases) {
    const auto error = ErrorOf([&] { Upgrader upgrader(each.options); });
    ASSERT_TRUE(error) << each.problem;
    SCOPED_TRACE(error->what());
    EXPECT_EQ(error->GetKind(), Kind::kInstallation);
    EXPECT_THAT(error->File(), HasSubstr(each.file));
    EXPECT_THAT(error->File(), Not(IsEmpty()));
    EXPECT_EQ(error->Line(), 0U);
    EXPECT_THAT(error->Problem(), HasSubstr(each.problem));
    EXPECT_THAT(error->Advice(), Not(IsEmpty()));
    EXPECT_THAT(error->what(), Not(HasSubstr("--")));  // an option of another program
  }
  EXPECT_FALSE(Upgrader().Known().empty());  // none of them spoilt anything
}

// One set of catalogs and messages serves a process.
TEST_F(ErrorTest, UpgradersOfAProcessShareDataAndLanguage) {
  const Upgrader upgrader;
  const Upgrader another;
  EXPECT_EQ(upgrader.Known().size(), another.Known().size());
  ExpectError(Kind::kUsage, "another upgrader of this process", [] { Upgrader({.language = "de"}); });
}

}  // namespace
