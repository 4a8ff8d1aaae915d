// Which operations of the host the routines call, on what, and in which order: for both examples, compared
// with tests/golden/host_calls.txt. The standalone host may be made faster as it likes; what it is asked for
// stays. scripts/renew-golden writes the table anew. `hvxupgrade upgrade --trace FILE` shows the calls
// themselves.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "file/DocumentReader.h"
#include "support/Sums.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;

constexpr const char* kTable = HVX_SOURCE_DIR "/tests/golden/host_calls.txt";

// A row for each turn of an identifier, in the order of the run: how many calls its routines made, and a sum
// over what, on which feature, with which key and option. What is called between routines (by a conversion of
// the whole document, by the walk to the features) belongs to the row before it.
std::string CallsOf(const char* example, const VersionManager& manager) {
  const DocumentPtr document = ReadDocument(fmt::format("{}/examples/{}.hvxdoc", HVX_SOURCE_DIR, example));
  std::string table;
  std::string_view identifier = "before the first routine";
  std::uint64_t sum = 0;
  std::int64_t calls = 0;
  const auto endRow = [&] {
    table +=
        fmt::format("{} {}: {} calls, {:08x}\n", example, identifier, calls, testing_support::Shortened(sum));
    sum = 0;
    calls = 0;
  };
  UpgradeWatch watch;
  watch.onRoutine = [&](const Feature& /*feature*/, const HVXUpgradeBinding& row) {
    if (row.identifier.View() == identifier) return;
    endRow();
    identifier = row.identifier.View();
  };
  CheckpointPlan plan;
  plan.onCall = [&](const HostCall& call, const Feature* /*feature*/) {
    ++calls;
    sum = testing_support::SumOf(call.operation, sum ^ static_cast<std::uint64_t>(call.feature));
    sum = testing_support::SumOf(call.detail, sum ^ static_cast<std::uint64_t>(call.option));
  };
  const CheckpointScope scope(plan);
  static_cast<void>(manager.Run(document, manager.Pending(*document.Get()), watch));
  endRow();
  return table;
}

class HostCallsTest : public testing_support::UpgradeTest {};

TEST_F(HostCallsTest, AreThoseOfTheTable) {
  const VersionManager manager({&testing_support::Library()});
  const std::string calls = CallsOf("bolted_bracket", manager) + CallsOf("heated_pipe", manager);
  if (std::getenv("HVX_RENEW_GOLDEN") != nullptr) std::ofstream(kTable) << calls;
  std::ostringstream table;
  table << std::ifstream(kTable).rdbuf();
  EXPECT_EQ(calls, table.str());
}

}  // namespace
