#include <fmt/format.h>
#include <gmock/gmock.h>
#include <simdjson.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "hvxupgrade/Reader.h"
#include "support/FailingAllocations.h"
#include "support/TempFolder.h"

namespace {

using namespace standalone;
using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;
using testing::StartsWith;
using testing_support::BytesOf;
using testing_support::FailingAllocations;
using testing_support::TempFolder;
using Kind = DocumentError::Kind;

constexpr Kind kSound = static_cast<Kind>(-1);

std::string WithHeader(std::size_t features, std::string_view lines) {
  return fmt::format("{{\"format\":\"hvxdoc\",\"version\":1,\"upgrades\":[],\"features\":{}}}\n{}", features,
                     lines);
}

class DocumentFileTest : public testing::Test {
 protected:
  struct Outcome {
    Kind kind = kSound;
    std::size_t line = 0;
    std::string text;  // the document as written again, or the message without the file's name
  };

  Outcome Read(const std::string& bytes, const ReadOptions& options = {}) {
    const std::filesystem::path file = folder_.Put("in.hvxdoc", bytes);
    const Outcome outcome = Read(file, options);
    // Of several faults, another may be met first in blocks of another size.
    if (options.blockBytes == ReadOptions().blockBytes && !options.onHeader) ExpectByLines(file, outcome);
    return outcome;
  }
  Outcome Read(const std::filesystem::path& file, const ReadOptions& options) {
    try {
      const DocumentPtr document = ReadDocument(file, options);
      WriteOptions write;
      write.overwrite = true;
      WriteDocument(*document.Get(), folder_ / "out.hvxdoc", write);
      return {kSound, 0, BytesOf(folder_ / "out.hvxdoc")};
    } catch (const DocumentError& error) {
      const std::string place =
          error.Line() == 0 ? file.string() + ": " : fmt::format("{}:{}: ", file.string(), error.Line());
      EXPECT_THAT(error.what(), StartsWith(place));
      return {error.GetKind(), error.Line(), std::string(error.what()).substr(place.size())};
    }
  }
  // Who reads line by line is told the same, but for what the whole document shows alone.
  static void ExpectByLines(const std::filesystem::path& file, const Outcome& outcome) {
    static constexpr std::string_view kOfWhole[] = {"a second feature has id", "which does not exist",
                                                    "is an ancestor of itself"};
    const bool isOfWhole = std::ranges::any_of(kOfWhole, [&outcome](std::string_view part) {
      return outcome.kind != kSound && outcome.text.find(part) != std::string::npos;
    });
    try {
      hvxupgrade::LineReader reader(file);
      for (hvxupgrade::FeatureLine line; reader.Next(line);) continue;
      EXPECT_TRUE(outcome.kind == kSound || isOfWhole) << outcome.text;
    } catch (const hvxupgrade::Error& error) {
      if (isOfWhole) return;
      EXPECT_EQ(error.Line(), outcome.line);
      EXPECT_EQ(error.Problem() + ". " + error.Advice(), outcome.text);
    }
  }
  void ExpectRefused(const std::string& bytes, std::size_t line, const char* message,
                     Kind kind = Kind::kInvalid) {
    SCOPED_TRACE(bytes.substr(0, 300));
    for (const std::size_t blockBytes : {std::size_t{1} << 20, std::size_t{64}}) {
      ReadOptions options;
      options.blockBytes = blockBytes;
      const Outcome outcome = Read(bytes, options);
      EXPECT_EQ(outcome.kind, kind);
      EXPECT_EQ(outcome.line, line);
      EXPECT_THAT(outcome.text, HasSubstr(message));
    }
  }
  // A document whose second line is that.
  void ExpectLineRefused(const std::string& line, const char* message) {
    ExpectRefused(WithHeader(2, "{\"id\":1,\"type\":\"X\"}\n" + line + "\n"), 3, message);
  }

