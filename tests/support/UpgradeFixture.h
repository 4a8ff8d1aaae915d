#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/FeatureAdapter.h"
#include "checkpoint/Checkpoint.h"
#include "session/Session.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace testing_support {

/// The files of the upgrade library and of the one in `tests/plugin`: those built with the tests, or those
/// that the environment variables HVX_LIBRARY and HVX_TEST_LIBRARY name, which is how `scripts/mutate` runs
/// the tests on changed libraries.
const char* LibraryFile();
const char* TestLibraryFile();

/// The upgrade library, loaded once for all tests.
const HVXUpgradeLibrary& Library();

/// A document read from text: feature lines as the document file holds them (the header line is added).
standalone::DocumentPtr DocumentOf(std::string_view lines);

/// An example of the project with meshes of a few nodes and elements each, which are treated one by one, each
/// like the other.
standalone::DocumentPtr ExampleWithSmallMeshes(std::string_view name);

/// The document as its file would hold it, without the header line.
std::string LinesOf(standalone::Document& document);

/// The same with the features numbered anew that bear `firstMade` or a higher id, in document order: what was
/// made in several runs may bear other ids than what was made in one.
std::string LinesNumberedAnew(standalone::Document& document, standalone::FeatureId firstMade);

/// Runs the identifiers, and those that must come along, and gives the document as it is when it is saved and
/// read again.
standalone::DocumentPtr RunAndSave(const standalone::VersionManager& manager,
                                   const standalone::DocumentPtr& document,
                                   std::vector<std::string> identifiers);

/// A small document to upgrade. A test states the old state as lines of a document, runs identifiers on a
/// feature, and states the new state as lines.
class UpgradeTest : public testing::Test {
 protected:
  using CallList = std::vector<std::string>;

  /// With the feature catalogs and the English messages.
  UpgradeTest();
  ~UpgradeTest() override { standalone::Checkpoint::Stop(); }

  /// Makes the document; it is the current one until the test ends.
  void Given(std::string_view lines);

  /// Hands the identifiers to the upgrade extension of feature `id`, as a version manager does.
  HRESULT Upgrade(standalone::FeatureId id, std::initializer_list<const char*> identifiers);

  /// The same while the checkpoint follows `plan`. What it recorded stays in `Calls()`.
  HRESULT UpgradeUnder(standalone::CheckpointPlan plan, standalone::FeatureId id,
                       std::initializer_list<const char*> identifiers);

  /// The host calls of the last `UpgradeUnder` whose plan recorded, as "operation #feature detail".
  [[nodiscard]] static CallList Calls();
  /// Those of them that begin with `prefix`.
  [[nodiscard]] static CallList Calls(std::string_view prefix);

  /// The feature's line as the document file would hold it; "removed" for a removed one.
  [[nodiscard]] std::string Line(standalone::FeatureId id);
  /// All lines.
  [[nodiscard]] std::string Lines() { return LinesOf(*document_.Get()); }

  [[nodiscard]] standalone::Document& Doc() { return *document_.Get(); }
  /// The feature, which may be removed. Throws `std::logic_error`, which names the id, when there was none.
  [[nodiscard]] standalone::Feature& At(standalone::FeatureId id);
  /// A handle on the feature, as `At` finds it; null when it does not offer the interface.
  template <class Interface>
  [[nodiscard]] VLMHandle<Interface> As(standalone::FeatureId id) {
    return standalone::HandleOn<Interface>(&At(id));
  }

 private:
  standalone::DocumentPtr document_;
  std::optional<standalone::CurrentDocumentScope> current_;
};

/// A plan that records every call.
inline standalone::CheckpointPlan Recording() {
  standalone::CheckpointPlan plan;
  plan.record = true;
  return plan;
}
/// A plan under which the operation fails, always or only with that detail.
inline standalone::CheckpointPlan Failing(std::string operation, std::string detail = {},
                                          HRESULT code = E_FAIL) {
  standalone::CheckpointPlan plan;
  plan.record = true;
  plan.failNamed = std::move(operation);
  plan.failNamedDetail = std::move(detail);
  plan.failure = code;
  return plan;
}
/// A plan under which a feature (0: every one) seems not to offer the interface.
inline standalone::CheckpointPlan Withholding(std::string interfaceName, standalone::FeatureId from = 0) {
  standalone::CheckpointPlan plan;
  plan.record = true;
  plan.withholdInterface = std::move(interfaceName);
  plan.withholdFrom = from;
  return plan;
}

}  // namespace testing_support
