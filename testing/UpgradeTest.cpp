#include "UpgradeTest.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Documents.h"
#include "adapters/FeatureAdapter.h"
#include "base/Resemblance.h"
#include "checkpoint/Checkpoint.h"
#include "file/FeatureText.h"
#include "session/InstalledFiles.h"
#include "session/Session.h"
#include "upgrade/LibraryTables.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

namespace {

using Texts = std::set<std::string, std::less<>>;

// A question for the likely name, or nothing.
std::string Meant(std::string_view text, const Texts& known) {
  constexpr std::size_t kLettersPerFault = 3;
  const std::vector<std::string_view> names(known.begin(), known.end());
  const std::string_view meant = Resembling(text, names, kLettersPerFault);
  if (meant.empty()) return {};
  return std::string(". Did you mean ").append(meant).append("?");
}

std::string Joined(const Texts& texts) {
  std::string joined;
  for (const std::string& text : texts) joined.append(joined.empty() ? "" : ", ").append(text);
  return joined;
}

// That the call which was to fail was never made; empty when it was.
std::string NotCalled(const CheckpointPlan& plan) {
  Texts operations;
  Texts details;
  for (const HostCall& call : Checkpoint::Recorded()) {
    operations.insert(call.operation);
    if (call.operation == plan.failNamed) details.insert(call.detail);
  }
  if (!operations.contains(plan.failNamed))
    return plan.failNamed + " was to fail and was never called" + Meant(plan.failNamed, operations);
  if (plan.failNamedDetail.empty() || details.contains(plan.failNamedDetail)) return {};
  return plan.failNamed + " was to fail for " + plan.failNamedDetail + " and was called only for " +
         Joined(details);
}

// The same of the interface that was to be withheld.
std::string NotAsked(const CheckpointPlan& plan) {
  Texts interfaces;
  Texts features;
  for (const HostCall& cast : Checkpoint::RecordedCasts()) {
    interfaces.insert(cast.operation);
    if (cast.operation != plan.withholdInterface) continue;
    if (plan.withholdFrom == 0 || plan.withholdFrom == cast.feature) return {};
    features.insert(std::string("#").append(std::to_string(cast.feature)));
  }
  if (features.empty())
    return plan.withholdInterface + " was to be withheld, and no feature was asked for it" +
           Meant(plan.withholdInterface, interfaces);
  return plan.withholdInterface + " was to be withheld by feature #" + std::to_string(plan.withholdFrom) +
         ", and only these were asked for it: " + Joined(features);
}

// A test whose fault is never met would pass for the wrong reason. Of two faults, the first that is met may
// keep the other from being met.
void ExpectMet(const CheckpointPlan& plan) {
  std::vector<std::string> missed;
  if (!plan.failNamed.empty()) missed.push_back(NotCalled(plan));
  if (!plan.withholdInterface.empty()) missed.push_back(NotAsked(plan));
  if (std::ranges::count(missed, "") != 0) return;
  for (const std::string& each : missed) ADD_FAILURE() << each;
}

}  // namespace

struct UpgradeTest::State {
  DocumentPtr document;
  std::optional<CurrentDocumentScope> current;
  Texts known;  // identifiers
};

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(LibraryFile());
  return library.Description();
}

UpgradeTest::UpgradeTest() : state_(std::make_unique<State>()) {
  InstalledFiles::Use();
  for (const std::string_view identifier : IdentifiersOf(Library())) AlsoKnown(identifier);
}

UpgradeTest::~UpgradeTest() {
  Checkpoint::Stop();
}

void UpgradeTest::Given(std::string_view lines) {
  state_->current.reset();
  state_->document = DocumentOf(lines);
  state_->current.emplace(state_->document);
}

void UpgradeTest::AlsoKnown(std::string_view identifier) {
  state_->known.emplace(identifier);
}

HRESULT UpgradeTest::Upgrade(FeatureId id, std::initializer_list<const char*> identifiers) {
  VLMListValVLMUnicodeString list;
  for (const char* const identifier : identifiers) {
    if (identifier == nullptr) throw std::invalid_argument("an identifier that is handed over is null");
    if (!state_->known.contains(identifier))
      ADD_FAILURE() << "the library has no upgrade \"" << identifier << '"'
                    << Meant(identifier, state_->known);
    list.Append(identifier);
  }
  const HVXIUpgrade_var spUpgrade = As<HVXIUpgrade>(id);
  if (spUpgrade == NULL_var)
    throw std::logic_error("feature #" + std::to_string(id) + " has no upgrade extension");
  return spUpgrade->Upgrade(list);
}

HRESULT UpgradeTest::UpgradeUnder(CheckpointPlan plan, FeatureId id,
                                  std::initializer_list<const char*> identifiers) {
  plan.record = true;
  const CheckpointScope scope(plan);
  const HRESULT result = Upgrade(id, identifiers);
  ExpectMet(plan);
  return result;
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
  if (state_->document.Get() == nullptr)
    throw std::logic_error("the test has no document: hand its lines to Given first");
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

CheckpointPlan Failing(std::string operation, std::string detail, HRESULT code) {
  if (operation.empty()) ADD_FAILURE() << "Failing names no call that is to fail";
  if (!Failed(code))
    ADD_FAILURE() << operation << " is to fail with " << code << ", which is a code of success";
  CheckpointPlan plan = Recording();
  plan.failNamed = std::move(operation);
  plan.failNamedDetail = std::move(detail);
  plan.failure = code;
  return plan;
}

CheckpointPlan Withholding(std::string interfaceName, FeatureId from) {
  if (interfaceName.empty()) ADD_FAILURE() << "Withholding names no interface";
  CheckpointPlan plan = Recording();
  plan.withholdInterface = std::move(interfaceName);
  plan.withholdFrom = from;
  return plan;
}

}  // namespace testing_support
