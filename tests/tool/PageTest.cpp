#include <nettle/base64.h>
#include <nettle/sha2.h>
#include <simdjson.h>
#include <zlib.h>

#include <filesystem>
#include <map>

#include "ToolRun.h"

namespace tool_testing {
namespace {

using simdjson::dom::element;

std::string FromBase64(std::string_view text) {
  std::string bytes(BASE64_DECODE_LENGTH(text.size()), '\0');
  std::size_t size = bytes.size();
  base64_decode_ctx context{};
  nettle_base64_decode_init(&context);
  EXPECT_EQ(nettle_base64_decode_update(&context, &size, reinterpret_cast<std::uint8_t*>(bytes.data()),
                                        text.size(), text.data()),
            1);
  EXPECT_EQ(nettle_base64_decode_final(&context), 1);
  bytes.resize(size);
  return bytes;
}

std::string Unzipped(std::string packed) {
  z_stream stream{};
  constexpr int kGzip = 16 + MAX_WBITS;
  EXPECT_EQ(inflateInit2(&stream, kGzip), Z_OK);
  stream.next_in = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_in = static_cast<uInt>(packed.size());
  std::string text;
  int result = Z_OK;
  while (result == Z_OK) {
    std::string piece(std::size_t{1} << 16U, '\0');
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    result = inflate(&stream, Z_NO_FLUSH);
    text.append(piece, 0, piece.size() - stream.avail_out);
  }
  EXPECT_EQ(result, Z_STREAM_END);
  inflateEnd(&stream);
  return text;
}

// What stands between two texts; empty where they are not there.
std::string_view Between(std::string_view text, std::string_view before, std::string_view after) {
  const std::size_t begin = text.find(before);
  if (begin == std::string_view::npos) return {};
  const std::size_t end = text.find(after, begin + before.size());
  return text.substr(begin + before.size(), end - begin - before.size());
}

std::string Text(element value) {
  return simdjson::minify(value);
}

class PageTest : public ToolTest {
 protected:
  // A data block of the page.
  element Block(const std::string& page, const std::string& name) {
    const std::string html = Content(page);
    const std::string_view data =
        Between(html, "<script type=\"text/plain\" id=\"" + name + "\">", "</script>");
    EXPECT_FALSE(data.empty()) << name;
    Parsed& parsed = parsed_[page + name];
    parsed.text = simdjson::padded_string(Unzipped(FromBase64(data)));
    return parsed.parser.parse(parsed.text);
  }
  // The detail of a document, by its file.
  element Detail(const std::string& page, std::string_view file) {
    const element documents = Block(page, "page")["documents"];
    std::size_t place = 0;
    for (const element each : documents["file"]) {
      if (std::string_view(each).ends_with(file)) break;
      ++place;
    }
    const std::int64_t block = documents["block"].at(place);
    return Block(page, "block-" + std::to_string(block))[std::to_string(place)];
  }
  // What `upgrade` makes of the documents beside a report.
  Ended Upgrade(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"upgrade", "--html", Path("p.html"), "--report", Path("r.jsonl")});
    return Run(arguments);
  }

 private:
  struct Parsed {
    simdjson::padded_string text;
    simdjson::dom::parser parser;
  };
  std::map<std::string, Parsed> parsed_;
};

// The step of that upgrade.
element StepOf(element page, element detail, std::string_view upgrade) {
  for (const element step : detail["steps"]) {
    const std::int64_t place = step["upgrade"];
    if (std::string_view(page["upgrades"].at(static_cast<std::size_t>(place))["name"]) == upgrade)
      return step;
  }
  ADD_FAILURE() << upgrade;
  return detail;
}

