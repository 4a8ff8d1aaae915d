#include "Trip.h"

#include <sys/resource.h>

#include <functional>
#include <optional>
#include <stdexcept>

#include "OwnProcess.h"
#include "ProcessorTime.h"
#include "check/Conformity.h"
#include "check/Integrity.h"
#include "check/Losses.h"
#include "checkpoint/Checkpoint.h"
#include "compare/DocumentDifference.h"
#include "compare/DroppedValues.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "sheet/Comparison.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace bench {

AllocationCount allocationCount;

namespace {

using namespace standalone;

// Beyond these a document is given up: routines go round for ever on some that nobody would make, and
// connection properties times cases may be more than there is memory for.
constexpr std::int64_t kMostCalls = 100'000'000;
constexpr std::size_t kMostMadeOfEach = 12;

// Counts from here on, for its life.
class Counting {
 public:
  explicit Counting(bool isWanted) {
    if (!isWanted) return;
    CheckpointPlan plan;
    plan.callLimit = kMostCalls;
    scope_.emplace(std::move(plan));
    allocationCount = {};
  }
  void TellIn(Cost& cost) const {
    if (!scope_) return;
    cost.hostCalls = static_cast<double>(Checkpoint::CallCount());
    cost.allocations = static_cast<double>(allocationCount.count);
    cost.allocatedBytes = static_cast<double>(allocationCount.bytes);
  }

 private:
  std::optional<CheckpointScope> scope_;
};

Cost Trip(const std::string& input, const std::string& output, const TripOptions& options) {
  const UpgradeLibrary library(HVX_LIBRARY);
  const VersionManager manager({&library.Description()});
  FeatureCatalogs::Use(std::string(HVX_SOURCE_DIR) + "/standalone/catalogs");
  Messages::Use(std::string(HVX_SOURCE_DIR) + "/standalone/messages", "en");
  Cost cost;
  cost.wentThrough = true;
  const auto run = [&cost](Stage stage, const std::function<void()>& action) {
    if (!cost.wentThrough) return;
    const double start = ProcessorTime();
    try {
      action();
    } catch (const std::exception&) {
      cost.wentThrough = false;
    }
    cost.seconds[stage] += ProcessorTime() - start;
  };
  const Counting counting(options.count);
  DocumentPtr document;
  run(kRead, [&] { document = ReadDocument(input); });
  run(kCheck, [&] { static_cast<void>(CheckConformity(*document.Get())); });
  std::optional<sheet::Sheet> sheetBefore;
  run(kSheet, [&] { sheetBefore = sheet::ReadSheet(*document.Get()); });
  const std::vector<std::string> pending =
      cost.wentThrough ? manager.Pending(*document.Get()) : std::vector<std::string>();
  if (options.upgrade) {
    run(kUpgrade, [&] {
      document->Changes().Start();
      document->LimitCreation(kMostMadeOfEach * document->FeatureCount());
      static_cast<void>(manager.Unknown(*document.Get()));
      static_cast<void>(manager.Run(document, pending));
    });
  }
  run(kVerify, [&] {
    static_cast<void>(FindFaults(*document.Get(), 1));
    static_cast<void>(CheckConformity(*document.Get(), FindingScope::kOfResult));
    static_cast<void>(FindLosses(*document.Get()));
    static_cast<void>(FindDroppedValues(*document.Get()));
    document->DropAllDeadLinks();
  });
  run(kSheet, [&] {
    const sheet::Sheet sheetAfter = sheet::ReadSheet(*document.Get(), &*sheetBefore);
    static_cast<void>(sheet::Compare(*sheetBefore, sheetAfter, pending, [](const sheet::Difference&) {}));
  });
  sheetBefore.reset();
  WriteOptions writing;
  writing.overwrite = true;
  run(kWrite, [&] { WriteDocument(*document.Get(), output, writing); });
  if (cost.wentThrough) {
    const DocumentPtr before = ReadDocument(input);
    run(kCompare, [&] { static_cast<void>(Compare(*before.Get(), *document.Get())); });
  }
  counting.TellIn(cost);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  cost.peakBytes = static_cast<double>(usage.ru_maxrss) * 1024;
  return cost;
}

}  // namespace

Cost MeasureTrip(const std::string& input, const std::string& output, const TripOptions& options) {
  return InOwnProcess([&] { return Trip(input, output, options); });
}

}  // namespace bench
