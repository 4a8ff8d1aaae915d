#include "commands/IdentifiersCommand.h"

#include <fmt/ranges.h>

#include <algorithm>

#include "document/Selection.h"
#include "report/ExplanationText.h"
#include "report/FailurePolicies.h"
#include "report/JsonOutput.h"
#include "settings/Explanations.h"
#include "settings/Installation.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::KnownUpgrade;
using standalone::VersionManager;
using Binding = KnownUpgrade::Binding;

const FailurePolicy& PolicyOf(const Binding& bound) {
  return tool::PolicyOf(bound.binding->onFailure);
}

bool TestsInTurn(const Binding& bound) {
  return bound.upgradeClass->matching == HVXMatching::kSequential;
}

std::string LateTypes(const HVXUpgradeClass& upgradeClass) {
  return fmt::format("{}", fmt::join(upgradeClass.lateTypes, ", "));
}

void AppendClass(JsonObject& object, const HVXUpgradeClass& upgradeClass) {
  object.Text("class", upgradeClass.name);
  object.Texts("lateTypes",
               std::vector<std::string>(upgradeClass.lateTypes.begin(), upgradeClass.lateTypes.end()));
}

std::size_t Number(const VersionManager& manager, const KnownUpgrade& known) {
  return static_cast<std::size_t>(&known - manager.Known().data()) + 1;
}

bool Unanswered(const KnownUpgrade& known) {
  return known.bindings.empty() && known.documentUpgrade == nullptr;
}

// What tells a list's reader something about the identifier as a whole.
std::string Remarks(const KnownUpgrade& known) {
  std::vector<std::string_view> remarks;
  if (known.documentUpgrade != nullptr) remarks.emplace_back("document-wide");
  if (Unanswered(known)) remarks.emplace_back("answered by no class");
  return remarks.empty() ? "" : fmt::format("  ({})", fmt::join(remarks, "; "));
}

bool AreSeveral(const VersionManager& manager) {
  return manager.Libraries().size() > 1;
}

std::string TitleOf(const HVXUpgradeLibrary& library) {
  std::string title = library.name;
  if (library.version != nullptr) title += fmt::format(" {}", library.version);
  if (!library.continues.empty())
    title += fmt::format(", which continues {}", fmt::join(library.continues, ", "));
  return Printable(title);
}

// Sentences on the late types for which the extensions of several libraries are handed the identifier, in the
// order of the calls.
std::vector<std::string> SharedTexts(const KnownUpgrade& known) {
  std::vector<std::string> texts;
  for (const auto& [lateType, handed] : known.shared) {
    if (handed.size() == 1) continue;
    std::vector<std::string> classes;
    for (const HVXUpgradeClass* const upgradeClass : handed) {
      const auto bound = std::ranges::find(known.bindings, upgradeClass, &Binding::upgradeClass);
      classes.push_back(fmt::format("{} of {}", upgradeClass->name, bound->library->name));
    }
    texts.push_back(
        fmt::format("Features of {} are handed to {}.", lateType, fmt::join(classes, ", then to ")));
  }
  return texts;
}

// Orders that do not count, since one of the two upgrades is of no loaded library.
void AppendIdleOrders(fmt::memory_buffer& out, const VersionManager& manager) {
  auto to = std::back_inserter(out);
  for (const HVXUpgradeLibrary* const library : manager.Libraries()) {
    for (const HVXUpgradeOrder& order : library->orders) {
      for (const std::string_view each : {order.first.View(), order.then.View()}) {
        if (manager.Find(each) != nullptr) continue;
        fmt::format_to(to, "     {} orders {} before {}; no library that is loaded has {}\n", library->name,
                       order.first.View(), order.then.View(), each);
      }
    }
  }
}

