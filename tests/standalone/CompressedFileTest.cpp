// Documents that are stored compressed, and what is told of files as they are stored.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <optional>
#include <vector>

#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "file/StoredText.h"
#include "support/Packed.h"
#include "support/TempFolder.h"

namespace {

using namespace standalone;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::BytesOf;
using testing_support::Packed;

constexpr const char* kText =
    "{\"format\":\"hvxdoc\",\"version\":1,\"upgrades\":[\"A\"],\"features\":2}\n{\"id\":1,\"type\":\"X\"}\n"
    "{\"id\":2,\"type\":\"Y\",\"alias\":\"Some text that stands here and here and here once more\"}\n";

class CompressedFileTest : public testing::TestWithParam<Compression> {
 protected:
  // Its message without the file's name, or the document's text.
  std::string Read(const std::string& bytes, const ReadOptions& options = {}) {
    const std::filesystem::path file = folder_.Put("in", bytes);
    try {
      const DocumentPtr document = ReadDocument(file, options);
      return Written(*document.Get(), Compression::kNone);
    } catch (const DocumentError& error) {
      EXPECT_THAT(error.what(), StartsWith(file.string() + ":"));
      return std::string(error.what()).substr(file.string().size());
    }
  }
  std::string Written(Document& document, Compression compression) {
    WriteOptions options;
    options.overwrite = true;
    options.compression = compression;
    WriteDocument(document, folder_ / "out", options);
    return BytesOf(folder_ / "out");
  }

