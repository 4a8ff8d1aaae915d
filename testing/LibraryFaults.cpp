#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "Documents.h"
#include "UpgradeTest.h"
#include "adapters/FeatureAdapter.h"
#include "session/InstalledFiles.h"
#include "session/Session.h"
#include "upgrade/LibraryTables.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace testing_support {

using namespace standalone;

namespace {

using Faults = std::vector<std::string>;

bool IsSentence(const char* text) {
  return text != nullptr && std::string_view(text).ends_with('.');
}

void CheckRows(const HVXUpgradeClass& upgradeClass, Faults& faults) {
  std::set<std::string_view> tested;
  for (const HVXUpgradeBinding& row : upgradeClass.bindings) {
    const std::string place = std::string(upgradeClass.name) + ": " + row.identifier.ConvertToChar();
    const bool isFirst = tested.insert(row.identifier.View()).second;
    if (!isFirst && upgradeClass.matching == HVXMatching::kFirstMatch)
      faults.push_back(place + " has a second row, which is never reached (HVXMatching::kFirstMatch)");
    if (row.harmless != nullptr && !IsSentence(row.harmless))
      faults.push_back(place + " does not tell as a sentence why a failure is harmless");
  }
}

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
    if (!IsSentence(purpose)) faults.push_back(row + " does not tell its purpose as a sentence");
  };
  for (const HVXUpgradeClass* const each : library.classes) {
    for (const HVXUpgradeBinding& row : each->bindings) checkRow(each->name, row.identifier, row.purpose);
    CheckRows(*each, faults);
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
    if (each->lateTypes.empty()) faults.push_back(std::string(each->name) + " extends no late type");
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

// Asks for the built-in library only when it must.
class KnownUpgrades {
 public:
  KnownUpgrades(const HVXUpgradeLibrary& library, std::initializer_list<std::string_view> alsoKnown)
      : known_(IdentifiersOf(library)) {
    known_.insert(alsoKnown.begin(), alsoKnown.end());
  }

  [[nodiscard]] bool Contain(std::string_view identifier) {
    if (known_.contains(identifier)) return true;
    if (!builtIn_) builtIn_.emplace(InstalledFiles::UpgradeLibraryFile());
    return IdentifiersOf(builtIn_->Description()).contains(identifier);
  }

 private:
  std::set<std::string_view> known_;
  std::optional<UpgradeLibrary> builtIn_;
};

void CheckOrders(const HVXUpgradeLibrary& library, std::initializer_list<std::string_view> alsoKnown,
                 Faults& faults) {
  KnownUpgrades known(library, alsoKnown);
  std::set<std::pair<std::string_view, std::string_view>> told;
  for (const HVXUpgradeOrder& order : library.orders) {
    const std::string text =
        std::string("the order of ") + order.first.ConvertToChar() + " before " + order.then.ConvertToChar();
    if (!told.emplace(order.first.View(), order.then.View()).second) faults.push_back(text + " stands twice");
    if (!IsSentence(order.reason)) faults.push_back(text + " does not tell its reason as a sentence");
    for (const std::string_view each : {order.first.View(), order.then.View()}) {
      if (!known.Contain(each))
        faults.push_back(text + " names " + std::string(each) + ", which no library has");
    }
  }
  std::string circle;
  for (const std::string_view each : CircleOfOrders({&library})) circle += std::string(each) + " before ";
  if (!circle.empty())
    faults.push_back("the orders contradict each other: " + circle +
                     circle.substr(0, circle.find(" before ")));
}

}  // namespace

std::vector<std::string> FaultsOf(const HVXUpgradeLibrary& library,
                                  std::initializer_list<std::string_view> alsoKnown) {
  Faults faults;
  if (library.name == nullptr || *library.name == '\0') faults.emplace_back("the library has no name");
  if (library.version == nullptr || *library.version == '\0')
    faults.emplace_back("the library has no version");
  CheckIdentifiers(library, faults);
  CheckClasses(library, faults);
  CheckOrders(library, alsoKnown, faults);
  return faults;
}

}  // namespace testing_support
