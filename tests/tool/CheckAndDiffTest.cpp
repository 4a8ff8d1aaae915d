#include <gmock/gmock.h>
#include <simdjson.h>

#include "ToolRun.h"

namespace tool_testing {
namespace {

class CheckAndDiffTest : public ToolTest {};

TEST_F(CheckAndDiffTest, CheckTellsWhatAnUpgradeWouldChange) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const Ended before = Run({"check", file});
  EXPECT_EQ(before.code, 6);
  EXPECT_EQ(before.out, file +
                            ": does not conform, 2 findings on 1 feature (3 features)\n"
                            "  pending: an upgrade that the document has not been through yet changes this\n"
                            "    jobs run no input files any more (UpgradeJobForFromInputFile)\n"
                            "      3 HVXJobLT \"Job.1\"\n"
                            "    the code of its memory unit is not 1 (UpgradeJobMemoryUnit)\n"
                            "      3 HVXJobLT \"Job.1\"\n");
  ASSERT_EQ(Run({"upgrade", file, "--in-place"}).code, 0);
  const Ended after = Run({"check", file});
  EXPECT_EQ(after.code, 0);
  EXPECT_EQ(after.out, file + ": conforms (3 features)\n");
}

TEST_F(CheckAndDiffTest, CheckTellsWhatWasLeftBehindAndWhatToDo) {
  const std::string file = Document("job.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  const Ended after = Run({"check", file});
  EXPECT_EQ(after.code, 1);
  EXPECT_THAT(after.out,
              testing::HasSubstr("  left behind: its upgrade ran and could not change this\n"
                                 "    its restart settings are not those of its case and frequency: "
                                 "\"AnalysisCase\" is missing (UpgradeJobRestartData)\n"
                                 "      4 HVXJobLT \"Stray Job\"\n"
                                 "      -> Give the job its case as \"AnalysisCase\", then upgrade the "
                                 "document again with --retry.\n"));
}

TEST_F(CheckAndDiffTest, CheckFoldsManyFeaturesAndNamesUnknownLateTypes) {
  std::string lines(kJobLines);
  for (int id = 4; id < 14; ++id) {
    lines += R"({"id":)" + std::to_string(id) +
             R"(,"type":"HVXBolt","name":"B","father":{"ref":1}})"
             "\n";
    lines += R"({"id":)" + std::to_string(id + 100) +
             R"(,"type":"HVXRotationalBodyForse"})"
             "\n";
    lines += R"({"id":)" + std::to_string(id + 200) +
             R"(,"type":"HVXRiksStepLT"})"
             "\n";
  }
  const std::string file = Document("many.hvxdoc", lines);
  const Ended folded = Run({"check", file});
  EXPECT_EQ(folded.code, 1);  // a late type that is probably misspelt needs a person
  EXPECT_THAT(folded.out, testing::HasSubstr("    HVXBolt: 10 features, first 4\n"));
  EXPECT_THAT(folded.out,
              testing::HasSubstr("    HVXRotationalBodyForse: 10 features, first 104; did you mean "
                                 "\"HVXRotationalBodyForce\"?\n"));
  EXPECT_THAT(folded.out,
              testing::HasSubstr("      208 HVXRiksStepLT\n      and 5 more (--all lists them)\n"));
  EXPECT_THAT(Run({"check", "--all", file}).out, testing::HasSubstr("      213 HVXRiksStepLT\n"));
}

TEST_F(CheckAndDiffTest, CheckAsJsonKnowsNewerAndBrokenDocuments) {
  const std::string old = Document("job.hvxdoc", kJobLines);
  const std::string newer = Document("newer.hvxdoc", kJobLines, R"("UpgradeOfTheFuture")");
  EXPECT_EQ(Run({"check", old, newer}).code, 4);
  const Ended ended = Run({"check", "--json", old, newer, Path("none.hvxdoc")});
  EXPECT_EQ(ended.code, 3);
  simdjson::dom::parser parser;
  const simdjson::padded_string text(ended.out);
  const simdjson::dom::element check = parser.parse(text);
  EXPECT_EQ(std::int64_t(check["version"]), 3);
  const simdjson::dom::array documents = check["documents"];
  EXPECT_EQ(std::string_view(documents.at(0)["findings"].at(0)["upgrade"]), "UpgradeJobForFromInputFile");
  EXPECT_EQ(std::string_view(documents.at(0)["findings"].at(0)["kind"]), "pending");
  EXPECT_EQ(std::int64_t(documents.at(0)["counts"]["pending"]), 2);
  EXPECT_EQ(documents.at(1)["findings"].get_array().size(), 0U);
  EXPECT_EQ(std::string_view(documents.at(0)["verdict"]), "doesNotConform");
  EXPECT_EQ(std::string_view(documents.at(0)["words"]), "does not conform");
  EXPECT_EQ(std::string_view(documents.at(1)["verdict"]), "newer");
  EXPECT_EQ(std::string_view(documents.at(1)["newerUpgrades"].at(0)), "UpgradeOfTheFuture");
  EXPECT_EQ(std::string_view(documents.at(2)["verdict"]), "broken");
  EXPECT_FALSE(bool(check["interrupted"]));
}

TEST_F(CheckAndDiffTest, DiffMatchesFeaturesAndLinksById) {
  const std::string before = Document("a.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  const std::string after = Document("b.hvxdoc", std::string(kJobLines) + R"({"id":5,"type":"HVXClamp"}
)");
  EXPECT_EQ(Run({"diff", before, before}).out, before + " and " + before + " have the same content\n");
  EXPECT_EQ(Run({"diff", before, before}).code, 0);
  const Ended ended = Run({"diff", before, after});
  EXPECT_EQ(ended.code, 1);
  EXPECT_EQ(ended.out,
            "0 features changed, 0 moved, 1 created, 1 removed\n"
            "+ 5 HVXClamp\n"
            "    type: (none) -> \"HVXClamp\"\n"
            "    upToDate: (none) -> true\n"
            "- 4 HVXJobLT \"Stray Job\"\n"
            "    type: \"HVXJobLT\" -> (none)\n"
            "    name: \"Stray\" -> (none)\n"
            "    alias: \"Stray Job\" -> (none)\n"
            "    upToDate: true -> (none)\n");
  EXPECT_EQ(Run({"diff", before, Path("none.hvxdoc")}).code, 3);
}

TEST_F(CheckAndDiffTest, DiffTellsValuesAndUpgrades) {
  const std::string before = Document("a.hvxdoc", kJobLines);
  const std::string after = Path("b.hvxdoc");
  ASSERT_EQ(Run({"upgrade", before, "-o", after, "--only", "UpgradeJobMemoryUnit"}).code, 0);
  EXPECT_EQ(Run({"diff", before, after}).out,
            "1 feature changed, 0 moved, 0 created, 0 removed\n"
            "+ upgrade UpgradeJobMemoryUnit\n"
            "~ 3 HVXJobLT \"Job.1\"\n"
            "    attributes \"MemoryUnit\": (none) -> 1\n");
  const Ended ended = Run({"diff", "--json", before, after});
  simdjson::dom::parser parser;
  const simdjson::padded_string text(ended.out);
  const simdjson::dom::element diff = parser.parse(text);
  EXPECT_TRUE(bool(diff["different"]));
  EXPECT_EQ(std::string_view(diff["changed"].at(0)["changes"].at(0)["key"]), "MemoryUnit");
}

TEST_F(CheckAndDiffTest, DiffTellsAsFewMovedBrothersAsExplainTheOrder) {
  const auto steps = [this](const char* name, std::initializer_list<int> ids) {
    std::string lines = R"({"id":1,"type":"AnalysisCase"})"
                        "\n";
    for (const int id : ids) {
      lines += R"({"id":)" + std::to_string(id) + R"(,"type":"HVXRiksStepLT","father":{"ref":1}})" + "\n";
    }
    return Document(name, lines);
  };
  // The third stands in front now; the new sixth and the old fifth move nobody.
  const std::string before = steps("a.hvxdoc", {2, 3, 5, 4, 7});
  const std::string after = steps("b.hvxdoc", {4, 6, 2, 3, 7});
  const std::string out = Run({"diff", before, after}).out;
  EXPECT_EQ(out.substr(0, out.find('+')),
            "0 features changed, 1 moved, 1 created, 1 removed\n"
            "> 4 HVXRiksStepLT\n"
            "    moved among its siblings\n");
  const std::string swapped = steps("c.hvxdoc", {3, 2, 5, 4, 7});
  EXPECT_EQ(Run({"diff", before, swapped}).code, 1);
  EXPECT_NE(Run({"diff", "--json", before, swapped}).out.find(R"("moved":[{"id":)"), std::string::npos);
  // Roots are brothers, too.
  const std::string roots = Document("d.hvxdoc", R"({"id":1,"type":"X"}
{"id":2,"type":"X"}
)");
  const std::string turned = Document("e.hvxdoc", R"({"id":2,"type":"X"}
{"id":1,"type":"X"}
)");
  EXPECT_EQ(Run({"diff", roots, turned}).code, 1);
}

}  // namespace
}  // namespace tool_testing
