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

}  // namespace testing_support
