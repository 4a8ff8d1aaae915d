// Compressed documents, as people keep them: beside plain ones, under names that tell it or not.

#include <filesystem>

#include "ToolRun.h"
#include "file/Compression.h"
#include "support/Packed.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;
using standalone::Compression;

class CompressedTest : public ToolTest {
 protected:
  CompressedTest() : plain_(Document("plain.hvxdoc", kJobLines)) {
    EXPECT_EQ(Run({"upgrade", plain_, "-o", Path("current.hvxdoc")}).code, 0);
  }
  std::string Put(const std::string& name, std::string_view text, Compression compression) const {
    fs::create_directories(fs::path(Path(name)).parent_path());
    ToolTest::Put(Path(name), testing_support::Packed(text, compression));
    return Path(name);
  }
  // That the file holds the upgraded document, stored so.
  void ExpectResult(const std::string& name, Compression stored) const {
    EXPECT_EQ(standalone::CompressionOf(Content(Path(name))), stored) << name;
    EXPECT_EQ(Run({"diff", Path("current.hvxdoc"), Path(name)}).code, 0) << name;
  }

  std::string plain_;
};

TEST_F(CompressedTest, ResultsAreStoredAsTheirDocumentsAre) {
  const std::string text = Content(plain_);
  static_cast<void>(Put("archive/a.hvxdoc", text, Compression::kNone));
  static_cast<void>(Put("archive/b.hvxdoc.gz", text, Compression::kGzip));
  static_cast<void>(Put("archive/c.hvxdoc.zst", text, Compression::kZstd));
  static_cast<void>(Put("archive/d.hvxdoc", text, Compression::kGzip));  // whatever its name
  static_cast<void>(Put("archive/notes.gz", "no document", Compression::kGzip));
  EXPECT_TRUE(Run({"status", Path("archive")}).out.starts_with("4 documents, 12 features\n"));

  const Ended mirrored = Run({"upgrade", Path("archive"), "--output-dir", Path("new")});
  EXPECT_EQ(mirrored.code, 0) << mirrored.err;
  const Ended inPlace = Run({"upgrade", Path("archive"), "--in-place", "--backup", ".old"});
  EXPECT_EQ(inPlace.code, 0) << inPlace.err;
  for (const std::string folder : {"new", "archive"}) {
    ExpectResult(folder + "/a.hvxdoc", Compression::kNone);
    ExpectResult(folder + "/b.hvxdoc.gz", Compression::kGzip);
    ExpectResult(folder + "/c.hvxdoc.zst", Compression::kZstd);
    ExpectResult(folder + "/d.hvxdoc", Compression::kGzip);
  }
  EXPECT_EQ(Content(Path("archive/b.hvxdoc.gz.old")), testing_support::Packed(text, Compression::kGzip));
  EXPECT_EQ(Run({"check", Path("archive")}).code, 0);
  EXPECT_EQ(Run({"show", Path("archive/b.hvxdoc.gz")}).out, Run({"show", Path("current.hvxdoc")}).out);
  // Again: nothing to do, so the very bytes are there.
  EXPECT_EQ(Run({"upgrade", Path("archive"), "--output-dir", Path("new")}).code, 0);
}

TEST_F(CompressedTest, ANameThatIsGivenSaysHowItsFileIsStored) {
  const std::string packed = Put("b.hvxdoc.gz", Content(plain_), Compression::kGzip);
  for (const std::string& document :
       {packed, Path("current.hvxdoc")}) {  // one with something to do, one without
    for (const auto& [name, stored] : {std::pair{"x.hvxdoc", Compression::kNone},
                                       {"x.hvxdoc.gz", Compression::kGzip},
                                       {"x.hvxdoc.zst", Compression::kZstd}}) {
      const Ended ended = Run({"upgrade", document, "-o", Path(name), "--force"});
      EXPECT_EQ(ended.code, 0) << ended.err;
      ExpectResult(name, stored);
    }
  }
  // In place of the document it stays as it is, under a name that tells otherwise too.
  const std::string misnamed = Put("y.hvxdoc", Content(plain_), Compression::kZstd);
  EXPECT_EQ(Run({"upgrade", misnamed, "-o", misnamed, "--force"}).code, 0);
  ExpectResult("y.hvxdoc", Compression::kZstd);
}

TEST_F(CompressedTest, WhatUnpacksToTooMuchIsRefusedUnlessTheUserWantsIt) {
  const std::string large =
      Put("large.hvxdoc.zst", Content(plain_) + std::string(std::size_t{3} << 20, '\n'), Compression::kZstd);
  const Ended refused = Run({"upgrade", large, "--dry-run", "--limit-unpacked", "2"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_NE(refused.err.find("large.hvxdoc.zst: the file unpacks to more than 2097152 bytes. "),
            std::string::npos)
      << refused.err;
  EXPECT_NE(refused.err.find("--limit-unpacked"), std::string::npos) << refused.err;
  for (const char* const most : {"4", "0"})
    EXPECT_EQ(Run({"upgrade", large, "--dry-run", "--limit-unpacked", most}).code, 0);
}

}  // namespace
}  // namespace tool_testing