TEST_F(PageTest, EqualChangesAreFoldedUnderTheUpgradeThatMadeThem) {
  std::string lines(kJobLines);
  for (const char id : {'5', '6', '7'})
    lines += std::string(R"({"id":)") + id + R"(,"type":"HVXJobLT","name":"J)" + id +
             R"(","father":{"ref":2},"attributes":{"AnalysisCase":{"ref":2},"MemoryUnit":0}})" + "\n";
  const std::string file = Document("job.hvxdoc", lines);
  EXPECT_EQ(Upgrade({file, "-o", Path("new.hvxdoc"), "--only", "UpgradeJobMemoryUnit"}).code, 0);
  const element page = Block(Path("p.html"), "page");
  EXPECT_EQ(Text(page["kind"]), R"("upgrade")");
  EXPECT_EQ(Text(page["verdict"]["tone"]), R"("good")");
  const element detail = Detail(Path("p.html"), "job.hvxdoc");
  const element step = StepOf(page, detail, "UpgradeJobMemoryUnit");
  EXPECT_EQ(Text(step["changed"]), "4");
  EXPECT_EQ(
      Text(step["changes"]),
      R"({"count":2,"first":[{"type":"HVXJobLT","key":"MemoryUnit","before":"0","after":"1","count":3,)"
      R"("ids":[5,6,7],"own":[]},{"type":"HVXJobLT","key":"MemoryUnit","before":"-","after":"1","count":1,)"
      R"("ids":[3],"own":[]}]})");
  EXPECT_EQ(
      Text(detail["tree"]),
      R"({"count":6,"id":[1,2,3,5,6,7],"depth":[0,1,2,2,2,2],"marks":"  cccc","type":["AnalysisModel",)"
      R"("AnalysisCase","HVXJobLT","HVXJobLT","HVXJobLT","HVXJobLT"],"name":["Model","Case","Job.1","J5",)"
      R"("J6","J7"]})");
  EXPECT_EQ(Text(detail["cut"]), R"("")");
}

TEST_F(PageTest, WhatThePressureIsAndWhichUpgradeMovedItCanBeFollowed) {
  const std::string example = std::string(HVX_SOURCE_DIR) + "/examples/bolted_bracket.hvxdoc";
  EXPECT_EQ(Upgrade({example, "-o", Path("new.hvxdoc")}).code, 0);
  const element page = Block(Path("p.html"), "page");
  const element detail = Detail(Path("p.html"), "bolted_bracket.hvxdoc");
  const element step = StepOf(page, detail, "UpgradePressureBasicComponents");
  EXPECT_NE(Text(step["changes"]).find(R"("key":"pressure_param")"), std::string::npos);
  std::string rows;
  std::size_t equal = 0;
  for (const element subject : detail["sheet"]["subjects"]["first"]) {
    if (std::string_view(subject["name"]) == "Pressure.1") rows += Text(subject["rows"]);
    if (std::string_view(subject["name"]) == "Rotational Body Force.2") rows += Text(subject["rows"]);
    for (const element row : subject["rows"]) equal += std::int64_t(row.at(3)) == 0 ? 1 : 0;
  }
  EXPECT_NE(rows.find(R"(["pressure","1.25e+07 Pa","1.25e+07 Pa",0,-1,""])"), std::string::npos) << rows;
  // What stays in a list has the number there that it had before.
  EXPECT_NE(rows.find(R"-(["support","1: Rib.1 (Bracket.1), 2: Web Face (Bracket.1)",)-"), std::string::npos)
      << rows;
  EXPECT_GT(equal, 500U);
  // An upgrade says what it is there for.
  const std::int64_t place = step["upgrade"];
  const element upgrade = page["upgrades"].at(static_cast<std::size_t>(place));
  EXPECT_GT(Text(upgrade["about"]).size(), 50U);
  EXPECT_GT(std::int64_t(upgrade["features"]), 5);
}

