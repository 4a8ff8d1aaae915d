// Reading a document line by line tells the same as reading it whole.

#include <sys/resource.h>

#include <cstdlib>
#include <random>

#include "interface/InterfaceTest.h"
#include "support/RandomDocuments.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;
using testing::ElementsAre;

class LineReaderTest : public InterfaceTest {
 protected:
  static void ExpectSame(const FeatureLine& line, const Feature& feature) {
    const auto idOf = [](const std::optional<Feature>& each) { return each ? each->Id() : Link::kNothing; };
    ASSERT_EQ(line.id, feature.Id());
    ASSERT_EQ(line.lateType, feature.LateType());
    ASSERT_EQ(line.name, feature.Name());
    ASSERT_EQ(line.alias, feature.Alias());
    ASSERT_EQ(line.father, idOf(feature.Father()));
    ASSERT_EQ(line.container, idOf(feature.Container()));
    ASSERT_EQ(line.isUpToDate, feature.IsUpToDate());
    ASSERT_EQ(line.physicalType, feature.PhysicalType());
    const std::vector<std::string_view> keys = feature.Keys();
    ASSERT_EQ(line.attributes.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
      const FeatureLine::Attribute& attribute = line.attributes[i];
      ASSERT_EQ(attribute.key, keys[i]);
      ASSERT_EQ(attribute.value, feature.Get(keys[i])) << attribute.value.Json();
      ASSERT_EQ(attribute.mode, feature.Mode(keys[i]));
      ASSERT_EQ(line.Find(keys[i]), &attribute.value);
    }
    ASSERT_EQ(line.Find("no such key"), nullptr);
  }

  static void ExpectSame(const std::filesystem::path& file) {
    const Document document = Read(file);
    LineReader reader(file);
    EXPECT_EQ(reader.GetHeader().features, document.FeatureCount());
    FeatureLine line;
    std::size_t number = 1;
    for (const Feature each : document.All()) {
      ASSERT_TRUE(reader.Next(line));
      ASSERT_EQ(reader.LineNumber(), ++number);
      ASSERT_NO_FATAL_FAILURE(ExpectSame(line, each)) << file << ":" << number;
    }
    EXPECT_FALSE(reader.Next(line));
    EXPECT_FALSE(reader.Next(line));
  }
};

TEST_F(LineReaderTest, ExamplesAndDamagedOnes) {
  for (const char* const example : kExamples) ExpectSame(Example(example));
  std::mt19937 random(20240229);
  for (int i = 0; i < 20; ++i) {
    ExpectSame(Put("in.hvxdoc", DamagedExample(random)));
    ExpectSame(Put("in.hvxdoc", OddExample(random)));
  }
}

TEST_F(LineReaderTest, CompressedOnes) {
  Document document = Read(Example("bolted_bracket"));
  for (const Compression compression : {Compression::kGzip, Compression::kZstd}) {
    Write(document, folder_ / "packed", {.overwrite = true, .compression = compression});
    ExpectSame(folder_ / "packed");
  }
}

TEST_F(LineReaderTest, FeaturesOfAnySize) {
  std::string lines;
  for (const int attributes : {0, 48, 49, 5000, 1}) {
    lines += R"({"id":)" + std::to_string(lines.size() + 1) + R"(,"type":"Part","attributes":{)";
    for (int i = 0; i < attributes; ++i)
      lines += (i == 0 ? "\"K" : ",\"K") + std::to_string(i) + R"(":"text )" + std::to_string(i) + '"';
    lines += R"(},"modes":{)";
    for (int i = 0; i < attributes; ++i)
      lines += (i == 0 ? "\"K" : ",\"K") + std::to_string(i) + "\":" + std::to_string(-i);
    lines += "}}\n";
  }
  ExpectSame(Put("in.hvxdoc", lines));
  std::string twice = lines;
  twice.replace(twice.find("\"K4999\":\"text"), 7, "\"K4998\"");
  ExpectError(Kind::kInvalid, "attribute \"K4998\" occurs twice", [&] {
    LineReader reader(Put("in.hvxdoc", twice));
    for (FeatureLine line; reader.Next(line);) continue;
  });
}

TEST_F(LineReaderTest, TheHeaderIsReadWithoutTheRest) {
  const std::filesystem::path file =
      folder_.Put("in.hvxdoc", WithHeader("{\"id\":1,\"type\":\"A\"}\nnonsense\n", R"("A","B")"));
  const Header header = ReadHeader(file);
  EXPECT_EQ(header.version, 1);
  EXPECT_EQ(header.features, 2U);
  ASSERT_EQ(header.upgrades.size(), 2U);
  EXPECT_EQ(header.upgrades[1].identifier, "B");
  // What stands before a fault is read, and the fault is told as often as somebody asks.
  LineReader reader(file);
  EXPECT_EQ(reader.GetHeader().upgrades.size(), 2U);
  FeatureLine line;
  EXPECT_TRUE(reader.Next(line));
  for (int i = 0; i < 2; ++i) {
    const auto error = ErrorOf([&] { reader.Next(line); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Line(), 3U);
  }
}

// Not even of names that no feature shares with another.
TEST_F(LineReaderTest, MemoryDoesNotGrowWithTheDocument) {
#ifdef HVX_SANITIZED
  GTEST_SKIP() << "the sanitizer keeps what was freed";
#endif
  constexpr int kFeatures = 150'000;
  const std::filesystem::path file = folder_ / "large.hvxdoc";
  {
    std::ofstream out(file);
    out << R"({"format":"hvxdoc","version":1,"upgrades":[],"features":)" << kFeatures << "}\n";
    for (int id = 1; id <= kFeatures; ++id)
      out << R"({"id":)" << id << R"(,"type":"T)" << id << R"(","physicalType":"P)" << id
          << R"(","attributes":{"some rather long key)" << id << R"(":"some text that is long as well )" << id
          << "\"}}\n";
  }
  const auto most = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // KB
  };
  const auto before = most();
  LineReader reader(file);
  std::uint64_t count = 0;
  for (FeatureLine line; reader.Next(line);) ++count;
  EXPECT_EQ(count, static_cast<std::uint64_t>(kFeatures));
  EXPECT_LT(most() - before, 8 * 1024) << "KB for a file of " << std::filesystem::file_size(file) / 1024;
}

}  // namespace
