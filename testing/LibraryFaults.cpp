#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Documents.h"
#include "UpgradeTest.h"
#include "adapters/FeatureAdapter.h"
#include "session/Session.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

namespace {

using Faults = std::vector<std::string>;

void CheckIdentifiers(const HVXUpgradeLibrary& library, Faults& faults) {
  std::set<std::string_view> listed;
  std::set<std::string_view> answered;
  for (const VLMUnicodeString& identifier : library.identifiers) {
    if (!listed.insert(identifier.View()).second)
      faults.push_back(std::string(identifier.View()) + " stands twice among the identifiers");
  }
  const auto checkRow = [&](std::string_view owner, const VLMUnicodeString& identifier, const char* purpose) {
    answered.insert(identifier.View());
    const std::string row = std::string(owner) + ": " + identifier.ConvertToChar();
    if (!listed.contains(identifier.View()))
      faults.push_back(row + " is not among the identifiers, so that it has no place in the order");
    if (purpose == nullptr || !std::string_view(purpose).ends_with('.'))
      faults.push_back(row + " does not tell its purpose as a sentence");
  };
  for (const HVXUpgradeClass* const each : library.classes) {
    for (const HVXUpgradeBinding& row : each->bindings) checkRow(each->name, row.identifier, row.purpose);
  }
  for (const HVXDocumentUpgrade& each : library.documentUpgrades)
    checkRow("the conversions of documents", each.identifier, each.purpose);
  for (const std::string_view identifier : listed) {
    if (!answered.contains(identifier))
      faults.push_back(std::string(identifier) + " is among the identifiers, but nothing answers it");
  }
}

// What the class must not act on: identifiers of other classes, in other letters, unknown, empty.
VLMListValVLMUnicodeString OfOthers(const HVXUpgradeLibrary& library, const HVXUpgradeClass& upgradeClass) {
  VLMListValVLMUnicodeString others;
  others.Append("NoSuchIdentifier");
  others.Append("");
  const auto isOwn = [&](const VLMUnicodeString& identifier) {
    return std::ranges::any_of(upgradeClass.bindings,
                               [&](const HVXUpgradeBinding& row) { return row.identifier == identifier; });
  };
  for (const VLMUnicodeString& identifier : library.identifiers) {
    if (!isOwn(identifier)) others.Append(identifier);
    std::string small(identifier.View());
    std::ranges::transform(small, small.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + ' ' : c; });
    if (!isOwn(small.c_str())) others.Append(small.c_str());
  }
  return others;
}

// Asks a feature for its extension, as a host does, and hands that what it must not act on.
void CheckExtension(const HVXUpgradeLibrary& library, const HVXUpgradeClass& upgradeClass,
                    const std::string& lateType, Faults& faults) {
  const DocumentPtr document = DocumentOf(R"({"id":1,"type":")" + lateType + R"("})");
  const CurrentDocumentScope current(document);
  const std::string before = LinesOf(*document.Get());
  Feature& feature = *document->First();
  if (!Offers(feature, upgradeClass.interface)) {
    faults.push_back(std::string(upgradeClass.name) + ": features of " + lateType + " do not get " +
                     std::string(upgradeClass.interface.Name()));
    return;
  }
  if (!(upgradeClass.interface == HVXIUpgrade::kId)) return;
  for (const auto& identifiers : {VLMListValVLMUnicodeString(), OfOthers(library, upgradeClass)}) {
    const HRESULT result = HandleOn<HVXIUpgrade>(&feature)->Upgrade(identifiers);
    if (result == upgradeClass.resultWithoutRun && LinesOf(*document.Get()) == before) continue;
    faults.push_back(std::string(upgradeClass.name) + " acts on features of " + lateType +
                     " without an identifier of its own");
    return;
  }
}

void CheckClasses(const HVXUpgradeLibrary& library, Faults& faults) {
  std::map<std::pair<std::string_view, std::uint64_t>, const char*> extended;
  for (const HVXUpgradeClass* const each : library.classes) {
    for (const char* const lateType : each->lateTypes) {
      const auto [first, isNew] = extended.try_emplace({lateType, each->interface.Value()}, each->name);
      if (isNew) {
        CheckExtension(library, *each, lateType, faults);
      } else {
        faults.push_back(std::string(first->second) + " and " + each->name + " both extend " + lateType +
                         " with " + std::string(each->interface.Name()));
      }
    }
  }
}

}  // namespace

std::vector<std::string> FaultsOf(const HVXUpgradeLibrary& library) {
  Faults faults;
  if (library.name == nullptr || *library.name == '\0') faults.emplace_back("the library has no name");
  if (library.version == nullptr || *library.version == '\0')
    faults.emplace_back("the library has no version");
  CheckIdentifiers(library, faults);
  CheckClasses(library, faults);
  return faults;
}

}  // namespace testing_support