  TempFolder folder_;
};

TEST_F(DocumentFileTest, ExamplesComeBackByteForByteWhateverTheBlocks) {
  for (const char* const name : {"bolted_bracket", "heated_pipe"}) {
    const std::string bytes = BytesOf(fmt::format(HVX_SOURCE_DIR "/examples/{}.hvxdoc", name));
    for (const std::size_t blockBytes : {1U, 100U, 4096U, 1U << 20}) {
      ReadOptions options;
      options.blockBytes = blockBytes;
      EXPECT_TRUE(Read(bytes, options).text == bytes) << name << " in blocks of " << blockBytes;
    }
  }
}

TEST_F(DocumentFileTest, EdgesOfEveryKeyAndValueComeBackByteForByte) {
  const std::string bytes =
      R"({"format":"hvxdoc","version":1,"upgrades":["UpgradeJobMemoryUnit","Späteres \"Upgrade\""],"features":5})"
      "\n"
      R"({"id":3,"type":"Späte Klasse","name":"\"\\/\n\t\r\u0000\u001f\u0008","alias":"aä€😀)"
      "\x7f"
      R"(","father":{"ref":9007199254740991},"container":{"ref":2},"upToDate":false,"physicalType":"P \"q\""})"
      "\n"
      R"({"id":9007199254740991,"type":"X","father":{"ref":2},"attributes":{"S":"","E\n":[],"N":null,"L":{"ref":3},)"
      R"("F":[{"ref":7},null,true,[[[[[[["deep"]]]]]]],{"ref":3}],"T":true,"B":false},"modes":{"N":-2147483648,"F":7}})"
      "\n"
      R"({"id":2,"type":"X","attributes":{"I":[0,-1,9223372036854775807,-9223372036854775808],)"
      R"("R":[0.0,-0.0,1.0,1e-05,0.0001,1e+16,1234567890123456.0,0.1,-2.5e-300,5e-324,2.2250738585072014e-308,)"
      R"(1.7976931348623157e+308,-1.7976931348623157e+308,0.30000000000000004,9007199254740993.0]}})"
      "\n"
      R"({"id":7,"type":"X","attributes":{"Self":{"ref":7}}})"
      "\n"
      R"({"id":8,"type":"X"})"
      "\n";
  const std::string canonical = [&bytes] {
    std::string text = bytes;  // the one real above that is no double
    return text.replace(text.find("9007199254740993.0"), 18, "9007199254740992.0");
  }();
  EXPECT_EQ(Read(bytes).text, canonical);
}

TEST_F(DocumentFileTest, OtherSpellingsOfTheSameAreMadeCanonical) {
  EXPECT_EQ(Read("\r\n  { \"format\" : \"hvxdoc\", \"features\":1,\t\"upgrades\":[ ],\"version\":1 } \r\n\n"
                 R"({"id":1, "type":"\u0058\u00e4\ud83d\ude00\/", "upToDate":true, "name":"", "attributes":)"
                 R"({"A":-0,"B":1E2,"C":100e-2,"\u0044":[ 1 , 2 ]},"modes":{"A":0}})"
                 "\n\n \n")
                .text,
            WithHeader(1, R"({"id":1,"type":"Xä😀/","attributes":{"A":0,"B":100.0,"C":1.0,"D":[1,2]}})"
                          "\n"));
  EXPECT_EQ(Read(WithHeader(1, R"({"id":1,"type":"X","container":{ "ref":1},"attributes":{"A":{"ref" :1},)"
                               R"("B":[{"ref": 1},{"ref":1 }],"C":{"\u0072ef":1},"D":{"ref":1}}})"))
                .text,
            WithHeader(1, R"({"id":1,"type":"X","container":{"ref":1},"attributes":{"A":{"ref":1},)"
                          R"("B":[{"ref":1},{"ref":1}],"C":{"ref":1},"D":{"ref":1}}})"
                          "\n"));
  EXPECT_EQ(Read(WithHeader(1, R"({"id":1,"type":"X"})")).text, WithHeader(1, "{\"id\":1,\"type\":\"X\"}\n"));
  EXPECT_EQ(Read(WithHeader(0, "")).text, WithHeader(0, ""));
}

