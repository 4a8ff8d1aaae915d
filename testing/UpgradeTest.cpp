#include "UpgradeTest.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "Documents.h"
#include "adapters/FeatureAdapter.h"
#include "file/FeatureText.h"
#include "session/InstalledFiles.h"
#include "session/Session.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

struct UpgradeTest::State {
  DocumentPtr document;
  std::optional<CurrentDocumentScope> current;
};

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(LibraryFile());
  return library.Description();
}

UpgradeTest::UpgradeTest() : state_(std::make_unique<State>()) {
  InstalledFiles::Use();
}

UpgradeTest::~UpgradeTest() {
  Checkpoint::Stop();
}

void UpgradeTest::Given(std::string_view lines) {
  state_->current.reset();
  state_->document = DocumentOf(lines);
  state_->current.emplace(state_->document);
}

HRESULT UpgradeTest::Upgrade(FeatureId id, std::initializer_list<const char*> identifiers) {
  VLMListValVLMUnicodeString list;
  for (const char* const identifier : identifiers) list.Append(identifier);
  const HVXIUpgrade_var spUpgrade = As<HVXIUpgrade>(id);
  if (spUpgrade == NULL_var)
    throw std::logic_error("feature #" + std::to_string(id) + " has no upgrade extension");
  return spUpgrade->Upgrade(list);
}

HRESULT UpgradeTest::UpgradeUnder(CheckpointPlan plan, FeatureId id,
                                  std::initializer_list<const char*> identifiers) {
  const CheckpointScope scope(std::move(plan));
  return Upgrade(id, identifiers);
}

UpgradeTest::CallList UpgradeTest::Calls() {
  return Calls({});
}

UpgradeTest::CallList UpgradeTest::Calls(std::string_view prefix) {
  CallList calls;
  for (const HostCall& call : Checkpoint::Recorded()) {
    if (!call.operation.starts_with(prefix)) continue;
    std::string text = call.operation + " #" + std::to_string(call.feature);
    if (!call.detail.empty()) text += " " + call.detail;
    calls.push_back(std::move(text));
  }
  return calls;
}

std::string UpgradeTest::Line(FeatureId id) {
  Feature& feature = At(id);
  if (feature.removed) return "removed";
  Doc().RestoreListsSetAside();  // as when the routine is over
  static_cast<void>(Doc().AttributesOf(feature));
  return LineOf(feature);
}

std::string UpgradeTest::Lines() {
  return LinesOf(Doc());
}

Document& UpgradeTest::Doc() {
  return *state_->document.Get();
}

Feature& UpgradeTest::At(FeatureId id) {
  Feature* const feature = Doc().Find(id);
  if (feature == nullptr) throw std::logic_error("the document has no feature #" + std::to_string(id));
  return *feature;
}

VLMBaseUnknown& UpgradeTest::Object(FeatureId id) {
  return At(id);
}

}  // namespace testing_support
