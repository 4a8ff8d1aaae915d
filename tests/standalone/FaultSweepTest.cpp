// Whole documents on a host that fails: at one call after another, once or from there on.

#include <fmt/format.h>

#include "file/DocumentReader.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;

constexpr std::int64_t kRuns = 80;  // of one document in one mode

struct Sweep {
  const char* example;
  bool forEver;
};

class FaultSweepTest : public testing_support::UpgradeTest, public testing::WithParamInterface<Sweep> {
 protected:
  [[nodiscard]] DocumentPtr Read() const {
    return ReadDocument(fmt::format(HVX_SOURCE_DIR "/examples/{}.hvxdoc", GetParam().example));
  }
  // How many host calls were made; false in `ended` when the run was aborted.
  std::int64_t Run(const DocumentPtr& document, const CheckpointPlan& plan, bool& ended) {
    const std::vector<std::string> pending = manager_.Pending(*document.Get());
    const CheckpointScope scope(plan);
    try {
      static_cast<void>(manager_.Run(document, pending));
      ended = true;
    } catch (const UpgradeAborted&) {
      ended = false;
    }
    return Checkpoint::CallCount();
  }

  VersionManager manager_{{&testing_support::Library()}};
};

TEST_P(FaultSweepTest, NoFailureBreaksTheDocument) {
  bool ended = false;
  const std::int64_t calls = Run(Read(), {}, ended);
  ASSERT_TRUE(ended);
  ASSERT_GT(calls, 0);
  const std::int64_t stride = calls / kRuns + 1;
  for (std::int64_t nth = 1; nth <= calls; nth += stride) {
    SCOPED_TRACE(fmt::format("call {} of {} fails", nth, calls));
    CheckpointPlan plan;
    plan.failNth = nth;
    plan.failFromNthOn = GetParam().forEver;
    const DocumentPtr document = Read();
    const std::int64_t made = Run(document, plan, ended);
    ASSERT_LE(made, 20 * calls);
    // An aborted document is thrown away by the tool, but must be as sound as any other.
    const std::string lines = testing_support::LinesOf(*document.Get());
    ASSERT_EQ(testing_support::LinesOf(*testing_support::DocumentOf(lines).Get()), lines);
    ASSERT_EQ(document->Upgrades().empty(), !ended);
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, FaultSweepTest,
                         testing::Values(Sweep{"bolted_bracket", false}, Sweep{"bolted_bracket", true},
                                         Sweep{"heated_pipe", false}, Sweep{"heated_pipe", true}),
                         [](const auto& test) {
                           return fmt::format("{}_{}", test.param.example,
                                              test.param.forEver ? "ForEver" : "Once");
                         });

}  // namespace