TEST_F(DocumentFileTest, WhatIsNoDocumentIsRefused) {
  ExpectRefused("", 0, "the file is empty");
  ExpectRefused("\n \n", 0, "the file is empty");
  ExpectRefused("{}\n", 1, "the header must have");
  ExpectRefused("[]\n", 1, "not a JSON object");
  ExpectRefused(
      "\x7f"
      "ELF\n",
      1, "not a JSON object");
  ExpectRefused("{\"version\":1}\n", 1, "does not begin with \"format\"");
  ExpectRefused("{\"format\":\"pdf\"}\n", 1, "its format is not \"hvxdoc\"");
  ExpectRefused("{\"format\":7}\n", 1, "\"format\" must be a text but is a number");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":1,\"features\":0}\n", 1, "the header must have");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":1,\"version\":1}\n", 1, "key \"version\" occurs twice");
  ExpectRefused("{\"format\":\"hvxdoc\",\"colour\":1}\n", 1, "unknown key \"colour\"");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":1.0}\n", 1, "must be a whole number");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":0}\n", 1, "format version 0 does not exist");
  ExpectRefused("{\"format\":\"hvxdoc\",\"upgrades\":[1]}\n", 1, "\"upgrades\" must be a list of texts");
  ExpectRefused("{\"format\":\"hvxdoc\",\"upgrades\":[\"A\",\"A\"]}\n", 1, "\"upgrades\" names \"A\" twice");
  ExpectRefused("{\"format\":\"hvxdoc\",\"features\":-1}\n", 1, "\"features\" is -1; it counts from 0");
  ExpectRefused("{\"format\":\"hvxdoc\",\"upgrades\":{}}\n", 1,
                "\"upgrades\" must be a list but is an object");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":3,\"novelty\":1}\n", 1,
                "format version 3; this program knows", Kind::kNewer);
}

// Whoever has a document of an older program can read it for ever, and nothing of it is lost.
TEST_F(DocumentFileTest, EveryVersionOfTheFormatIsReadForEver) {
  for (const int version : {1, 2}) {
    const std::string bytes =
        BytesOf(fmt::format(HVX_SOURCE_DIR "/tests/golden/formats/version{}.hvxdoc", version));
    EXPECT_THAT(bytes, HasSubstr(fmt::format("\"version\":{},", version)));
    EXPECT_EQ(Read(bytes).text, bytes);
  }
}

TEST_F(DocumentFileTest, LibrariesThatTheHeaderTellsMustFitItsUpgrades) {
  const auto expect = [this](std::string_view libraries, const char* message, int version = 2) {
    ExpectRefused(
        fmt::format(R"({{"format":"hvxdoc","version":{},"libraries":{},"upgrades":["A","B"],"features":0}})"
                    "\n",
                    version, libraries),
        1, message);
  };
  expect("[]", "\"libraries\" does not belong into format version 1", 1);
  expect(R"({"name":"L"})", "\"libraries\" must be a list but is an object");
  expect(R"(["L"])", "\"libraries\" must be a list of objects");
  expect(R"([{"name":"L","colour":1}])", "unknown key \"colour\"");
  expect(R"([{"name":"L"}])", "the library L of \"libraries\" has no \"upgrades\"");
  expect(R"([{"name":"","upgrades":["A"]}])", "has no \"name\"");
  expect(R"([{"name":"L","version":1,"upgrades":["A"]}])", "\"version\" must be a text but is a number");
  expect(R"([{"name":"L","upgrades":[7]}])", "\"upgrades\" must be a list of texts");
  expect(R"([{"name":"L","version":"2","upgrades":["C"]}])",
         "L 2 of \"libraries\" names \"C\", which is not in");
  expect(R"([{"name":"L","upgrades":["A"]},{"name":"M","upgrades":["A"]}])",
         "\"libraries\" names \"A\" twice");
  expect(R"([{"name":"L","upgrades":["A"]},{"name":"L","upgrades":["B"]}])", "\"libraries\" has L twice");
  ExpectRefused("{\"format\":\"hvxdoc\",\"version\":2,\"upgrades\":[],\"features\":0}\n", 1,
                "format version 2 must have \"libraries\"");
  // Where it tells nothing, the older version holds it all.
  EXPECT_EQ(
      Read("{\"format\":\"hvxdoc\",\"version\":2,\"libraries\":[],\"upgrades\":[],\"features\":0}\n").text,
      WithHeader(0, ""));
}