TEST_F(PageTest, WhatNeedsAPersonComesFirst) {
  const std::string good = Document("good.hvxdoc", kJobLines);
  const std::string stray = Document("stray.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  Put(Path("broken.hvxdoc"), "{}\n");
  EXPECT_EQ(Upgrade({good, stray, Path("broken.hvxdoc"), "--output-dir", Path("out")}).code, 3);
  const element page = Block(Path("p.html"), "page");
  EXPECT_EQ(Text(page["verdict"]["words"]), R"("1 of 3 documents needs a person, and 1 has no result")");
  EXPECT_EQ(Text(page["documents"]["person"]), "[1,0,1]");  // by name
  const element detail = Detail(Path("p.html"), "stray.hvxdoc");
  const element first = detail["attention"]["first"].at(0);
  EXPECT_EQ(Text(first["features"]["first"].at(0)["name"]), R"("Stray Job")");
  EXPECT_NE(Text(first["next"]), R"("")");
  EXPECT_NE(Text(Detail(Path("p.html"), "broken.hvxdoc")["problem"]), R"("")");
}

// Nothing but the two elements whose sums the policy names may take effect.
TEST_F(PageTest, NothingOfADocumentIsMarkup) {
  const std::string name = "<img src=x onerror=alert(1)>\"'&.hvxdoc";
  const std::string file = Document(
      name,
      R"({"id":1,"type":"</script><script>alert(2)</script>","name":"a\u001bb\u202ec","alias":"<b>\u0007"}
{"id":2,"type":"HVXJobLT","name":"<i>","alias":"</title>","father":{"ref":1},"attributes":{"<u>":"<s>"}}
)");
  EXPECT_EQ(Upgrade({file, "-o", Path("new.hvxdoc")}).code, 1);
  const std::string html = Content(Path("p.html"));
  for (const std::string_view markup :
       {"<img", "<script>alert", "<b>", "<i>", "<u>", "<s>", "\x1b", "\x07", "\u202e"})
    EXPECT_EQ(html.find(markup), std::string::npos) << markup;
  const element detail = Detail(Path("p.html"), "hvxdoc");
  EXPECT_NE(Text(detail["tree"]).find(R"(<b>\\u0007)"), std::string::npos) << Text(detail["tree"]);
  for (const auto& [begin, directive] :
       {std::pair("<style>", "style-src 'sha256-"), std::pair("<script>", "script-src 'sha256-")}) {
    const std::string_view source =
        Between(html, begin, std::string_view(begin) == "<style>" ? "</style>" : "</script>");
    EXPECT_GT(source.size(), 1000U);
    sha256_ctx context{};
    nettle_sha256_init(&context);
    nettle_sha256_update(&context, source.size(), reinterpret_cast<const std::uint8_t*>(source.data()));
    std::string sum(SHA256_DIGEST_SIZE, '\0');
    nettle_sha256_digest(&context, SHA256_DIGEST_SIZE, reinterpret_cast<std::uint8_t*>(sum.data()));
    EXPECT_EQ(FromBase64(Between(html, directive, "'")), sum);
  }
  EXPECT_NE(html.find("default-src 'none'"), std::string::npos);
}

TEST_F(PageTest, ReplacesPagesOnlyAndClashesWithNothing) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  Put(Path("other.html"), "mine");
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--html", Path("other.html")}).code, 5);
  EXPECT_EQ(Content(Path("other.html")), "mine");
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--html", file}).code, 2);
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--html", Path("x"), "--report", Path("x")}).code, 2);
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--html", Path("p.html")}).code, 0);
  EXPECT_EQ(Names(), "job.hvxdoc other.html p.html");  // no report that nobody asked for
  const std::string first = Content(Path("p.html"));
  EXPECT_EQ(Text(Block(Path("p.html"), "page")["verdict"]["words"]),
            R"("Would be upgraded, and nothing needs a person")");
  EXPECT_EQ(Run({"check", file, "--html", Path("p.html")}).code, 6);
  EXPECT_NE(Content(Path("p.html")), first);
  EXPECT_EQ(Run({"check", file, "--html", Path("other.html")}).code, 5);
  EXPECT_EQ(Run({"check", file, "--html", Path("nowhere/p.html")}).code, 5);
}