void AppendList(fmt::memory_buffer& out, const VersionManager& manager,
                const std::vector<const KnownUpgrade*>& chosen) {
  auto to = std::back_inserter(out);
  const HVXUpgradeLibrary* library = nullptr;
  for (const KnownUpgrade* const known : chosen) {
    if (AreSeveral(manager) && known->library != library)
      fmt::format_to(to, "{}{}\n", library == nullptr ? "" : "\n", TitleOf(*known->library));
    library = known->library;
    fmt::format_to(to, "{:3}  {}{}\n", Number(manager, *known), known->identifier, Remarks(*known));
    if (known->documentUpgrade != nullptr) fmt::format_to(to, "       {}\n", known->documentUpgrade->purpose);
    for (const Binding& bound : known->bindings) {
      fmt::format_to(to, "       {}: {} [{}: {}{}]\n", LateTypes(*bound.upgradeClass), bound.binding->purpose,
                     bound.upgradeClass->name, PolicyOf(bound).word, TestsInTurn(bound) ? ", in turn" : "");
    }
    for (const std::string& shared : SharedTexts(*known)) fmt::format_to(to, "       {}\n", shared);
  }
  if (AreSeveral(manager)) out.push_back('\n');
  for (const HVXUpgradeClass* const hostUpgrade : manager.HostUpgrades()) {
    fmt::format_to(
        to, "     The host's upgrade of basic components ({}), which conversions call\n       {} [{}]\n",
        hostUpgrade->interface.Name(), LateTypes(*hostUpgrade), hostUpgrade->name);
  }
  AppendIdleOrders(out, manager);
  fmt::format_to(to,
                 "\nEach line: the late types, what happens to their features [the class: on failure].\n");
  for (const FailurePolicy& policy : FailurePolicies())
    fmt::format_to(to, "  {:<8} {}\n", policy.word, policy.meaning);
  fmt::format_to(to, "  in turn  the class tests all its upgrades in turn, not only up to the first match\n");
}

void AppendBindings(fmt::memory_buffer& out, const VersionManager& manager, const KnownUpgrade& known,
                    std::size_t columns) {
  constexpr std::size_t kIndent = 2;
  auto to = std::back_inserter(out);
  if (Unanswered(known)) fmt::format_to(to, "\n  No class answers to it: it changes nothing.\n");
  if (known.documentUpgrade != nullptr) {
    fmt::format_to(to, "\nOn the whole document, after all features\n");
    AppendProse(out, known.documentUpgrade->purpose, kIndent, columns);
  }
  if (!known.bindings.empty()) fmt::format_to(to, "\nOn features\n");
  for (const Binding& bound : known.bindings) {
    AppendProse(out, LateTypes(*bound.upgradeClass), kIndent, columns);
    AppendProse(out, bound.binding->purpose, 2 * kIndent, columns);
    const std::string rule =
        TestsInTurn(bound) ? "tests all its upgrades in turn" : "runs the first match only";
    std::string by = fmt::format("Class {}{}, which {}; {}.", bound.upgradeClass->name,
                                 AreSeveral(manager) ? fmt::format(" of {}", bound.library->name) : "", rule,
                                 PolicyOf(bound).meaning);
    if (Failed(bound.upgradeClass->resultWithoutRun)) {
      by += fmt::format(" Without a match it answers 0x{:08X}.",
                        static_cast<std::uint32_t>(bound.upgradeClass->resultWithoutRun));
    }
    AppendProse(out, by, 2 * kIndent, columns);
  }
  for (const std::string& shared : SharedTexts(known)) AppendProse(out, shared, kIndent, columns);
}

void AppendUpgrade(fmt::memory_buffer& out, const VersionManager& manager, const KnownUpgrade& known,
                   const Explanations& explanations) {
  constexpr std::size_t kFewestColumns = 40;  // with fewer nothing can be read in any case
  const std::size_t columns = std::max(kFewestColumns, ColumnsOf(stdout));
  auto to = std::back_inserter(out);
  fmt::format_to(to, "{} ({} of {})\n", known.identifier, Number(manager, known), manager.Known().size());
  if (AreSeveral(manager)) fmt::format_to(to, "  Of {}\n", TitleOf(*known.library));
  const Explanation* const explanation = explanations.Of(known.identifier);
  if (explanation != nullptr) {
    out.push_back('\n');
    AppendProse(out, explanation->about, 2, columns);
  }
  AppendBindings(out, manager, known, columns);
  if (explanation != nullptr) AppendParts(out, *explanation, columns);
  if (const auto page = explanations.PageOf(known.identifier); !page.empty())
    fmt::format_to(to, "\nIts page: {}\n", Printable(page.string()));
}