TEST_F(DocumentFileTest, BrokenTextIsRefusedWithItsLine) {
  for (const char* const broken :
       {R"({"id":2 "type":"X"})", R"({"id":2,"type":"X",})", R"({"id":2,"type":"X"}})",
        R"({"id":2,"type":"X\q"})", R"({"id":2,"type":"X","name":"\ud83d"})", "{\"id\":2,\"type\":\"a\tb\"}",
        R"({"id":2,"type":"X","attributes":{"A":[1,]}})", R"({"id":2,"type":"X","attributes":{"A":NaN}})",
        R"({"id":2,"type":"X","attributes":{"A":truth}})", R"({"id":2,"type":"X","attributes":{"A":nul}})",
        R"({"id":2,"type":"X","upToDate":falsey})", R"({"id":2,"type":"X","name":"n":1})",
        R"({"id":2,"type":"X","attributes":{"A":"a":1}})", R"({"id":2,"type":"X","father":{"ref":1}:1})",
        R"({"id":2,"type":"X","attributes":{"A":["a":1]}})", R"({"id":2,"type":"X","name":"n" "m"})",
        R"({"id":2,"type":"X","attributes":{"A":{"ref":1}{"ref":1}}})"}) {
    ExpectLineRefused(broken, "the line is not valid JSON");
  }
  for (const char* const noObject : {"[1]", "42", "null", "\"text\"", "hello"}) {
    ExpectLineRefused(noObject, "the line is not a JSON object");
  }
  ExpectLineRefused("{\"id\":2,\"type\":\"\xff\"}", "not valid UTF-8");
  ExpectLineRefused("{\"id\":2,\"type\":\"\xed\xa0\x80\"}", "not valid UTF-8");  // half a pair of UTF-16
  ExpectLineRefused(R"({"id":2,"type":"X"}{"id":3,"type":"X"})", "the line has a second value");
  ExpectLineRefused(R"({"id":2,"type":"X"} x)", "the line has a second value");
  for (const std::size_t blockBytes : {std::size_t{1}, std::size_t{1} << 20}) {
    ReadOptions options;
    options.blockBytes = blockBytes;
    const Outcome outcome = Read(WithHeader(1, "{\"id\":1,\n\"type\":\"X\"}\n"), options);
    EXPECT_EQ(outcome.kind, Kind::kInvalid) << "a feature over two lines, in blocks of " << blockBytes;
    EXPECT_EQ(outcome.line, 2U);
  }
  const std::string deep(5000, '[');
  ExpectLineRefused(R"({"id":2,"type":"X","attributes":{"A":)" + deep, "");
  ExpectLineRefused(R"({"id":2,"type":"X","attributes":{"A":)" + deep + std::string(5000, ']') + "}}",
                    "deep");
}

TEST_F(DocumentFileTest, UnsoundFeaturesAreRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"type":"X","id":2})", R"(must begin with "id" and "type")"},
      {R"({"id":2})", R"(must begin with "id" and "type")"},
      {R"({"id":2,"name":"n","type":"X"})", R"(must begin with "id" and "type")"},
      {R"({"id":1,"type":"X"})", "a second feature has id 1"},
      {R"({"id":0,"type":"X"})", R"("id" is 0; ids go from 1 to 9007199254740991)"},
      {R"({"id":9007199254740992,"type":"X"})", R"("id" is 9007199254740992; ids go from 1)"},
      {R"({"id":2.0,"type":"X"})", R"("id" must be a whole number)"},
      {R"({"id":"2","type":"X"})", R"("id" must be a number but is a text)"},
      {R"({"id":2,"type":""})", R"("type" is empty)"},
      {R"({"id":2,"type":null})", R"("type" must be a text but is null)"},
      {R"({"id":2,"type":"X","Name":"n"})", R"(unknown key "Name")"},
      {R"({"id":2,"type":"X","name":"n","name":"n"})", R"(key "name" occurs twice)"},
      {R"({"id":2,"type":"X","father":1})", R"("father" must be an object but is a number)"},
      {R"({"id":2,"type":"X","father":{}})", R"(the link "father" must have the one key "ref")"},
      {R"({"id":2,"type":"X","father":{"ref":1,"ref":1}})",
       R"(the link "father" must have the one key "ref")"},
      {R"({"id":2,"type":"X","attributes":{"A":{"id":1}}})", R"(the link "A" must have the one key "ref")"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":-4}}})", "holds -4; ids count from 1"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":0}}})", "holds 0; ids count from 1"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":01}}})", R"("ref" must be a whole number)"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":1.0}}})", R"("ref" must be a whole number)"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":}}})", ""},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":1,"id":1}}})",
       R"(the link "A" must have the one key "ref")"},
      {R"({"id":2,"type":"X","upToDate":0})", R"("upToDate" must be true or false but is a number)"},
      {R"({"id":2,"type":"X","attributes":[]})", R"("attributes" must be an object but is a list)"},
      {R"({"id":2,"type":"X","attributes":{"":1}})", "an attribute has an empty key"},
      {R"({"id":2,"type":"X","attributes":{"A":1,"\u0041":2}})", R"(attribute "A" occurs twice)"},
      {R"({"id":2,"type":"X","attributes":{"A":9223372036854775808}})",
       R"(number of attribute "A" is out of range)"},
      {R"({"id":2,"type":"X","attributes":{"A":-9223372036854775809}})",
       R"(number of attribute "A" is out of range)"},
      {R"({"id":2,"type":"X","attributes":{"A":1e999}})", R"(number of attribute "A" is out of range)"},
      {R"({"id":2,"type":"X","attributes":{"A":01}})",
       R"(number of attribute "A" is out of range or malformed)"},
      {R"({"id":2,"type":"X","attributes":{"A":[[[[[[[[[]]]]]]]]]}})",
       R"(attribute "A" nests lists more than 8 deep)"},
      {R"({"id":2,"type":"X","attributes":{"A":1},"modes":{"B":1}})",
       R"("modes" names "B", which is no attribute)"},
      {R"({"id":2,"type":"X","attributes":{"A":1},"modes":{"A":1,"A":2}})", R"("modes" names "A" twice)"},
      {R"({"id":2,"type":"X","modes":{"A":1},"attributes":{"A":1}})",
       R"("modes" names "A", which is no attribute)"},
      {R"({"id":2,"type":"X","attributes":{"A":1},"modes":{"A":2147483648}})",
       R"(the mode of "A" exceeds 32 bits)"},
      {R"({"id":2,"type":"X","father":{"ref":4}})", "feature 2 links to feature 4, which does not exist"},
      {R"({"id":2,"type":"X","container":{"ref":4}})", "feature 2 links to feature 4, which does not exist"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":9223372036854775807}}})",
       "feature 2 links to feature 9223372036854775807, which does not exist"},
      {R"({"id":2,"type":"X","attributes":{"A":{"ref":18446744073709551617}}})", R"("ref" must be a whole)"},
      {R"({"id":2,"type":"X","attributes":{"A":[[{"ref":4}]]}})",
       "feature 2 links to feature 4, which does not"},
  };
  for (const auto& [line, message] : cases) ExpectLineRefused(line, message);
}