TEST_F(PageTest, AReportMakesThePageThatTheRunMade) {
  const std::string one = Document("one.hvxdoc", kJobLines);
  const std::string two = Document("two.hvxdoc", kJobLines);
  EXPECT_EQ(Upgrade({one, two, "--output-dir", Path("out")}).code, 0);
  EXPECT_EQ(Run({"report", Path("r.jsonl"), "--format", "html", "-o", Path("again.html")}).code, 0);
  EXPECT_EQ(Content(Path("again.html")), Content(Path("p.html")));
  EXPECT_EQ(
      Run({"report", Path("r.jsonl"), "--format", "html", "--document", "two.hvxdoc"}, Path("two.html")).code,
      0);
  EXPECT_EQ(Text(Block(Path("two.html"), "page")["documents"]["file"]), "[\"" + two + "\"]");
  // A run that was stopped says so.
  std::string lines = Content(Path("r.jsonl"));
  lines.resize(lines.rfind('\n', lines.size() - 2) + 1);
  Put(Path("r.jsonl"), lines);
  EXPECT_EQ(Run({"report", Path("r.jsonl"), "--format", "html"}, Path("stopped.html")).code, 0);
  const element stopped = Block(Path("stopped.html"), "page");
  EXPECT_NE(Text(stopped["notes"]).find("not finished"), std::string::npos);
  EXPECT_EQ(Text(stopped["verdict"]["tone"]), R"("attention")");
  EXPECT_EQ(Text(stopped["verdict"]["words"]).find("All is well"), std::string::npos);
}

TEST_F(PageTest, ADryRunBesideAnotherRunIsToldAsThat) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  EXPECT_EQ(Upgrade({file, "--dry-run"}).code, 0);
  EXPECT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--report", Path("real.jsonl")}).code, 0);
  EXPECT_EQ(Run({"report", Path("r.jsonl"), Path("real.jsonl"), "--format", "html"}, Path("both.html")).code,
            0);
  EXPECT_EQ(Text(Block(Path("both.html"), "page")["groups"]),
            R"([{"words":"would be upgraded","tone":"good","count":1},)"
            R"({"words":"upgraded","tone":"good","count":1}])");
}

TEST_F(PageTest, WhatWasRunAsWellSaysForWhichUpgrade) {
  const std::string example = std::string(HVX_SOURCE_DIR) + "/examples/bolted_bracket.hvxdoc";
  EXPECT_EQ(
      Upgrade({example, "-o", Path("new.hvxdoc"), "--only", "UpgCCPToGACOrConstraintAsSupp", "--no-sheet"})
          .code,
      0);
  const std::string notes = Text(Detail(Path("p.html"), "bolted_bracket.hvxdoc")["notes"]);
  EXPECT_NE(notes.find("UpgMapCCPClearanceToInterference was run as well, because "
                       "UpgCCPToGACOrConstraintAsSupp"),
            std::string::npos)
      << notes;
}

TEST_F(PageTest, ReportsThatTellLessGivePagesThatSayWhatTheyLack) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  for (const std::string_view detail : {"changes", "summary"}) {
    EXPECT_EQ(Upgrade({file, "--dry-run", "--force", "--report-detail", std::string(detail)}).code, 0);
    const element told = Detail(Path("p.html"), "job.hvxdoc");
    EXPECT_EQ(Text(told["steps"]) == "[]", detail == "summary");
    EXPECT_EQ(Text(told["notes"]).find("--report-detail summary") != std::string::npos, detail == "summary");
    EXPECT_EQ(Text(told["verdict"]["tone"]), R"("good")");
  }
}

TEST_F(PageTest, ADifferenceThatRoundingHidesIsSeen) {
  std::string text = Content(std::string(HVX_SOURCE_DIR) + "/examples/bolted_bracket.hvxdoc");
  Put(Path("one.hvxdoc"), text);
  const std::string_view value = R"("Value":12500000.0)";
  text.replace(text.find(value), value.size(), R"("Value":12500000.5)");
  Put(Path("two.hvxdoc"), text);
  EXPECT_EQ(Run({"diff", Path("one.hvxdoc"), Path("two.hvxdoc"), "--html", Path("diff.html")}).code, 1);
  const std::string sheet = Text(Detail(Path("diff.html"), "two.hvxdoc")["sheet"]["subjects"]);
  EXPECT_NE(sheet.find(R"(["pressure","12500000 Pa","12500000.5 Pa",3,)"), std::string::npos);
}

