#include <simdjson.h>

#include <algorithm>
#include <array>

#include "ToolRun.h"

namespace tool_testing {
namespace {

// What a name can hold that no line of ours may: each would forge a line, send a command to the terminal, or
// change how what stands around it is shown.
constexpr std::string_view kHostile[] = {"\n",
                                         "\r",
                                         "\t",
                                         "\x1b[2J",
                                         "\x07",
                                         "\x7f",
                                         "\xc2\x85",
                                         "\xc2\x9b",
                                         "\xc2\xad",
                                         "\xd8\x9c",
                                         "\xe2\x80\x8b",
                                         "\xe2\x80\x8d",
                                         "\xe2\x80\x8e",
                                         "\xe2\x80\x8f",
                                         "\xe2\x80\xa8",
                                         "\xe2\x80\xa9",
                                         "\xe2\x80\xaa",
                                         "\xe2\x80\xae",
                                         "\xe2\x81\xa0",
                                         "\xe2\x81\xa6",
                                         "\xe2\x81\xa9",
                                         "\xef\xbb\xbf",
                                         "\xf3\xa0\x81\x81"};

// For texts in documents, where line feeds and the like must be escaped.
std::string AsJson(std::string_view text) {
  std::string json;
  for (const char c : text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20) {
      json += c;
    } else {
      json += std::string("\\u00") + kDigits[byte >> 4U] + kDigits[byte & 15U];
    }
  }
  return json;
}

std::string AllHostile() {
  std::string all = "begin";
  for (const std::string_view each : kHostile) all += std::string(each) + "forged";
  return all;
}

class HostileTextTest : public ToolTest {
 protected:
  // Nothing but line feeds, and no line that begins with what stands behind one of them.
  static void ExpectClean(const std::string& text, const std::string& what) {
    for (const std::string_view each : kHostile) {
      if (each == "\n") continue;
      EXPECT_EQ(text.find(each), std::string::npos) << what << ": " << text;
    }
    EXPECT_EQ(text.find("\nforged"), std::string::npos) << what << ": " << text;
    EXPECT_TRUE(simdjson::validate_utf8(text)) << what << ": " << text;
  }
  Ended ExpectClean(const std::vector<std::string>& arguments) {
    Ended ended = Run(arguments);
    ExpectClean(ended.out, arguments.front() + " on standard output");
    ExpectClean(ended.err, arguments.front() + " on standard error");
    return ended;
  }
};

TEST_F(HostileTextTest, NothingInADocumentReachesTheTerminal) {
  const std::string evil = AsJson(AllHostile());
  const std::string lines =
      R"({"id":1,"type":"AnalysisModel","name":"Model"}
{"id":2,"type":"AnalysisCase","name":")" +
      evil + R"(","alias":")" + evil +
      R"(","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1,")" + evil + R"(":")" + evil +
      R"("}}
{"id":3,"type":"HVXJobLT","name":")" +
      evil + R"(","alias":")" + evil + R"(","father":{"ref":2},"physicalType":")" + evil +
      R"(","attributes":{"RunType":7}}
{"id":4,"type":"HVXJobLT)" +
      evil + R"(","father":{"ref":2}}
{"id":5,"type":"HVXPressure","alias":")" +
      evil + R"(","father":{"ref":2}}
)";
  const std::string file = Document("evil.hvxdoc", lines, "\"" + evil + "\"");
  const std::string known = Document("known.hvxdoc", lines);
  for (const std::string& each : {file, known}) {
    ExpectClean({"status", each});
    ExpectClean({"status", "--json", each});
    ExpectClean({"check", "--all", each});
    ExpectClean({"check", "--json", each});
    ExpectClean({"show", "--attributes", each});
    ExpectClean({"sheet", "--all", each});
    ExpectClean({"sheet", "--json", each});
    ExpectClean({"upgrade", "--dry-run", each});
  }
  ExpectClean({"upgrade", known, "-o", Path("out.hvxdoc"), "--report", Path("report.json"), "--trace", "-"});
  ExpectClean(Content(Path("report.json")), "the report");
  for (const char* const format : {"text", "json", "csv"}) {
    std::string told = Run({"report", Path("report.json"), "--format", format}).out;
    EXPECT_NE(told, "");
    std::erase(told, '\r');  // which ends lines of comma-separated values
    ExpectClean(told, format);
  }
  ExpectClean({"diff", known, Path("out.hvxdoc")});
  ExpectClean({"diff", "--json", known, Path("out.hvxdoc")});
  ExpectClean({"diff", file, known});
  ExpectClean({"sheet", "--all", file, Path("out.hvxdoc")});
  ExpectClean({"sheet", "--json", known, Path("out.hvxdoc")});
  std::string csv = Run({"sheet", "--csv", known, Path("out.hvxdoc")}).out;
  std::erase(csv, '\r');  // which ends its lines
  ExpectClean(csv, "comma-separated values");

  // The JSON says what the document holds all the same.
  simdjson::dom::parser parser;
  const simdjson::padded_string text(Run({"diff", "--json", file, known}).out);
  EXPECT_EQ(std::string_view(parser.parse(text)["upgradesBefore"].at(0)), AllHostile());
}