  testing_support::TempFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Both, CompressedFileTest, testing::Values(Compression::kGzip, Compression::kZstd),
                         [](const auto& each) { return std::string(NameOf(each.param)); });

// Neither the size of blocks nor that of members must matter.
TEST_P(CompressedFileTest, AllMembersTogetherAreTheDocument) {
  const std::string text = BytesOf(HVX_SOURCE_DIR "/examples/bolted_bracket.hvxdoc");
  std::string members = Packed("", GetParam());
  for (std::size_t at = 0; at < text.size(); at += 20'000)
    members += Packed(text.substr(at, 20'000), GetParam());
  const std::string passedOver = GetParam() == Compression::kZstd ? "\x53\x2A\x4D\x18\x02\0\0\0ab"s : "";
  for (const std::string& bytes : {Packed(text, GetParam()), members, passedOver + members + passedOver}) {
    for (const std::size_t blockBytes : {1U, 100U, 4096U, 1U << 20}) {
      Compression stored = Compression::kNone;
      ReadOptions options;
      options.blockBytes = blockBytes;
      options.compression = &stored;
      EXPECT_TRUE(Read(bytes, options) == text) << "in blocks of " << blockBytes;
      EXPECT_EQ(stored, GetParam());
    }
    EXPECT_EQ(ReadHeader(folder_ / "in").features, 631);
  }
}

TEST_P(CompressedFileTest, WhatIsCutOffOrDamagedIsNeverTakenForTheDocument) {
  const std::string bytes = Packed(kText, GetParam());
  ASSERT_EQ(Read(bytes), kText);
  for (std::size_t size = kCompressionBytes; size < bytes.size(); ++size) {
    SCOPED_TRACE(size);
    EXPECT_EQ(
        Read(bytes.substr(0, size)),
        fmt::format(": the compressed file ends too early ({}). It was cut off; restore it from a backup",
                    NameOf(GetParam())));
  }
  std::size_t told = 0;
  for (std::size_t at = kCompressionBytes; at < bytes.size(); ++at) {
    std::string damaged = bytes;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
    const std::string outcome = Read(damaged);
    if (outcome == kText) continue;  // such as the time in the header, which nobody looks at
    EXPECT_THAT(outcome, testing::AnyOf(StartsWith(": the compressed file "), StartsWith(": to unpack"),
                                        StartsWith(": something else follows")))
        << at;
    ++told;
  }
  EXPECT_GT(told, bytes.size() - 20);
}

TEST_P(CompressedFileTest, WhatStandsBehindIsRefused) {
  for (const std::string& other : {"\n"s, "\0"s, kText + ""s}) {
    EXPECT_THAT(Read(Packed(kText, GetParam()) + other),
                StartsWith(": something else follows the compressed document"));
  }
}

TEST_P(CompressedFileTest, FaultsOfTheTextAreToldByItsLines) {
  EXPECT_THAT(Read(Packed(kText + "{}\n"s, GetParam())), StartsWith(":4: a feature must begin with"));
  EXPECT_THAT(Read(Packed("", GetParam())), StartsWith(": the file is empty"));
  EXPECT_THAT(Read(Packed("MZ", GetParam())), StartsWith(":1: "));
  EXPECT_THAT(Read(Packed(Packed(kText, GetParam()), GetParam())),
              StartsWith(":1: the file is compressed twice"));
  const std::string archive = std::string(257, 'a') + "ustar  ";
  EXPECT_THAT(Read(Packed(archive, GetParam())), StartsWith(":1: the file is a tar archive"));
}

TEST_P(CompressedFileTest, NoFileUnpacksWithoutALimit) {
  const std::string bytes = Packed(kText + std::string(100'000, '\n'), GetParam());
  EXPECT_EQ(Read(bytes), kText);
  ReadOptions options;
  options.maxUnpackedBytes = 50'000;
  options.unpackedAdvice = "Do this";
  EXPECT_EQ(Read(bytes, options), ": the file unpacks to more than 50000 bytes. Do this");
  options.blockBytes = 4096;
  // A fault before that is told, and what follows is not unpacked for ever.
  EXPECT_THAT(Read(Packed("{}\n" + std::string(100'000, '\n'), GetParam()), options), StartsWith(":1: "));
}

TEST(StoredTextTest, WithoutAnotherLimitThatIsAHundredTimesTheFileOrAQuarterOfAGigabyte) {
  std::string bytes;
  const auto packer = Packer::Make(Compression::kZstd, [&bytes](std::string_view piece) { bytes += piece; });
  const std::string piece(std::size_t{1} << 20, '\n');
  for (int i = 0; i < 300; ++i) packer->Add(piece);
  packer->Finish();
  const ReadOptions options;
  const testing_support::TempFolder folder;
  StoredText text(folder.Put("in", bytes), options);
  std::vector<char> block(piece.size());
  std::size_t unpacked = 0;
  EXPECT_THROW(while (const std::size_t got = text.Read(block)) unpacked += got, DocumentError);
  EXPECT_GE(unpacked, std::size_t{255} << 20);
  EXPECT_LE(unpacked, (std::size_t{256} << 20) + 100 * bytes.size());
}

TEST_P(CompressedFileTest, ProgressIsThatOfTheFile) {
  const std::string bytes = Packed(BytesOf(HVX_SOURCE_DIR "/examples/bolted_bracket.hvxdoc"), GetParam());
  std::size_t last = 0;
  ReadOptions options;
  options.blockBytes = 4096;
  options.onProgress = [&](std::size_t read, std::size_t total) {
    EXPECT_EQ(total, bytes.size());
    EXPECT_GE(read, last);
    last = read;
  };
  static_cast<void>(Read(bytes, options));
  EXPECT_EQ(last, bytes.size());
}

TEST_P(CompressedFileTest, TheSameDocumentIsStoredAsTheSameBytes) {
  const DocumentPtr document = ReadDocument(folder_.Put("in", kText));
  const std::string bytes = Written(*document.Get(), GetParam());
  EXPECT_EQ(CompressionOf(bytes), GetParam());
  EXPECT_EQ(Written(*document.Get(), GetParam()), bytes);
  if (GetParam() == Compression::kGzip) {
    EXPECT_THAT(bytes, StartsWith("\x1F\x8B\x08\0\0\0\0\0\0\x03"s)) << "no name, no time";
  } else {
    EXPECT_NE(bytes[4] & 0x04, 0) << "a checksum";
  }
  EXPECT_EQ(Read(bytes), kText);
}

class FileDigestTest : public testing::Test {
 protected:
  // Made again in place, and told of before.
  FileDigest Announced(const std::function<void(const WriteOptions&)>& write) {
    FileDigest digest;
    std::optional<FileDigest> announced;
    WriteOptions options = options_;
    options.digest = &digest;
    options.onProgress = [&](std::size_t written, std::size_t total) {
      if (written != total) return;
      EXPECT_FALSE(announced) << "told twice";
      EXPECT_FALSE(std::filesystem::exists(file_)) << "told too late";
      announced = digest;
    };
    write(options);
    const auto identity = FileIdentity::Of(file_);
    EXPECT_TRUE(announced && identity);
    EXPECT_EQ(static_cast<off_t>(announced->bytes), identity->size);
    EXPECT_EQ(announced->modified, identity->modified);
    return *announced;
  }

  testing_support::TempFolder folder_;
  std::filesystem::path file_ = folder_ / "file";
  WriteOptions options_;
};

TEST_F(FileDigestTest, OfACopyIsKnownBeforeItIsInPlace) {
  const std::filesystem::path source = folder_.Put("source", "abc");
  const FileDigest digest =
      Announced([&](const WriteOptions& options) { CopyDocument(source, file_, options); });
  EXPECT_EQ(digest.Sha256Text(), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  // More than is copied at a time.
  static_cast<void>(folder_.Put("source", std::string(1'000'000, 'a')));
  std::filesystem::remove(file_);
  const FileDigest large =
      Announced([&](const WriteOptions& options) { CopyDocument(source, file_, options); });
  EXPECT_EQ(large.Sha256Text(), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST_F(FileDigestTest, OfADocumentIsThatOfItsFileHoweverItIsStored) {
  const DocumentPtr document = ReadDocument(HVX_SOURCE_DIR "/examples/heated_pipe.hvxdoc");
  for (const Compression compression : {Compression::kNone, Compression::kGzip, Compression::kZstd}) {
    SCOPED_TRACE(NameOf(compression));
    std::filesystem::remove(file_);
    options_.compression = compression;
    const FileDigest written =
        Announced([&](const WriteOptions& options) { WriteDocument(*document.Get(), file_, options); });
    Sha256 sum;
    sum.Add(BytesOf(file_));
    EXPECT_EQ(written.sha256, sum.Take());
    FileDigest read;
    ReadOptions options;
    options.digest = &read;
    options.blockBytes = 1000;
    static_cast<void>(ReadDocument(file_, options));
    EXPECT_EQ(read, written);
  }
}

}  // namespace