TEST_F(PageTest, ValuesBeforeAreSaidWithTheNamesOfThen) {
  const std::string example = std::string(HVX_SOURCE_DIR) + "/examples/bolted_bracket.hvxdoc";
  EXPECT_EQ(Upgrade({example, "--dry-run"}).code, 0);
  const element detail = Detail(Path("p.html"), "bolted_bracket.hvxdoc");
  std::string rows;
  for (const element subject : detail["sheet"]["subjects"]["first"]) {
    if (std::string_view(subject["name"]) == "Bracket Job.1") rows = Text(subject["rows"]);
  }
  EXPECT_NE(rows.find(R"(["case","Halvex-Structural-Case.1","Nonlinear Structural Case.1",0,)"),
            std::string::npos)
      << rows;
}

// Both sides of a change must never read the same.
TEST_F(PageTest, WhatDiffersOnlyFarBehindOrInItsOrderIsSeen) {
  const std::string text(1000, 'x');
  const auto document = [&](const std::string& name, const std::string& list, char last) {
    return Document(name, R"({"id":1,"type":"HVXJobLT","attributes":{"List":)" + list + R"(,"Text":")" +
                              text + last + "\"}}\n");
  };
  const std::string one = document("one.hvxdoc", "[1,2,3,4,5,6]", 'a');
  const std::string two = document("two.hvxdoc", "[6,5,4,3,2,1]", 'b');
  EXPECT_EQ(Run({"diff", one, two, "--html", Path("p.html")}).code, 1);
  const std::string changes = Text(Detail(Path("p.html"), "two.hvxdoc")["steps"]);
  EXPECT_NE(changes.find(R"("before":"6 entries","after":"6 entries, in another order")"), std::string::npos)
      << changes;
  EXPECT_NE(changes.find("(differs further on)"), std::string::npos) << changes;
}

TEST_F(PageTest, ChosenUpgradesAreNotTakenForAll) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  EXPECT_EQ(Upgrade({file, "--dry-run", "--only", "UpgradeJobMemoryUnit"}).code, 0);
  const element page = Block(Path("p.html"), "page");
  EXPECT_NE(Text(page["title"]).find("chosen upgrades only"), std::string::npos);
  EXPECT_NE(Text(page["notes"]).find("pending"), std::string::npos);
}

TEST_F(PageTest, ChecksAndDifferencesArePagesToo) {
  const std::string old = Document("old.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  EXPECT_EQ(Run({"upgrade", old, "-o", Path("new.hvxdoc")}).code, 1);
  EXPECT_EQ(Run({"check", old, Path("new.hvxdoc"), Path("none.hvxdoc"), "--html", Path("check.html")}).code,
            3);
  const element check = Block(Path("check.html"), "page");
  EXPECT_EQ(Text(check["kind"]), R"("check")");
  EXPECT_EQ(Text(check["documents"]["person"]), "[0,1,1]");
  const element findings = Detail(Path("check.html"), "new.hvxdoc")["attention"];
  EXPECT_EQ(Text(findings["first"].at(0)["kind"]), R"("left behind")");
  EXPECT_EQ(Run({"diff", old, Path("new.hvxdoc"), "--html", Path("diff.html")}).code, 1);
  const element detail = Detail(Path("diff.html"), "new.hvxdoc");
  EXPECT_EQ(Text(detail["steps"].at(0)["upgrade"]), "-1");
  EXPECT_NE(Text(detail["steps"]).find(R"("before":"From InputFile","after":"Full Analysis")"),
            std::string::npos);
  EXPECT_NE(Text(detail["sheet"]["subjects"]).find("run type"), std::string::npos);
}

}  // namespace
}  // namespace tool_testing