// A document may hold any text as a late type, those included that stand for something else in the host.
TEST_F(DocumentFileTest, NoLateTypeLeadsInACircle) {
  for (const char* const type : {"VLMBaseUnknown", "VLMSpecObject", "VLMISpecObject"}) {
    const std::string bytes = WithHeader(1, fmt::format("{{\"id\":1,\"type\":\"{}\"}}\n", type));
    EXPECT_EQ(Read(bytes).text, bytes);
    EXPECT_FALSE(LateType::Of(type).MetaClass().IsAKindOf("NoSuchKind"));
  }
}

TEST_F(DocumentFileTest, CountsAndCyclesAreChecked) {
  const std::string one = "{\"id\":1,\"type\":\"X\"}\n";
  ExpectRefused(WithHeader(2, one), 2, "announces 2 features but the file holds 1. If it was cut off");
  ExpectRefused(WithHeader(0, one), 2,
                "announces 0 features but the file holds 1. If the added lines are wanted");
  ExpectRefused(WithHeader(1, "{\"id\":1,\"type\":\"X\",\"father\":{\"ref\":1}}\n"), 2,
                "feature 1 is an ancestor");
  ExpectRefused(
      WithHeader(4, one + R"({"id":2,"type":"X","father":{"ref":3}}
{"id":3,"type":"X","father":{"ref":4}}
{"id":4,"type":"X","father":{"ref":3}}
)"),
      4, "feature 3 is an ancestor of itself. Correct \"father\"");  // 2 only stands beneath the circle
}

