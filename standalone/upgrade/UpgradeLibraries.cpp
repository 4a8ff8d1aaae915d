#include "upgrade/UpgradeLibraries.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "base/VLMRegistry.h"
#include "upgrade/BuiltInLibrary.h"
#include "upgrade/LibraryTables.h"
#include "workbench/HVXIUpgrade.h"

namespace standalone {
namespace {

namespace fs = std::filesystem;

using Loaded = std::vector<std::unique_ptr<UpgradeLibrary>>;

bool Continues(const HVXUpgradeLibrary& library, std::string_view name) {
  return std::ranges::any_of(library.continues, [name](std::string_view each) { return each == name; });
}

std::string NameOf(const UpgradeLibrary& library) {
  return fmt::format("{} ({})", library.Description().name, library.File().string());
}

Loaded Load(const std::vector<fs::path>& files) {
  Loaded libraries;
  for (const fs::path& file : files) {
    auto library = std::make_unique<UpgradeLibrary>(file);
    const HVXUpgradeLibrary& description = library->Description();
    // The loader knows a file under any of its names.
    const bool isLoaded = std::ranges::any_of(
        libraries, [&](const auto& each) { return &each->Description() == &description; });
    if (isLoaded) continue;
    for (const auto& each : libraries) {
      if (std::string_view(each->Description().name) != description.name) continue;
      throw std::runtime_error(fmt::format(
          "{} and {} are both the upgrade library {}. Leave one of them out{}", each->File().string(),
          file.string(), description.name,
          IsBuiltIn(description.name) ? " (--no-default-library leaves out the installed one)" : ""));
    }
    libraries.push_back(std::move(library));
  }
  return libraries;
}

void RequireContinued(const Loaded& libraries) {
  for (const auto& library : libraries) {
    for (const std::string_view name : library->Description().continues) {
      const bool isThere = std::ranges::any_of(
          libraries, [name](const auto& each) { return each->Description().name == name; });
      if (!isThere)
        throw std::runtime_error(fmt::format(
            "{} continues the upgrade library {}, which is not loaded. {}", NameOf(*library), name,
            IsBuiltIn(name) ? "Do not leave out the installed library (--no-default-library)"
                            : "Give that one, too (--library, --plugins)"));
    }
  }
}

// One after the other continues the next, and the last one of them the first.
std::string CircleIn(const Loaded& libraries) {
  std::vector<std::string_view> names{libraries.front()->Description().name};
  while (std::ranges::count(names, names.back()) == 1) {
    const auto last = std::ranges::find_if(
        libraries, [&](const auto& each) { return each->Description().name == names.back(); });
    const auto next = std::ranges::find_if(libraries, [&](const auto& each) {
      return Continues((*last)->Description(), each->Description().name);
    });
    names.emplace_back((*next)->Description().name);
  }
  names.erase(names.begin(), std::ranges::find(names, names.back()));
  return fmt::format("{}", fmt::join(names, " continues "));
}

Loaded InOrder(Loaded libraries) {
  const auto rank = [](const auto& library) {
    const std::string_view name = library->Description().name;
    return std::pair(!IsBuiltIn(name), name);
  };
  std::ranges::sort(libraries, {}, rank);
  Loaded ordered;
  while (!libraries.empty()) {
    const auto next = std::ranges::find_if(libraries, [&libraries](const auto& library) {
      return std::ranges::none_of(libraries, [&library](const auto& each) {
        return Continues(library->Description(), each->Description().name);
      });
    });
    if (next == libraries.end())
      throw std::runtime_error(
          fmt::format("the upgrade libraries are written after each other in a circle: {}. Leave one of them "
                      "out, or correct "
                      "what its description continues",
                      CircleIn(libraries)));
    ordered.push_back(std::move(*next));
    libraries.erase(next);
  }
  return ordered;
}

// What of two libraries must not be there twice, and what both of them have all the same.
class Pair {
 public:
  Pair(const UpgradeLibrary& first, const UpgradeLibrary& second)
      : first_(first),
        second_(second),
        areContinued_(Continues(second.Description(), first.Description().name)) {}

  /// Throws when they do not go together; else has the first one's extensions found by casting.
  void Settle() const {
    SettleExtensions();
    RefuseSharedIdentifiers();
    RefuseSharedConversions();
  }

 private:
  void SettleExtensions() const {
    std::map<std::pair<std::string_view, std::uint64_t>, const HVXUpgradeClass*> bound;
    for (const HVXUpgradeClass* const each : first_.Description().classes) {
      for (const std::string_view lateType : each->lateTypes)
        bound.emplace(std::pair(lateType, each->interface.Value()), each);
    }
    for (const HVXUpgradeClass* const each : second_.Description().classes) {
      for (const std::string_view lateType : each->lateTypes) {
        const auto found = bound.find({lateType, each->interface.Value()});
        if (found == bound.end()) continue;
        if (!areContinued_ || !(each->interface == HVXIUpgrade::kId))
          RefuseBoth(lateType, *found->second, *each);
        VLMRegistry::Instance().Prefer(VLMMetaClass::LateType(lateType), each->interface,
                                       found->second->createTIE);
      }
    }
  }

  [[noreturn]] void RefuseBoth(std::string_view lateType, const HVXUpgradeClass& one,
                               const HVXUpgradeClass& other) const {
    const std::string what =
        fmt::format("extend {} with {}: {} and {}", lateType, one.interface.Name(), one.name, other.name);
    // What routines ask for by casting gives one extension, and nobody could tell which of them is meant.
    if (!(one.interface == HVXIUpgrade::kId))
      Refuse(what + ". Only one extension of this interface is ever asked");
    RefuseUncontinued(what + ". A feature would have only one of them");
  }

