#include "upgrade/LibraryTables.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

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

std::string FaultOfNames(const HVXUpgradeLibrary& library) {
  if (library.name == nullptr || *library.name == '\0')
    return "has no name, by which documents would know it. Give its description a name";
  if (!IsText(library.name) || (library.version != nullptr && !IsText(library.version)))
    return "has a name or version that is not UTF-8. Correct it in its description";
  if (!std::ranges::all_of(library.continues, IsName))
    return "continues a library that it does not name. Correct the .continues of its description";
  return {};
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

std::string FaultOfClasses(const HVXUpgradeLibrary& library) {
  std::map<std::pair<std::string_view, std::uint64_t>, const HVXUpgradeClass*> extended;
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
    for (const char* const lateType : each->lateTypes) {
      const auto first = extended.try_emplace({lateType, each->interface.Value()}, each).first;
      if (first->second != each)
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
  std::set<std::string_view> all;
  for (const VLMUnicodeString& each : library.identifiers) all.insert(each.View());
  for (const HVXUpgradeClass* const upgradeClass : library.classes) {
    for (const HVXUpgradeBinding& binding : upgradeClass->bindings) all.insert(binding.identifier.View());
  }
  for (const HVXDocumentUpgrade& each : library.documentUpgrades) all.insert(each.identifier.View());
  return all;
}

std::string FaultOfTables(const HVXUpgradeLibrary& library) {
  if (std::string fault = FaultOfNames(library); !fault.empty()) return fault;
  if (!std::ranges::all_of(library.identifiers, IsIdentifier)) return std::string(kNoIdentifier);
  if (std::string fault = FaultOfClasses(library); !fault.empty()) return fault;
  if (std::string fault = FaultOfConversions(library); !fault.empty()) return fault;
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