TEST_F(DocumentFileTest, OfSeveralFaultsTheFirstIsTold) {
  const std::string sound = "{\"id\":1,\"type\":\"X\"}\n";
  const std::string unknownKey = "{\"id\":2,\"type\":\"X\",\"colour\":1}\n";
  const std::string nowhere = "{\"id\":2,\"type\":\"X\",\"father\":{\"ref\":9}}\n";
  const std::string circle = "{\"id\":3,\"type\":\"X\",\"father\":{\"ref\":3}}\n";
  // What makes the parser refuse a whole block.
  for (const std::string& broken : {"{\"id\":7,\"type\":\"\xff\"}\n"s, "{\"id\":7,\"type\":\"open\n"s,
                                    "{\"id\":7,\n"s, "{\"id\":7}}\n"s, "\x01\n"s}) {
    ExpectRefused(WithHeader(3, sound + unknownKey + broken), 3, "unknown key \"colour\"");
    ExpectRefused(WithHeader(3, sound + "\n" + sound + broken), 4, "a second feature has id 1");
    ExpectRefused(WithHeader(3, "{\"id\":1,\"type\":\"X\"} {\"id\":2,\"type\":\"X\"}\n" + broken), 2, "");
    ExpectRefused(WithHeader(3, sound + broken + unknownKey), 3, "");
  }
  ExpectRefused("{\"format\":\"hvxdoc\",\"colour\":1}\n\xff\n", 1, "unknown key \"colour\"");
  // What shows only at the end.
  ExpectRefused(WithHeader(3, sound + nowhere + circle), 3, "links to feature 9, which does not exist");
  ExpectRefused(WithHeader(3, circle + nowhere + sound), 2, "feature 3 is an ancestor of itself");
  ExpectRefused(WithHeader(1, sound + nowhere), 3, "links to feature 9, which does not exist");
  ExpectRefused(WithHeader(4, sound + nowhere + circle), 4, "announces 4 features but the file holds 3");
}

TEST_F(DocumentFileTest, AMessageDoesNotRepeatAKeyOfAnyLength) {
  std::string key;
  for (int i = 0; i < 100'000; ++i) key += "é";
  const Outcome outcome = Read(WithHeader(1, R"({"id":1,"type":"X","modes":{")" + key + "\":1}}\n"));
  EXPECT_THAT(outcome.text, StartsWith("\"modes\" names \"éé"));
  EXPECT_THAT(outcome.text, HasSubstr("é...é"));
  EXPECT_THAT(outcome.text, HasSubstr("é\", which is no attribute. "));
  EXPECT_LT(outcome.text.size(), 600U);
  EXPECT_TRUE(simdjson::validate_utf8(outcome.text));
}

// What is easily taken for a document is told by what it is.
TEST_F(DocumentFileTest, ForeignFilesAreToldByName) {
  const std::string document = WithHeader(0, "");
  ExpectRefused("\xEF\xBB\xBF" + document, 1, "begins with a byte order mark. Save it as UTF-8 without one");
  ExpectRefused("BZh91AY\n", 1, "the file is compressed (bzip2). Unpack it first");
  std::string wide;
  for (const char c : document) wide += {c, '\0'};
  ExpectRefused(wide, 1, "the file is UTF-16");
  ExpectRefused("\xFF\xFE" + wide, 1, "the file is UTF-16");
}

// With any number of them: large objects are looked through in another way than small ones.
TEST_F(DocumentFileTest, ManyAttributesAndModesAreToldApart) {
  std::string attributes;
  std::string modes;
  for (int i = 0; i < 500; ++i) {
    attributes += fmt::format("{}\"k{}\":{}", i == 0 ? "" : ",", i, i);
    modes += fmt::format("{}\"k{}\":{}", i == 0 ? "" : ",", i, i + 1);
  }
  const auto document = [](const std::string& all, const std::string& allModes) {
    return WithHeader(1, fmt::format("{{\"id\":1,\"type\":\"X\",\"attributes\":{{{}}},\"modes\":{{{}}}}}\n",
                                     all, allModes));
  };
  EXPECT_EQ(Read(document(attributes, modes)).text, document(attributes, modes));
  ExpectRefused(document(attributes + ",\"k77\":1", modes), 2, "attribute \"k77\" occurs twice");
  ExpectRefused(document(attributes, modes + ",\"k77\":1"), 2, "\"modes\" names \"k77\" twice");
  ExpectRefused(document(attributes, modes + ",\"k500\":1"), 2, "\"k500\", which is no attribute");
  std::string upgrades = "\"U0\"";
  for (int i = 1; i < 500; ++i) upgrades += fmt::format(",\"U{}\"", i);
  const auto header = [](const std::string& all) {
    return fmt::format("{{\"format\":\"hvxdoc\",\"version\":1,\"upgrades\":[{}],\"features\":0}}\n", all);
  };
  EXPECT_EQ(Read(header(upgrades)).text, header(upgrades));
  ExpectRefused(header(upgrades + ",\"U77\""), 1, "\"upgrades\" names \"U77\" twice");
}

