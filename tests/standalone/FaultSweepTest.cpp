// Whole documents on a host that fails: at one call after another, once or from there on.

#include <fmt/format.h>

#include <string>

#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;

// How far apart the calls are that are made to fail: under sanitizers, where a run takes several times as
// long, they are samples spread over the document.
std::int64_t Stride([[maybe_unused]] std::int64_t calls) {
#ifdef HVX_SANITIZED
  constexpr std::int64_t kRuns = 80;  // of one document in one mode
  return calls / kRuns + 1;
#else
  return 1;
#endif
}

struct Sweep {
  const char* example;
  bool forEver;
};

class FaultSweepTest : public testing_support::UpgradeTest, public testing::WithParamInterface<Sweep> {
 protected:
  [[nodiscard]] static DocumentPtr Read() {
    return testing_support::ExampleWithSmallMeshes(GetParam().example);
  }
  enum class End { kDone, kAborted, kEndless };
  // How many host calls were made is left in `calls_`.
  End Run(const DocumentPtr& document, const CheckpointPlan& plan) {
    const std::vector<std::string> pending = manager_.Pending(*document.Get());
    const CheckpointScope scope(plan);
    End end = End::kDone;
    try {
      static_cast<void>(manager_.Run(document, pending));
    } catch (const UpgradeAborted& aborted) {
      EXPECT_EQ(aborted.Problem().find("an exception got out"), std::string::npos) << aborted.what();
      end = End::kAborted;
    } catch (const CallLimitReached& reached) {
      // The one routine that goes on for ever, on purpose: a force's list of sons that is not as old releases
      // wrote it, or that cannot be changed, keeps it waiting.
      EXPECT_TRUE(reached.feature != nullptr && BelongsToForce(*reached.feature));
      end = End::kEndless;
    }
    calls_ = Checkpoint::CallCount();
    return end;
  }

  static bool BelongsToForce(const Feature& feature) {
    return feature.TypeName() == "HVXConcentratedForce" ||
           (feature.father != nullptr && BelongsToForce(*feature.father));
  }

  std::int64_t calls_ = 0;
  VersionManager manager_{{&testing_support::Library()}};
};

TEST_P(FaultSweepTest, NoFailureBreaksTheDocument) {
  ASSERT_EQ(Run(Read(), {}), End::kDone);
  const std::int64_t calls = calls_;
  ASSERT_GT(calls, 0);
  RecordProperty("calls", static_cast<int>(calls));
  for (std::int64_t nth = 1; nth <= calls; nth += Stride(calls)) {
    SCOPED_TRACE(fmt::format("call {} of {} fails", nth, calls));
    CheckpointPlan plan;
    plan.failNth = nth;
    plan.failFromNthOn = GetParam().forEver;
    plan.callLimit = 4 * calls;
    const DocumentPtr document = Read();
    const End end = Run(document, plan);
    // An aborted document is thrown away by the tool, but must be as sound as any other.
    const std::string lines = testing_support::LinesOf(*document.Get());
    ASSERT_EQ(testing_support::LinesOf(*testing_support::DocumentOf(lines).Get()), lines);
    ASSERT_EQ(document->Upgrades().empty(), end != End::kDone);
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
