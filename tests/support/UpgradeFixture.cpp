#include "support/UpgradeFixture.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <span>

#include "file/DocumentReader.h"
#include "file/FeatureText.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

namespace {

const char* FromEnvironment(const char* variable, const char* otherwise) {
  const char* const named = std::getenv(variable);
  return named != nullptr ? named : otherwise;
}

}  // namespace

const char* LibraryFile() {
  return FromEnvironment("HVX_LIBRARY", HVX_LIBRARY);
}

const char* TestLibraryFile() {
  return FromEnvironment("HVX_TEST_LIBRARY", HVX_TEST_LIBRARY);
}

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(LibraryFile());
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
  FeatureTexts texts;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    texts.Append(text, *feature);
    text.push_back('\n');
  }
  return fmt::to_string(text);
}

std::string LinesNumberedAnew(Document& document, FeatureId firstMade) {
  std::map<std::string, std::string, std::less<>> numbers;
  const std::string lines = LinesOf(document);
  const std::string_view view = lines;
  FeatureId next = firstMade;
  bool isAlready = true;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (feature->id < firstMade) continue;
    isAlready = isAlready && feature->id == next;
    numbers[std::to_string(feature->id)] = std::to_string(next++);
  }
  if (isAlready) return lines;
  // Ids stand behind these, and at the end of the names that the host gives ("TYPE.ID").
  std::string renumbered;
  renumbered.reserve(lines.size());
  std::size_t copied = 0;
  for (std::size_t at = view.find_first_of("0123456789"); at != std::string_view::npos;) {
    const std::size_t end = view.find_first_not_of("0123456789", at);
    const std::string_view before = view.substr(0, at);
    const bool isId = before.ends_with("\"id\":") || before.ends_with("\"ref\":") ||
                      (before.ends_with('.') && view[end] == '"');
    const auto known = isId ? numbers.find(view.substr(at, end - at)) : numbers.end();
    if (known != numbers.end()) {
      renumbered.append(view.substr(copied, at - copied)).append(known->second);
      copied = end;
    }
    at = view.find_first_of("0123456789", end);
  }
  return renumbered.append(view.substr(copied));
}

DocumentPtr RunAndSave(const VersionManager& manager, const DocumentPtr& document,
                       std::vector<std::string> identifiers) {
  for (const VersionManager::Needed& needed : manager.NeededBy(identifiers, manager.Pending(*document.Get())))
    identifiers.push_back(needed.identifier);
  static_cast<void>(manager.Run(document, identifiers));
  DocumentPtr read = DocumentOf(LinesOf(*document.Get()));
  for (const std::string& identifier : document->Upgrades()) read->RecordUpgrade(identifier);
  return read;
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
  if (spUpgrade == NULL_var) throw std::logic_error(fmt::format("feature #{} has no upgrade extension", id));
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

Feature& UpgradeTest::At(FeatureId id) {
  Feature* const feature = document_->Find(id);
  if (feature == nullptr) throw std::logic_error(fmt::format("the document has no feature #{}", id));
  return *feature;
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