// Whichever allocation fails: it is never the document's fault.
TEST_F(DocumentFileTest, LackOfMemoryIsToldAsThat) {
  if (!testing_support::CanFailAllocations()) GTEST_SKIP() << "the sanitizer allocates";
  const std::string lines = R"({"id":1,"type":"X","father":{"ref":2},"attributes":{"A":["text",{"ref":2}]}}
{"id":2,"type":"X","alias":"Ann\u00e9e"}
)";
  const std::string broken = WithHeader(3, lines + "{\"id\":3,\n");
  for (const std::string& bytes : {WithHeader(2, lines), broken}) {
    const std::filesystem::path file = folder_.Put("in.hvxdoc", bytes);
    std::size_t countdown = 0;
    do {
      try {
        const FailingAllocations failing(countdown++);
        static_cast<void>(ReadDocument(file));
      } catch (const std::bad_alloc&) {
      } catch (const DocumentError& error) {
        EXPECT_FALSE(FailingAllocations::HaveFailed()) << countdown << ": " << error.what();
      }
    } while (FailingAllocations::HaveFailed());
    EXPECT_GT(countdown, 5U);
  }
}

TEST_F(DocumentFileTest, AFileCutOffAnywhereIsNoticed) {
  const std::string bytes =
      WithHeader(2, R"({"id":1,"type":"Xä","father":{"ref":2},"attributes":{"A":[1.5,"é\n"]}}
{"id":2,"type":"X","upToDate":false}
)");
  for (std::size_t size = 0; size + 1 < bytes.size(); ++size) {
    EXPECT_EQ(Read(bytes.substr(0, size)).kind, Kind::kInvalid) << "cut off after byte " << size;
  }
  EXPECT_EQ(Read(bytes.substr(0, bytes.size() - 1)).text, bytes);
}

TEST_F(DocumentFileTest, ALineMayBeLongerThanABlockButNotThanItsLimit) {
  const std::string bytes =
      WithHeader(2, fmt::format("{{\"id\":1,\"type\":\"X\"}}\n{{\"id\":2,\"type\":\"X\",\"name\":\"{}\"}}\n",
                                std::string(10000, 'n')));
  ReadOptions options;
  options.blockBytes = 7;
  EXPECT_EQ(Read(bytes, options).text, bytes);
  options.maxLineBytes = 9000;
  const Outcome outcome = Read(bytes, options);
  EXPECT_EQ(outcome.kind, Kind::kInvalid);
  EXPECT_EQ(outcome.line, 3U);
  EXPECT_THAT(outcome.text, HasSubstr("the line is longer than 9000 bytes"));
}

TEST_F(DocumentFileTest, WhatCannotBeReadIsTold) {
  for (const std::filesystem::path& file : {folder_ / "none.hvxdoc", folder_ / ""}) {
    try {
      static_cast<void>(ReadDocument(file));
      FAIL() << file;
    } catch (const DocumentError& error) {
      EXPECT_EQ(error.GetKind(), Kind::kUnreadable);
      EXPECT_THAT(error.what(), StartsWith(file.string() + ": cannot be "));
    }
  }
}

// Nothing may recurse once per generation, and links far ahead must cost no more than others.
TEST_F(DocumentFileTest, AHundredThousandGenerationsInEitherOrder) {
  constexpr int kCount = 100000;
  for (const bool fathersFirst : {true, false}) {
    fmt::memory_buffer lines;
    for (int i = 1; i <= kCount; ++i) {
      const int father = fathersFirst ? i - 1 : i % kCount + 1;
      const bool root = fathersFirst ? i == 1 : i == kCount;
      fmt::format_to(std::back_inserter(lines), "{{\"id\":{},\"type\":\"X\"", i);
      if (!root) fmt::format_to(std::back_inserter(lines), ",\"father\":{{\"ref\":{}}}", father);
      fmt::format_to(std::back_inserter(lines), "}}\n");
    }
    const std::string bytes = WithHeader(kCount, fmt::to_string(lines));
    EXPECT_TRUE(Read(bytes).text == bytes);
    const DocumentPtr document = ReadDocument(folder_ / "in.hvxdoc");
    Feature& top = *document->Find(fathersFirst ? 1 : kCount);
    EXPECT_EQ(Document::CountBeneath(top), kCount - 1U);
    document->Remove(top);
    EXPECT_EQ(document->FeatureCount(), 0U);
  }
  // All in one circle.
  fmt::memory_buffer lines;
  for (int i = 1; i <= kCount; ++i) {
    fmt::format_to(std::back_inserter(lines), "{{\"id\":{},\"type\":\"X\",\"father\":{{\"ref\":{}}}}}\n", i,
                   i % kCount + 1);
  }
  EXPECT_THAT(Read(WithHeader(kCount, fmt::to_string(lines))).text, HasSubstr("is an ancestor of itself"));
}