  void RefuseSharedIdentifiers() const {
    if (areContinued_) return;
    const std::set<std::string_view> others = IdentifiersOf(first_.Description());
    for (const std::string_view identifier : IdentifiersOf(second_.Description())) {
      if (others.contains(identifier))
        RefuseUncontinued(
            fmt::format("have the upgrade {}. A document that was through the one would count as having been "
                        "through the other",
                        identifier));
    }
  }

  void RefuseSharedConversions() const {
    for (const HVXDocumentUpgrade& one : first_.Description().documentUpgrades) {
      for (const HVXDocumentUpgrade& other : second_.Description().documentUpgrades) {
        if (one.identifier.View() == other.identifier.View())
          Refuse(
              fmt::format("convert whole documents for the upgrade {}. Only one of the conversions would run",
                          one.identifier.View()));
      }
    }
  }

  [[noreturn]] void RefuseUncontinued(const std::string& what) const {
    Refuse(what, fmt::format("; or, if {} was written to be used with {}, name that in the .continues of its "
                             "description",
                             second_.Description().name, first_.Description().name));
  }

  [[noreturn]] void Refuse(const std::string& what, const std::string& otherwise = "") const {
    throw std::runtime_error(fmt::format("{} and {} both {}. Leave one of the libraries out{}",
                                         NameOf(first_), NameOf(second_), what, otherwise));
  }

  const UpgradeLibrary& first_;
  const UpgradeLibrary& second_;
  bool areContinued_;
};

// Which of the upgrades ran first would be chance.
void RefuseContradictingOrders(const Loaded& libraries,
                               const std::vector<const HVXUpgradeLibrary*>& descriptions) {
  std::vector<std::string_view> circle = CircleOfOrders(descriptions);
  if (circle.empty()) return;
  const auto isInCircle = [&circle](const HVXUpgradeOrder& order) {
    const auto first = std::ranges::find(circle, order.first.View());
    if (first == circle.end()) return false;
    return order.then.View() == (std::next(first) == circle.end() ? circle.front() : *std::next(first));
  };
  std::vector<std::string> wanting;
  for (const auto& library : libraries) {
    if (std::ranges::any_of(library->Description().orders, isInCircle)) wanting.push_back(NameOf(*library));
  }
  circle.push_back(circle.front());
  throw std::runtime_error(fmt::format("the orders of {} contradict each other: {}. Correct them{}",
                                       fmt::join(wanting, " and "), fmt::join(circle, " before "),
                                       wanting.size() == 1 ? "" : ", or leave one of the libraries out"));
}

// Other libraries of this process may extend the same late types, and a cast would give their extensions.
void RefuseRivals(const Loaded& libraries) {
  std::set<std::pair<std::string_view, std::uint64_t>> settled;
  for (const auto& library : libraries) {
    for (const HVXUpgradeClass* const each : library->Description().classes) {
      for (const std::string_view lateType : each->lateTypes) {
        if (!settled.emplace(lateType, each->interface.Value()).second) continue;
        const VLMCreateTIE found = VLMMetaClass::LateType(lateType).FindTie(each->interface);
        if (found == each->createTIE) continue;
        if (found == nullptr)
          throw std::runtime_error(fmt::format(
              "{}: the upgrade library describes {} for {} and never declared it, so that no feature would "
              "have it. Give its HVXUpgradeDeclarations the same classes as its description",
              library->File().string(), each->name, lateType));
        throw std::runtime_error(
            fmt::format("{} extends {} with {}, and so does another upgrade library of this process, whose "
                        "extension would be used. Let go of that one first, with the documents that it "
                        "worked on, or load both together",
                        NameOf(*library), lateType, each->interface.Name()));
      }
    }
  }
}

}  // namespace

UpgradeLibraries::UpgradeLibraries(const std::vector<fs::path>& files) {
  Loaded libraries = Load(files);
  RequireContinued(libraries);
  libraries_ = InOrder(std::move(libraries));
  // The later ones first, so that of several the first one's extensions are preferred in the end.
  for (std::size_t second = libraries_.size(); second-- > 0;) {
    for (std::size_t first = second; first-- > 0;) Pair(*libraries_[first], *libraries_[second]).Settle();
  }
  RefuseRivals(libraries_);
  RefuseContradictingOrders(libraries_, Descriptions());
}

std::vector<const HVXUpgradeLibrary*> UpgradeLibraries::Descriptions() const {
  std::vector<const HVXUpgradeLibrary*> descriptions;
  descriptions.reserve(libraries_.size());
  for (const auto& library : libraries_) descriptions.push_back(&library->Description());
  return descriptions;
}

std::vector<fs::path> PluginsIn(const fs::path& folder) {
  std::error_code error;
  if (fs::is_regular_file(folder, error))
    throw std::runtime_error(
        fmt::format("{}: this is a file, not a folder of plug-ins. --library takes files", folder.string()));
  std::vector<fs::path> files;
  fs::directory_iterator entries(folder, error);
  for (const fs::directory_iterator end; !error && entries != end; entries.increment(error)) {
    const fs::path& file = entries->path();
    const bool isHidden = file.filename().native().starts_with('.');
    std::error_code unknown;  // such as a link that leads nowhere: loading it tells that
    if (!isHidden && file.extension() == ".so" && !fs::is_directory(file, unknown)) files.push_back(file);
  }
  if (error)
    throw std::runtime_error(
        fmt::format("{}: the folder of plug-ins cannot be read ({}). Check the path and the permissions",
                    folder.string(), error.message()));
  std::ranges::sort(files, {}, [](const fs::path& file) { return file.filename().native(); });
  return files;
}

}  // namespace standalone