void AppendShared(JsonObject& entry, const KnownUpgrade& known) {
  JsonList list(entry.Key("shared"));
  for (const auto& [lateType, classes] : known.shared) {
    JsonObject shared(list.Entry());
    shared.Text("lateType", lateType);
    std::vector<std::string> names;
    for (const HVXUpgradeClass* const upgradeClass : classes) names.emplace_back(upgradeClass->name);
    shared.Texts("classes", names);
    shared.Close();
  }
  list.Close();
}

void AppendJson(fmt::memory_buffer& out, const Installation& installation,
                const std::vector<const KnownUpgrade*>& chosen) {
  const VersionManager& manager = installation.Manager();
  JsonObject top(out);
  top.Text("identifiers", "hvxupgrade");
  top.Number("version", kJsonVersion);
  AppendLibraries(top, installation.LibraryFiles());
  JsonList list(top.Key("upgrades"));
  for (const KnownUpgrade* const known : chosen) {
    JsonObject entry(list.Entry());
    entry.Number("number", Number(manager, *known));
    entry.Text("upgrade", known->identifier);
    entry.Text("library", known->library->name);
    entry.Flag("documentWide", known->documentUpgrade != nullptr);
    if (known->documentUpgrade != nullptr) entry.Text("purpose", known->documentUpgrade->purpose);
    JsonList bindings(entry.Key("bindings"));
    for (const Binding& bound : known->bindings) {
      JsonObject binding(bindings.Entry());
      binding.Text("library", bound.library->name);
      AppendClass(binding, *bound.upgradeClass);
      binding.Text("purpose", bound.binding->purpose);
      binding.Text("onFailure", PolicyOf(bound).word);
      binding.Text("matching", TestsInTurn(bound) ? "inTurn" : "firstMatch");
      standalone::AppendJsonInteger(binding.Key("resultWithoutRun"), bound.upgradeClass->resultWithoutRun);
      binding.Close();
    }
    bindings.Close();
    if (!known->shared.empty()) AppendShared(entry, *known);
    entry.Close();
  }
  list.Close();
  JsonList hostUpgrades(top.Key("hostUpgrades"));
  for (const HVXUpgradeClass* const hostUpgrade : manager.HostUpgrades()) {
    JsonObject entry(hostUpgrades.Entry());
    AppendClass(entry, *hostUpgrade);
    entry.Text("interface", hostUpgrade->interface.Name());
    entry.Close();
  }
  hostUpgrades.Close();
  top.Close();
  out.push_back('\n');
}

}  // namespace

ExitCode RunIdentifiers(const IdentifiersArguments& arguments, const Places& places,
                        const Installation& installation) {
  const VersionManager& manager = installation.Manager();
  std::vector<const KnownUpgrade*> chosen;
  for (const std::string& identifier : arguments.identifiers)
    chosen.push_back(&KnownOrRefuse(manager, identifier));
  if (arguments.identifiers.empty()) {
    for (const KnownUpgrade& known : manager.Known()) chosen.push_back(&known);
  }
  fmt::memory_buffer out;
  if (arguments.json) {
    AppendJson(out, installation, chosen);
  } else if (arguments.identifiers.empty()) {
    AppendList(out, manager, chosen);
  } else {
    const Explanations explanations(DataFolder(places));
    for (const KnownUpgrade* const known : chosen) {
      if (out.size() != 0) fmt::format_to(std::back_inserter(out), "\n\n");
      AppendUpgrade(out, manager, *known, explanations);
    }
  }
  Say({out.data(), out.size()});
  return ExitCode::kDone;
}

}  // namespace tool
