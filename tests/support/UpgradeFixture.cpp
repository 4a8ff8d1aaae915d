#include "support/UpgradeFixture.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <span>

#include "file/DocumentReader.h"
#include "file/FeatureText.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(HVX_LIBRARY);
  return library.Description();
}

DocumentPtr DocumentOf(std::string_view lines) {
  static_cast<void>(Library());
  std::string features;
  std::size_t count = 0;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    std::string_view line = lines.substr(0, end);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) {
      features.append(line).push_back('\n');
      ++count;
    }
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  const std::filesystem::path file =
      std::filesystem::path(testing::TempDir()) / ("fixture-" + std::to_string(getpid()) + ".hvxdoc");
  std::ofstream(file) << R"({"format":"hvxdoc","version":1,"upgrades":[],"features":)" << count << "}\n"
                      << features;
  DocumentPtr document = ReadDocument(file);
  std::filesystem::remove(file);
  return document;
}

DocumentPtr ExampleWithSmallMeshes(std::string_view name) {
  const DocumentPtr document = ReadDocument(fmt::format("{}/examples/{}.hvxdoc", HVX_SOURCE_DIR, name));
  for (Feature* feature = document->First(); feature != nullptr; feature = feature->next) {
    for (const char* const objects : {"Element", "Node"}) {
      const NameId count = NameTable::Intern(fmt::format("{}Count", objects));
      if (document->FindAttribute(*feature, count) == nullptr) continue;
      document->SetAttribute(*feature, count, Value::Integer(3));
      const std::array numbers{Value::Integer(feature->id), Value::Integer(3)};
      document->SetAttribute(*feature, NameTable::Intern(fmt::format("{}UserNumbers", objects)),
                             Value::List(document->Keep(std::span<const Value>(numbers))));
    }
  }
  return document;
}

std::string LinesOf(Document& document) {
  document.DropAllDeadLinks();
  fmt::memory_buffer text;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    AppendFeature(text, *feature);
    text.push_back('\n');
  }
  return fmt::to_string(text);
}

UpgradeTest::UpgradeTest() {
  FeatureCatalogs::Use(HVX_SOURCE_DIR "/standalone/catalogs");
  Messages::Use(HVX_SOURCE_DIR "/standalone/messages", "en");
}

void UpgradeTest::Given(std::string_view lines) {
  current_.reset();
  document_ = DocumentOf(lines);
  current_.emplace(document_);
}

HRESULT UpgradeTest::Upgrade(FeatureId id, std::initializer_list<const char*> identifiers) {
  VLMListValVLMUnicodeString list;
  for (const char* const identifier : identifiers) list.Append(identifier);
  const HVXIUpgrade_var spUpgrade = As<HVXIUpgrade>(id);
  if (spUpgrade == NULL_var) throw std::logic_error("the feature has no upgrade extension");
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
  fmt::memory_buffer text;
  AppendFeature(text, feature);
  return fmt::to_string(text);
}

}  // namespace testing_support
