#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/VLMBaseUnknown.h"
#include "checkpoint/CheckpointPlan.h"
#include "workbench/HVXUpgradeTable.h"

namespace standalone {
class Document;
class Feature;
}  // namespace standalone

/// \file
/// What tests of upgrades are written with: a small document, the upgrade library, and a host whose calls can
/// be recorded and made to fail.

namespace testing_support {

/// The file of the upgrade library that the tests are about. Every test program defines this, once.
const char* LibraryFile();

/// That library, loaded once for all tests.
const HVXUpgradeLibrary& Library();

/// What is wrong with how a loaded library describes itself, one sentence a fault; empty for a sound library.
/// It looks for identifiers that nothing answers, that have no place in the order or stand in it twice, for
/// rows that do not tell their purpose or are never reached, late types that two classes extend with one
/// interface, late types whose features do not get their extension, or get one that acts on what is not its
/// own, and for orders that contradict each other, tell no reason, or name an upgrade that neither this
/// library nor the built-in one has. Those of other libraries that they name are told as `alsoKnown`.
std::vector<std::string> FaultsOf(const HVXUpgradeLibrary& library,
                                  std::initializer_list<std::string_view> alsoKnown = {});

/// A small document to upgrade. A test states the old state as lines of a document, runs identifiers on a
/// feature, and states the new state as lines.
class UpgradeTest : public testing::Test {
 protected:
  using FeatureId = standalone::FeatureId;
  using CallList = std::vector<std::string>;

  /// With the library, the feature catalogs and the English messages.
  UpgradeTest();
  ~UpgradeTest() override;

  /// Makes the document of feature lines as the document file holds them, without the header line. It is the
  /// current one until the test ends. Throws `std::invalid_argument`, which names the line, counted from 1,
  /// for what is no such document.
  void Given(std::string_view lines);

  /// Lets the test hand over an identifier that is not in the tables of the library: one of another library,
  /// or of none, on purpose.
  void AlsoKnown(std::string_view identifier);

  /// Hands the identifiers to the upgrade extension of feature `id`, as a version manager does. The test
  /// fails when the library has no upgrade of that name, unless it is among those `AlsoKnown`.
  HRESULT Upgrade(FeatureId id, std::initializer_list<const char*> identifiers);

  /// The same while the host follows `plan`, whatever that says of recording. What it recorded stays in
  /// `Calls()`. The test fails when the call that was to fail was never made, or no feature was asked for the
  /// interface that was to be withheld: it would see nothing of what it is about. Of both, one is enough.
  HRESULT UpgradeUnder(standalone::CheckpointPlan plan, FeatureId id,
                       std::initializer_list<const char*> identifiers);

  /// The host calls of the last `UpgradeUnder`, as "operation #feature detail".
  [[nodiscard]] static CallList Calls();
  /// Those of them that begin with `prefix`.
  [[nodiscard]] static CallList Calls(std::string_view prefix);

  /// The feature's line as the document file would hold it; "removed" for a removed one.
  [[nodiscard]] std::string Line(FeatureId id);
  /// All lines.
  [[nodiscard]] std::string Lines();

  /// A handle on the feature, which may be removed; null when it does not offer the interface. Throws
  /// `std::logic_error`, which names the id, when there was none.
  template <class Interface>
  [[nodiscard]] VLMHandle<Interface> As(FeatureId id) {
    void* found = nullptr;
    static_cast<void>(Object(id).QueryInterface(Interface::kId, &found));
    return VLMHandle<Interface>::Adopt(static_cast<Interface*>(found));
  }

  // For tests of the host itself.
  [[nodiscard]] standalone::Document& Doc();
  /// As for `As`.
  [[nodiscard]] standalone::Feature& At(FeatureId id);

 private:
  struct State;

  [[nodiscard]] VLMBaseUnknown& Object(FeatureId id);

  std::unique_ptr<State> state_;
};

/// A plan that records every call.
inline standalone::CheckpointPlan Recording() {
  standalone::CheckpointPlan plan;
  plan.record = true;
  return plan;
}
/// A plan under which the operation fails, always or only with that detail. The test fails when no operation
/// is named, or `code` is none of a failure.
standalone::CheckpointPlan Failing(std::string operation, std::string detail = {}, HRESULT code = E_FAIL);
/// A plan under which a feature (0: every one) seems not to offer the interface. The test fails when none is
/// named.
standalone::CheckpointPlan Withholding(std::string interfaceName, standalone::FeatureId from = 0);

}  // namespace testing_support
