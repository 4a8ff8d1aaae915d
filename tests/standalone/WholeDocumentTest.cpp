// The example documents as wholes: golden results, every starting point, and a second run; and the same
// documents with damaged features, of which the current model is told what is left.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "check/Conformity.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "support/References.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;
using testing_support::BrokenReferences;

std::string TextOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

class WholeDocumentTest : public testing_support::UpgradeTest,
                          public testing::WithParamInterface<const char*> {
 protected:
  [[nodiscard]] std::filesystem::path Example() const {
    return fmt::format("{}/examples/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }
  [[nodiscard]] std::filesystem::path Damaged() const {
    return fmt::format("{}/tests/damaged/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }
  [[nodiscard]] std::filesystem::path Golden() const {
    return fmt::format("{}/tests/golden/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }

  UpgradeRun Run(const DocumentPtr& document, const std::vector<std::string>& identifiers) {
    return manager_.Run(document, identifiers);
  }
  // As two releases would: each opens the document, upgrades it and saves it.
  DocumentPtr SavedAndRead(const DocumentPtr& document) {
    WriteOptions options;
    options.overwrite = true;
    WriteDocument(*document.Get(), folder_ / "saved.hvxdoc", options);
    return ReadDocument(folder_ / "saved.hvxdoc");
  }

  testing_support::TempFolder folder_;
  VersionManager manager_{{&testing_support::Library()}};
};

TEST_P(WholeDocumentTest, BecomesTheGoldenResult) {
  const DocumentPtr document = ReadDocument(Example());
  const UpgradeRun run = Run(document, manager_.Pending(*document.Get()));
  EXPECT_EQ(run.identifiers.size(), 66U);
  EXPECT_EQ(run.FailureCount(), 0U);
  EXPECT_THAT(CheckConformity(*document.Get()),
              testing::Each(testing::Field(&Finding::kind, FindingKind::kUnknown)));
  const std::filesystem::path result = folder_ / "result.hvxdoc";
  WriteDocument(*document.Get(), result);
  // After a change that is meant: scripts/renew-golden, and read the difference.
  EXPECT_TRUE(TextOf(result) == TextOf(Golden())) << "the result differs from tests/golden";
}

TEST_P(WholeDocumentTest, BecomesSoundFromEveryStartingPoint) {
  const std::size_t count = manager_.Known().size();
  // A support of the old document that connects nothing stays as it is.
  const std::vector<std::string> before = BrokenReferences(*ReadDocument(Example()).Get());
  for (std::size_t done = 0; done <= count; done += 6) {
    SCOPED_TRACE(fmt::format("after the first {} identifiers", done));
    DocumentPtr document = ReadDocument(Example());
    std::vector<std::string> first = manager_.Pending(*document.Get());
    first.resize(done);
    static_cast<void>(Run(document, first));
    document = SavedAndRead(document);
    static_cast<void>(Run(document, manager_.Pending(*document.Get())));
    EXPECT_EQ(BrokenReferences(*document.Get()), before);
    document = SavedAndRead(document);
    EXPECT_TRUE(manager_.Pending(*document.Get()).empty());
    // What is current stays as it is when it is looked at once more.
    static_cast<void>(Run(document, manager_.Pending(*document.Get())));
    EXPECT_TRUE(document->Touched().empty());
  }
}

TEST_P(WholeDocumentTest, OnlyTheDamagedFeaturesStayOld) {
  const DocumentPtr document = ReadDocument(Damaged());
  static_cast<void>(Run(document, manager_.Pending(*document.Get())));
  std::size_t damaged = 0;
  for (const Finding& finding : CheckConformity(*document.Get())) {
    if (finding.kind == FindingKind::kUnknown) continue;
    EXPECT_TRUE(finding.feature->externalName.starts_with("Damaged"));
    EXPECT_FALSE(finding.damage.empty());
    ++damaged;
  }
  EXPECT_GE(damaged, 4U);
}

INSTANTIATE_TEST_SUITE_P(Examples, WholeDocumentTest, testing::Values("bolted_bracket", "heated_pipe"));

}  // namespace
