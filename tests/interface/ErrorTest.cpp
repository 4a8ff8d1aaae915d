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
      {{.libraries = {HVX_OLDER_LAYOUT_LIBRARY}}, HVX_OLDER_LAYOUT_LIBRARY, "built for an older version"},
      {{.data = folder_ / "empty"}, (folder_ / "empty/catalogs").string(), "is missing"},
      {{.language = "xx"}, "", ""},
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
