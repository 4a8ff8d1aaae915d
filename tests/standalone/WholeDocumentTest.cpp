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
  UpgradeRun RunWithNeeded(const DocumentPtr& document, std::vector<std::string> identifiers) {
    for (const VersionManager::Needed& needed :
         manager_.NeededBy(identifiers, manager_.Pending(*document.Get())))
      identifiers.push_back(needed.identifier);
    return Run(document, identifiers);
  }
  // As two releases would: each opens the document, upgrades it and saves it.
  static DocumentPtr SavedAndRead(const DocumentPtr& document) {
    DocumentPtr read = testing_support::DocumentOf(testing_support::LinesOf(*document.Get()));
    for (const std::string& identifier : document->Upgrades()) read->RecordUpgrade(identifier);
    return read;
  }

  testing_support::TempFolder folder_;
  VersionManager manager_{{&testing_support::Library()}};
};

TEST_P(WholeDocumentTest, BecomesTheGoldenResult) {
  const DocumentPtr document = ReadDocument(Example());
  const UpgradeRun run = Run(document, manager_.Pending(*document.Get()));
  EXPECT_EQ(run.identifiers.size(), 66U);
  EXPECT_TRUE(run.failures.empty());
  EXPECT_THAT(CheckConformity(*document.Get()),
              testing::Each(testing::Field(&Finding::kind, FindingKind::kUnknown)));
  const std::filesystem::path result = folder_ / "result.hvxdoc";
  WriteDocument(*document.Get(), result);
  // After a change that is meant: scripts/renew-golden, and read the difference.
  EXPECT_TRUE(TextOf(result) == TextOf(Golden())) << "the result differs from tests/golden";
}

// In one run, in two after any identifier, and in one run for each: every time with a file in between.
TEST_P(WholeDocumentTest, ComesOutTheSameWhicheverWayItGoes) {
  for (const std::filesystem::path& file : {Example(), Damaged()}) {
    const DocumentPtr original = ReadDocument(file);
    const FeatureId made = original->NextId();
    const std::vector<std::string> all = manager_.Pending(*original.Get());
    DocumentPtr atOnce = ReadDocument(file);
    static_cast<void>(Run(atOnce, all));
    atOnce = SavedAndRead(atOnce);
    const std::string expected = testing_support::LinesNumberedAnew(*atOnce.Get(), made);

    for (std::size_t first = 1; first < all.size(); ++first) {
      SCOPED_TRACE(fmt::format("{}, first those up to {}", file.filename().string(), all[first - 1]));
      DocumentPtr document = ReadDocument(file);
      static_cast<void>(
          RunWithNeeded(document, {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(first)}));
      document = SavedAndRead(document);
      static_cast<void>(Run(document, manager_.Pending(*document.Get())));
      EXPECT_TRUE(testing_support::LinesNumberedAnew(*document.Get(), made) == expected);
    }
    DocumentPtr document = ReadDocument(file);
    for (std::vector<std::string> pending = all; !pending.empty();
         pending = manager_.Pending(*document.Get())) {
      static_cast<void>(RunWithNeeded(document, {pending.front()}));
      document = SavedAndRead(document);
    }
    EXPECT_TRUE(testing_support::LinesNumberedAnew(*document.Get(), made) == expected) << "one by one";
    EXPECT_EQ(document->Upgrades(), atOnce->Upgrades());
  }
}

TEST_P(WholeDocumentTest, WhatIsCurrentStaysAsItIs) {
  const DocumentPtr document = ReadDocument(Golden());
  const std::vector<std::string> before = BrokenReferences(*ReadDocument(Example()).Get());
  EXPECT_EQ(BrokenReferences(*document.Get()), before);
  EXPECT_TRUE(manager_.Pending(*document.Get()).empty());
  static_cast<void>(Run(document, {}));
  EXPECT_TRUE(document->Touched().empty());
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
