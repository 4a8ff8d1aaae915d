#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "file/AtomicFile.h"
#include "file/DocumentError.h"
#include "file/DocumentWriter.h"
#include "model/LateTypes.h"
#include "support/TempFolder.h"

namespace {

using namespace standalone;
using testing::ElementsAre;
using testing_support::BytesOf;

constexpr const char* kWritten =
    "{\"format\":\"hvxdoc\",\"version\":1,\"upgrades\":[],\"features\":1}\n{\"id\":1,\"type\":\"X\"}\n";

class DocumentWriterTest : public testing::Test {
 protected:
  DocumentWriterTest() { document_->Create(LateType::Of("X"), "", nullptr, nullptr); }

  // The message of the refusal, after the file's name; empty when it was written.
  std::string Write(const std::filesystem::path& file, bool overwrite = false,
                    const char* backupSuffix = "") {
    WriteOptions options;
    options.overwrite = overwrite;
    options.backupSuffix = backupSuffix;
    try {
      WriteDocument(*document_.Get(), file, options);
      return "";
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.GetKind(), DocumentError::Kind::kUnwritable);
      return error.what();
    }
  }

  testing_support::TempFolder folder_;
  DocumentPtr document_ = Document::Create("test");
};

TEST_F(DocumentWriterTest, AnotherFileIsReplacedOnlyWhenAsked) {
  const std::filesystem::path file = folder_ / "a.hvxdoc";
  EXPECT_EQ(Write(file), "");
  EXPECT_EQ(BytesOf(file), kWritten);
  static_cast<void>(folder_.Put("a.hvxdoc", "original"));
  EXPECT_EQ(Write(file),
            file.string() + ": the file exists already. Choose another name, or ask for it to be replaced");
  EXPECT_EQ(BytesOf(file), "original");
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  EXPECT_EQ(Write(file, true), "");
  EXPECT_EQ(BytesOf(file), kWritten);
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
  EXPECT_THAT(folder_.Names(), ElementsAre("a.hvxdoc"));
}

TEST_F(DocumentWriterTest, AFileThatCameUpInTheMeantimeStays) {
  AtomicFile output(folder_ / "a.hvxdoc", {});
  output.Write("new");
  static_cast<void>(folder_.Put("a.hvxdoc", "original"));
  EXPECT_THROW(output.Commit(), DocumentError);
  EXPECT_EQ(BytesOf(folder_ / "a.hvxdoc"), "original");
}

TEST_F(DocumentWriterTest, ABackupKeepsWhatIsReplacedAndIsNeverReplacedItself) {
  const std::filesystem::path file = folder_.Put("a.hvxdoc", "original");
  EXPECT_EQ(Write(file, true, ".old"), "");
  EXPECT_EQ(BytesOf(folder_ / "a.hvxdoc.old"), "original");
  EXPECT_EQ(BytesOf(file), kWritten);
  static_cast<void>(folder_.Put("a.hvxdoc", "second"));
  EXPECT_THAT(Write(file, true, ".old"), testing::HasSubstr("a.hvxdoc.old: the backup cannot be made"));
  EXPECT_EQ(BytesOf(folder_ / "a.hvxdoc.old"), "original");
  EXPECT_EQ(BytesOf(file), "second");
  EXPECT_EQ(Write(folder_ / "b.hvxdoc", true, ".old"), "");  // nothing to back up
  EXPECT_THAT(folder_.Names(), ElementsAre("a.hvxdoc", "a.hvxdoc.old", "b.hvxdoc"));
}

TEST_F(DocumentWriterTest, ALinkStaysALinkAndWhatItLeadsToIsReplaced) {
  std::filesystem::create_directory(folder_ / "sub");
  const std::filesystem::path target = folder_.Put("sub/target.hvxdoc", "original");
  const std::filesystem::path link = folder_ / "link.hvxdoc";
  std::filesystem::create_symlink("sub/target.hvxdoc", link);
  EXPECT_THAT(Write(link), testing::HasSubstr("exists already"));
  EXPECT_EQ(Write(link, true, ".old"), "");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(BytesOf(target), kWritten);
  EXPECT_EQ(BytesOf(folder_ / "sub/target.hvxdoc.old"), "original");
  EXPECT_THAT(folder_.Names(), ElementsAre("link.hvxdoc", "sub"));
}

TEST_F(DocumentWriterTest, WhatCannotBeWrittenLeavesAllAsItWas) {
  static_cast<void>(folder_.Put("file", "original"));
  for (const std::filesystem::path& file :
       {folder_ / "none/a.hvxdoc", folder_ / "file/a.hvxdoc", std::filesystem::path("/proc/self/a.hvxdoc")}) {
    EXPECT_THAT(Write(file), testing::StartsWith(file.string() + ": cannot be created ("));
  }
  std::filesystem::create_directory(folder_ / "taken");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  for (const char* const special : {"taken", "pipe"}) {
    EXPECT_THAT(Write(folder_ / special, true), testing::HasSubstr("it is not a regular file"));
    EXPECT_FALSE(std::filesystem::is_regular_file(folder_ / special));
  }
  EXPECT_THAT(folder_.Names(), ElementsAre("file", "pipe", "taken"));
}

TEST_F(DocumentWriterTest, IdsThatNoDocumentMayHoldAreNotWritten) {
  const DocumentPtr document = Document::Create("test");
  static_cast<void>(document->AppendRead(9007199254740991, LateType::Of("X")));
  WriteDocument(*document.Get(), folder_ / "a.hvxdoc", {});
  static_cast<void>(document->Create(LateType::Of("X"), "", nullptr, nullptr));
  EXPECT_THROW(WriteDocument(*document.Get(), folder_ / "b.hvxdoc", {}), DocumentError);
  EXPECT_THAT(folder_.Names(), ElementsAre("a.hvxdoc"));
}

TEST_F(DocumentWriterTest, ADiskThatFillsUpLeavesTheOriginal) {
  const std::filesystem::path file = folder_.Put("a.hvxdoc", "original");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit tiny{10, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tiny), 0);
  const std::string message = Write(file, true);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, handler);
  EXPECT_THAT(message, testing::StartsWith(file.string() + ": cannot be written ("));
  EXPECT_EQ(BytesOf(file), "original");
  EXPECT_THAT(folder_.Names(), ElementsAre("a.hvxdoc"));
}

TEST_F(DocumentWriterTest, ACopyIsByteForByte) {
  const std::filesystem::path source = folder_.Put("source", std::string("a\0b\n\xff", 5));
  CopyDocument(source, folder_ / "copy", {});
  EXPECT_EQ(BytesOf(folder_ / "copy"), BytesOf(source));
  EXPECT_THROW(CopyDocument(source, folder_ / "copy", {}), DocumentError);
  EXPECT_THROW(CopyDocument(folder_ / "none", folder_ / "other", {}), DocumentError);
  const auto read = FileIdentity::Of(source);
  static_cast<void>(folder_.Put("source", "newer"));
  EXPECT_THROW(CopyDocument(source, folder_ / "other", {}, read), ChangedMeanwhile);
  EXPECT_THAT(folder_.Names(), ElementsAre("copy", "source"));
}

}  // namespace