TEST_F(HostileTextTest, NothingInAFaultReachesTheTerminal) {
  const std::string evil = AsJson(AllHostile());
  const std::string unknownKey = Document("key.hvxdoc", R"({"id":1,"type":"X",")" + evil + "\":1}\n");
  const std::string unknownInHeader = Path("header.hvxdoc");
  Put(unknownInHeader, R"({"format":"hvxdoc",")" + evil + "\":1}\n");
  for (const std::string& file : {unknownKey, unknownInHeader}) {
    for (const std::vector<std::string>& verb :
         {std::vector<std::string>{"status"}, {"check"}, {"show"}, {"upgrade", "--dry-run"}}) {
      if (verb.front() == "status" && file == unknownKey) continue;  // it reads the header only
      std::vector<std::string> arguments = verb;
      arguments.push_back(file);
      const Ended ended = ExpectClean(arguments);
      EXPECT_EQ(ended.code, 3);
      EXPECT_EQ(std::ranges::count(ended.err, '\n'), 1) << ended.err;
    }
  }
}

TEST_F(HostileTextTest, NothingInAnArgumentReachesTheTerminal) {
  const std::string evil = AllHostile().substr(0, 200) + "\x9b\xff";  // file names hold any bytes
  const std::string file = Document(evil, kJobLines);
  EXPECT_NE(ExpectClean({"status", file}).out.find("\\x9b\\xff: upgrade needed"), std::string::npos);
  ExpectClean({"status", "--json", file});
  ExpectClean({"check", file});
  ExpectClean({"upgrade", file, "-o", Path("out" + evil), "--report", Path("report" + evil)});
  ExpectClean({"upgrade", file, "-o", Path("out" + evil)});
  ExpectClean({"diff", file, file});
  ExpectClean({"show", file, "--type", evil});
  ExpectClean({"sheet", file, "--step", evil});
  ExpectClean({"status", Path("none" + evil)});
  ExpectClean({"identifiers", evil});
  ExpectClean({"upgrade", file, "--dry-run", "--only", evil});
  ExpectClean({"upgrade", file, "--dry-run", "--language", evil});
  ExpectClean({evil});
  ExpectClean({"status", "--" + evil, file});
  ExpectClean({"--library", evil, "status", file});
}

// People copy it into a shell.
TEST_F(HostileTextTest, TheNextCommandIsOneOfAShell) {
  const std::string one = Document("1.hvxdoc", kBrokenJobLine);
  const std::string two = Document("2.hvxdoc", kBrokenJobLine);
  // Each, and how it ends as a word.
  const std::pair<const char*, const char*> names[] = {{"Träger_1", "/Träger_1"},
                                                       {"a b", "/a b'"},
                                                       {"it's $(touch x)", R"(/it'\''s $(touch x)')"},
                                                       {"a\nb'\\\xff", R"(/a\u000ab\'\\\xff')"}};
  for (const auto& [name, word] : names) {
    const Ended ended = Run({"upgrade", one, two, "--output-dir", Path(name)});
    const std::size_t next = ended.out.find("  Next: ");
    ASSERT_NE(next, std::string::npos) << ended.out;
    const std::string line = ended.out.substr(next, ended.out.find('\n', next) - next);
    EXPECT_TRUE(line.ends_with(word + std::string(" shows what each needs"))) << line;
  }
}

TEST_F(HostileTextTest, WhatIsSeenStays) {
  const std::string file = Document("names.hvxdoc",
                                    "{\"id\":1,\"type\":\"Part\",\"alias\":\"Träger 梁 مرحبا\"}\n"
                                    "{\"id\":2,\"type\":\"Part\",\"alias\":\"می\u200cخواهم\"}\n"
                                    "{\"id\":3,\"type\":\"Part\",\"alias\":\"a\u200db\"}\n");
  EXPECT_EQ(Run({"show", file}).out,
            "1 Part \"Träger 梁 مرحبا\"\n2 Part \"می\u200cخواهم\"\n3 Part \"a\\u200db\"\n");
}

}  // namespace
}  // namespace tool_testing
