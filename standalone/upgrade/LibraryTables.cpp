#include "upgrade/LibraryTables.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "base/Resemblance.h"
#include "upgrade/BuiltInLibrary.h"

namespace standalone {
namespace {

// What documents and reports can hold.
bool IsText(std::string_view text) {
  return simdjson::validate_utf8(text.data(), text.size());
}

bool IsName(const char* text) {
  return text != nullptr && *text != '\0' && IsText(text);
}

bool IsIdentifier(const VLMUnicodeString& text) {
  return !text.View().empty() && IsText(text.View());
}

constexpr std::string_view kNoIdentifier =
    "has an identifier that is empty or not UTF-8. Correct it in its tables";

// Why nobody could name it in a command, where identifiers stand behind options, separated by commas; empty
// for one that can be named.
std::string_view WhyNotNamed(std::string_view identifier) {
  const auto isBlankOrControl = [](char c) { return (c >= '\0' && c <= ' ') || c == '\x7f'; };
  if (identifier.starts_with('-')) return "begins with \"-\" and would be taken for an option";
  if (identifier.find(',') != std::string_view::npos) return "has a comma, which separates identifiers";
  if (std::ranges::any_of(identifier, isBlankOrControl)) return "has a blank or a control character";
  return {};
}

std::string FaultOfNames(const HVXUpgradeLibrary& library) {
  if (library.name == nullptr || *library.name == '\0')
    return "has no name, by which documents would know it. Give its description a name";
  if (!IsText(library.name) || (library.version != nullptr && !IsText(library.version)))
    return "has a name or version that is not UTF-8. Correct it in its description";
  if (!std::ranges::all_of(library.continues, IsName))
    return "continues a library that it does not name. Correct the .continues of its description";
  return {};
}

// Those that something in the library does something for.
std::set<std::string_view> AnsweredBy(const HVXUpgradeLibrary& library) {
  std::set<std::string_view> answered;
  for (const HVXUpgradeClass* const upgradeClass : library.classes) {
    for (const HVXUpgradeBinding& binding : upgradeClass->bindings)
      answered.insert(binding.identifier.View());
  }
  for (const HVXDocumentUpgrade& each : library.documentUpgrades) answered.insert(each.identifier.View());
  return answered;
}

// What is wrong with a row that has these columns.
std::string FaultOfRow(const VLMUnicodeString& identifier, const char* purpose, bool hasRoutine,
                       const char* owner) {
  if (!IsIdentifier(identifier)) return std::string(kNoIdentifier);
  if (purpose == nullptr || !hasRoutine)
    return fmt::format("has no purpose or no routine for {} in {}. Complete its table", identifier.View(),
                       owner);
  if (!IsText(purpose))
    return fmt::format("has a purpose for {} in {} that is not UTF-8. Correct it in its table",
                       identifier.View(), owner);
  return {};
}

// The second of two rows that only one of which is ever reached; null when there is none.
const HVXUpgradeBinding* UnreachedRow(const HVXUpgradeClass& upgradeClass) {
  if (upgradeClass.matching != HVXMatching::kFirstMatch) return nullptr;
  std::set<std::string_view> reached;
  for (const HVXUpgradeBinding& row : upgradeClass.bindings) {
    if (!reached.insert(row.identifier.View()).second) return &row;
  }
  return nullptr;
}

std::string FaultOfClasses(const HVXUpgradeLibrary& library) {
  std::map<std::pair<std::string_view, std::uint64_t>, const HVXUpgradeClass*> extended;
  std::set<const HVXUpgradeClass*> listed;
  for (const HVXUpgradeClass* const each : library.classes) {
    if (each == nullptr || !IsName(each->name) || each->createTIE == nullptr ||
        !std::ranges::all_of(each->lateTypes, IsName))
      return "has a class that lacks its name, the entry that makes its tie, or the name of a late type. "
             "Complete its tables";
    for (const HVXUpgradeBinding& row : each->bindings) {
      if (std::string fault = FaultOfRow(row.identifier, row.purpose, row.routine != nullptr, each->name);
          !fault.empty())
        return fault;
      if (row.harmless != nullptr && !IsText(row.harmless))
        return fmt::format("has a text for {} in {} that is not UTF-8. Correct it in its table",
                           row.identifier.View(), each->name);
    }
    if (!listed.insert(each).second)
      return fmt::format("lists the class {} twice. Leave it out once", each->name);
    if (const HVXUpgradeBinding* const row = UnreachedRow(*each); row != nullptr)
      return fmt::format(
          "has two rows for {} in {}, of which only the first would run. Make one of both, or give the class "
          ".matching = HVXMatching::kSequential",
          row->identifier.View(), each->name);
    for (const char* const lateType : each->lateTypes) {
      const auto [first, isNew] = extended.try_emplace({lateType, each->interface.Value()}, each);
      if (!isNew && first->second == each)
        return fmt::format("names the late type {} twice in {}. Leave it out once", lateType, each->name);
      if (!isNew)
        return fmt::format(
            "extends {} with {} twice: {} and {}. A feature would have only one of them; make one class of "
            "both",
            lateType, each->interface.Name(), first->second->name, each->name);
    }
  }
  return {};
}

std::string FaultOfConversions(const HVXUpgradeLibrary& library) {
  std::set<std::string_view> converted;
  for (const HVXDocumentUpgrade& each : library.documentUpgrades) {
    if (std::string fault = FaultOfRow(each.identifier, each.purpose, each.upgrade != nullptr,
                                       "the conversions of whole documents");
        !fault.empty())
      return fault;
    if (!converted.insert(each.identifier.View()).second)
      return fmt::format(
          "converts whole documents twice for {}. Only one of the conversions would run; make "
          "one of both",
          each.identifier.View());
  }
  return {};
}

// A question for the likely name, or nothing.
std::string MeantBy(std::string_view identifier, const std::set<std::string_view>& answered) {
  constexpr std::size_t kLettersPerFault = 3;
  const std::vector<std::string_view> names(answered.begin(), answered.end());
  const std::string_view meant = Resembling(identifier, names, kLettersPerFault);
  return meant.empty() ? "" : fmt::format(" (did you mean {}?)", meant);
}

// What of the identifiers would be recorded without having run, or could not be asked for. The list of a
// library that continues another may give those that the other one answers a place of its own.
std::string FaultOfIdentifiers(const HVXUpgradeLibrary& library) {
  if (IsBuiltIn(library.name)) return {};  // knows one on purpose that nothing answers
  for (const std::string_view identifier : IdentifiersOf(library)) {
    if (const std::string_view why = WhyNotNamed(identifier); !why.empty())
      return fmt::format(
          "has the identifier \"{}\", which no command could name: it {}. Give it another name", identifier,
          why);
  }
  const std::set<std::string_view> answered = AnsweredBy(library);
  std::set<std::string_view> listed;
  for (const VLMUnicodeString& each : library.identifiers) {
    const std::string_view identifier = each.View();
    if (!listed.insert(identifier).second)
      return fmt::format("lists {} twice among its identifiers. Leave it out once", identifier);
    if (library.continues.empty() && !answered.contains(identifier))
      return fmt::format(
          "lists {} among its identifiers, and no row or conversion answers it: it would be recorded without "
          "having run{}. Correct its name there or in the table, or leave it out",
          identifier, MeantBy(identifier, answered));
  }
  return {};
}

std::string FaultOfOrders(const HVXUpgradeLibrary& library) {
  const std::set<std::string_view> own = IdentifiersOf(library);
  for (const HVXUpgradeOrder& order : library.orders) {
    if (!IsIdentifier(order.first) || !IsIdentifier(order.then)) return std::string(kNoIdentifier);
    const std::string_view first = order.first.View();
    const std::string_view then = order.then.View();
    if (order.reason == nullptr || !IsText(order.reason))
      return fmt::format("gives no reason why {} must run before {}. Complete its orders", first, then);
    if (first == then) return fmt::format("wants {} to run before itself. Correct its orders", first);
    if (!own.contains(first) && !own.contains(then))
      return fmt::format(
          "wants {} to run before {}, and has an upgrade of neither name. Correct the names in its orders, "
          "or leave the order to the library that has them",
          first, then);
  }
  return {};
}

}  // namespace

std::set<std::string_view> IdentifiersOf(const HVXUpgradeLibrary& library) {
  std::set<std::string_view> all = AnsweredBy(library);
  for (const VLMUnicodeString& each : library.identifiers) all.insert(each.View());
  return all;
}

std::string FaultOfTables(const HVXUpgradeLibrary& library) {
  if (std::string fault = FaultOfNames(library); !fault.empty()) return fault;
  if (!std::ranges::all_of(library.identifiers, IsIdentifier)) return std::string(kNoIdentifier);
  if (std::string fault = FaultOfClasses(library); !fault.empty()) return fault;
  if (std::string fault = FaultOfConversions(library); !fault.empty()) return fault;
  if (std::string fault = FaultOfIdentifiers(library); !fault.empty()) return fault;
  return FaultOfOrders(library);
}

std::vector<std::string_view> CircleOfOrders(const std::vector<const HVXUpgradeLibrary*>& libraries) {
  std::map<std::string_view, std::set<std::string_view>> followers;
  for (const HVXUpgradeLibrary* const library : libraries) {
    for (const HVXUpgradeOrder& order : library->orders)
      followers[order.first.View()].insert(order.then.View());
  }
  // What has no follower is in no circle; nor is what is left without one by taking that out.
  for (bool isSmaller = true; isSmaller;) {
    for (auto& [first, then] : followers)
      std::erase_if(then, [&](std::string_view each) { return !followers.contains(each); });
    isSmaller = std::erase_if(followers, [](const auto& entry) { return entry.second.empty(); }) != 0;
  }
  if (followers.empty()) return {};
  std::vector<std::string_view> path{followers.begin()->first};
  while (std::ranges::count(path, path.back()) == 1) path.push_back(*followers.at(path.back()).begin());
  path.erase(path.begin(), std::ranges::find(path, path.back()));
  path.pop_back();
  return path;
}

}  // namespace standalone