// A document with a few bytes changed, taken out, put in or repeated, or cut off.
std::string Broken(std::string bytes, std::size_t faults, std::mt19937& random) {
  const auto below = [&random](std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  };
  constexpr std::string_view kTelling = "{}[]:,\"\\0-.e \n\0\x80"sv;
  for (; faults > 0; --faults) {
    const std::size_t at = below(bytes.size());
    const std::size_t size = std::min(below(40) + 1, bytes.size() - at);
    switch (below(5)) {
      case 0:
        bytes[at] = kTelling[below(kTelling.size())];
        break;
      case 1:
        bytes.erase(at, size);
        break;
      case 2:
        bytes.insert(at, 1, kTelling[below(kTelling.size())]);
        break;
      case 3:
        bytes.insert(below(bytes.size()), bytes.substr(at, size));
        break;
      default:
        if (below(8) == 0) bytes.resize(at + 1);
    }
  }
  return bytes;
}

bool AllLinesAreJson(const std::string& bytes) {
  simdjson::dom::parser parser;
  std::istringstream lines(bytes);
  for (std::string line; std::getline(lines, line);) {
    const bool blank = line.find_first_not_of(" \t\r") == std::string::npos;
    if (!blank && parser.parse(line).error() != simdjson::SUCCESS) return false;
  }
  return true;
}

TEST_F(DocumentFileTest, BrokenDocumentsAreRefusedOrReadWholeWhateverTheBlocks) {
  std::string lines;
  for (int id = 1; id <= 20; ++id) {
    lines += fmt::format(
        R"({{"id":{0},"type":"HVXJobLT","name":"Job{0}","alias":"Job.\"{0}\"","father":{{"ref":1}},)"
        R"("attributes":{{"Values":[1,2.5,{{"ref":{0}}}],"Text":"ä\n","Flag":true}}}})"
        "\n",
        id);
  }
  lines.replace(lines.find(R"(,"father":{"ref":1})"), 19, "");
  const std::string sound = WithHeader(20, lines);
  std::mt19937 random(20240229);
  int refused = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::string bytes = Broken(sound, static_cast<std::size_t>(i) % 3 + 1, random);
    SCOPED_TRACE(fmt::format("document {}: {}", i, bytes));
    ReadOptions small;
    small.blockBytes = 100;
    const Outcome outcome = Read(bytes);
    const Outcome again = Read(bytes, small);
    ASSERT_EQ(outcome.kind, again.kind);  // of several faults, another may be met first
    if (outcome.kind == kSound) {
      ASSERT_EQ(outcome.text, again.text);
      ASSERT_TRUE(AllLinesAreJson(bytes));  // the reader takes most lines apart without parsing them whole
      ASSERT_EQ(Read(outcome.text).text, outcome.text);
    } else {
      ++refused;
    }
  }
  EXPECT_GT(refused, 500);
  EXPECT_LT(refused, 1000);  // a changed letter of a name is sound
}

// Half of the one and half of the other, which may look sound, or cut off.
TEST_F(DocumentFileTest, ADocumentThatIsSavedWhileItIsReadIsNeither) {
  const std::string old = WithHeader(2, "{\"id\":1,\"type\":\"X\"}\n{\"id\":2,\"type\":\"X\"}\n");
  const std::string sound = WithHeader(2, "{\"id\":1,\"type\":\"Y\"}\n{\"id\":2,\"type\":\"Yy\"}\n");
  for (const std::string& saved : {sound, sound.substr(0, old.size() - 10)}) {
    ReadOptions options;
    options.blockBytes = 64;
    options.onHeader = [&](const Document&, const auto&) { folder_.Put("in.hvxdoc", saved); };
    EXPECT_THAT(Read(old, options).text,
                StartsWith("changed meanwhile: while it was being read another program "
                           "wrote to it. Wait until that is done"));
  }
  // What is put in its place by a name is none of its bytes.
  ReadOptions options;
  options.onHeader = [&](const Document&, const auto&) {
    std::filesystem::rename(folder_.Put("new", sound), folder_ / "in.hvxdoc");
  };
  EXPECT_EQ(Read(old, options).text, old);
}

}  // namespace
