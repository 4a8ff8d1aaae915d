// Writing never takes away what somebody else may need, and never leaves what cannot be read again.

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;

constexpr std::string_view kPart = "{\"id\":1,\"type\":\"Part\"}\n";

using WritingTest = InterfaceTest;

TEST_F(WritingTest, ExamplesComeBackByteForByte) {
  for (const char* const example : kExamples) {
    Document document = Read(Example(example));
    EXPECT_EQ(TextOf(document), BytesOf(Example(example)));
  }
}

TEST_F(WritingTest, AFileThatSomebodyElseSavedIsNotReplaced) {
  const std::filesystem::path file = Put("in.hvxdoc", kPart);
  Document document = Read(file);
  document.Find(1)->SetAlias("mine");
  const std::string theirs = WithHeader("{\"id\":1,\"type\":\"Part\",\"alias\":\"theirs\"}\n");
  folder_.Put("in.hvxdoc", theirs);
  std::filesystem::create_symlink(file, folder_ / "link.hvxdoc");
  for (const char* const name : {"in.hvxdoc", "link.hvxdoc"}) {
    const auto error = ErrorOf([&] { Write(document, folder_ / name, {.overwrite = true}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetKind(), Kind::kChanged);
    EXPECT_EQ(error->Problem(), "changed meanwhile: another program wrote to it");
    EXPECT_EQ(error->Advice(), "Nothing was written; read it again, or write to another file");
    EXPECT_EQ(BytesOf(file), theirs);
  }
  std::filesystem::remove(file);
  ExpectError(Kind::kChanged, "removed", [&] { Write(document, file, {.overwrite = true}); });
  EXPECT_EQ(folder_.Names().size(), 1U);  // the link
}

TEST_F(WritingTest, ADocumentIsSavedAgainAndAgain) {
  const std::filesystem::path file = Put("in.hvxdoc", kPart);
  Document document = Read(file);
  for (int i = 0; i < 3; ++i) {
    document.Find(1)->Set("i", i);
    Write(document, file, {.overwrite = true});
    Write(document, folder_ / "other.hvxdoc", {.overwrite = true});
    EXPECT_EQ(Read(file).Find(1)->Get("i"), i);
  }
  // What it was written to counts as much as what it was read from.
  folder_.Put("other.hvxdoc", WithHeader(kPart));
  ExpectError(Kind::kChanged, "", [&] { Write(document, folder_ / "other.hvxdoc", {.overwrite = true}); });
  Write(document, file, {.overwrite = true, .backupSuffix = ".old"});
  EXPECT_EQ(Read(folder_ / "in.hvxdoc.old").Find(1)->Get("i"), 2);
}

// With a null character it would be the file itself.
TEST_F(WritingTest, ABackupThatWouldNotStandBesideTheFileIsRefused) {
  using namespace std::string_literals;
  const std::filesystem::path file = Put("in.hvxdoc", kPart);
  Document document = Read(file);
  document.Find(1)->SetAlias("changed");
  for (const std::string& suffix : {"\0.old"s, ".old\0"s, "/../../old"s, "/"s}) {
    const auto error = ErrorOf([&] { Write(document, file, {.overwrite = true, .backupSuffix = suffix}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetKind(), Kind::kUsage);
    EXPECT_EQ(error->File(), file.string());
    EXPECT_TRUE(std::string_view(error->what()).ends_with(error->Advice())) << error->what();
  }
  EXPECT_EQ(BytesOf(file), WithHeader(kPart));
  EXPECT_EQ(folder_.Names().size(), 1U);
}

TEST_F(WritingTest, ADocumentStaysAsItIsStoredUnlessSomethingElseIsAskedFor) {
  const auto isGzip = [](const std::filesystem::path& file) { return BytesOf(file).starts_with("\x1f\x8b"); };
  Document document = Given(kPart);
  Write(document, folder_ / "a.hvxdoc.gz");
  EXPECT_TRUE(isGzip(folder_ / "a.hvxdoc.gz"));
  std::filesystem::rename(folder_ / "a.hvxdoc.gz", folder_ / "b.hvxdoc");
  document = Read(folder_ / "b.hvxdoc");
  Write(document, folder_ / "b.hvxdoc", {.overwrite = true});
  EXPECT_TRUE(isGzip(folder_ / "b.hvxdoc"));
  Write(document, folder_ / "b.hvxdoc", {.overwrite = true, .compression = Compression::kNone});
  EXPECT_FALSE(isGzip(folder_ / "b.hvxdoc"));
  Write(document, folder_ / "b.hvxdoc", {.overwrite = true});
  EXPECT_FALSE(isGzip(folder_ / "b.hvxdoc"));
  Write(document, folder_ / "c.hvxdoc");
  EXPECT_FALSE(isGzip(folder_ / "c.hvxdoc"));
}

// Many texts that are short enough by themselves make a line that is too long.
TEST_F(WritingTest, WhatCouldNotBeReadAgainIsNotWritten) {
  Document document = Given(kPart);
  const std::string text(std::size_t{1} << 26U, 'x');
  for (const char* const key : {"a", "b", "c", "d"}) document.Find(1)->Set(key, text);
  ExpectError(Kind::kUnwritable, "could not be read again", [&] { Write(document, folder_ / "new.hvxdoc"); });
  EXPECT_FALSE(folder_.Names().contains("new.hvxdoc"));
}

}  // namespace
