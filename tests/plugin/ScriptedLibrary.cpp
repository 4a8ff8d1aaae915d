// An upgrade library that is what the file beside it says, "NAME.so.txt", a word and its values in each line:
//   name NAME            version VERSION          continues NAME          order FIRST THEN
//   type LATETYPE        interface INTERFACE      conversion IDENTIFIER   lists IDENTIFIER
//   upgrade IDENTIFIER   fails IDENTIFIER         removes IDENTIFIER      needs IDENTIFIER
//   throws IDENTIFIER    crashes IDENTIFIER       rival LATETYPE          undeclared
//   ends WHEN HOW        disturbs IDENTIFIER
// Its routines append the library's name to the feature's attribute "Ran"; one that fails does so afterwards,
// and one that needs something fails, doing nothing, where the feature has no attribute "Needed". What is
// thrown is named as the feature; no exception of the standard library where it has none. A rival is a second
// class. What is undeclared the host is not told of. WHEN is "loading", "asked" (for the description) or
// "unloading"; HOW is "throws", "exits", "quits", "aborts", "crashes" or "recurses". One that
// disturbs prints, and leaves the process with another folder, another mask for new files and a copy.
// Copies of the library are different libraries.

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "HVXUpgradeExtension.h"
#include "HVXUpgradeLibrary.h"
#include "modeler/VLMISpecAttrAccess.h"

namespace {

constexpr HRESULT kFailure = -77;

class ScriptedUpgrade final : public HVXUpgradeExtension {
 public:
  using HVXUpgradeExtension::HVXUpgradeExtension;

  HRESULT Upgrade(const VLMListValVLMUnicodeString& identifiers);
  static void* CreateTIE(VLMBaseUnknown& extended) {
    return VLMMakeTie<TIEHVXIUpgrade<ScriptedUpgrade>>(extended);
  }

  template <HRESULT (ScriptedUpgrade::*Routine)()>
  static HRESULT Own(VLMExtension& extension) {
    return (static_cast<ScriptedUpgrade&>(extension).*Routine)();
  }
  HRESULT Run();
  HRESULT RunAndFail() {
    const HRESULT ran = Run();
    return Failed(ran) ? ran : kFailure;
  }
  HRESULT RunWhereNeeded() {
    const VLMISpecAttrAccess_var spAccess(Feature());
    if (spAccess->GetAttrKey("Needed").IsNull()) return kFailure;
    return spAccess->GetAttrKey("Ran").IsNull() ? Run() : S_OK;
  }
  HRESULT Throw() {
    const VLMISpecObject_var spFeature(Feature());
    const std::string name(spFeature->GetName().View());
    if (name.empty()) throw 7;
    throw std::out_of_range(name);
  }
  HRESULT Crash() { std::abort(); }
  HRESULT Disturb() {
    std::cout << "out" << std::endl;
    std::printf("of the library");
    umask(0777);
    const bool isDone = chdir("/") == 0 && fork() >= 0;
    return isDone ? S_OK : kFailure;
  }
  HRESULT Remove() {
    const VLMISpecObject_var spFeature(Feature());
    VLMISpecObject_var spFather;
    if (const HRESULT found = spFeature->GetFather(spFather); Failed(found)) return found;
    return spFather->RemoveSon(spFeature, 0);
  }
};

struct Script {
  Script();

  std::deque<std::string> texts;  // what the others refer to
  const char* name = "Scripted";
  const char* version = nullptr;
  std::vector<const char*> continues;
  std::vector<VLMUnicodeString> identifiers;
  std::vector<const char*> lateTypes;
  std::vector<HVXUpgradeBinding> bindings;
  std::vector<HVXDocumentUpgrade> conversions;
  std::vector<HVXUpgradeOrder> orders;
  std::optional<HVXUpgradeClass> upgradeClass;
  std::vector<const HVXUpgradeClass*> classes;
  std::vector<const char*> rivalTypes;
  std::optional<HVXUpgradeClass> rival;
  bool isDeclared = true;
  std::string endsWhen;
  std::string endsHow;
};

// No call of it is the last thing done, so that it needs stack.
int Recurse(volatile int* depth) {
  volatile int next = *depth + 1;
  return next < 0 ? 0 : Recurse(&next) + next;
}

void EndProgram(const std::string& how) {
  volatile int none = 0;
  volatile std::uintptr_t nowhere = alignof(int);
  if (how == "throws") throw std::runtime_error("no\nlicence");
  if (how == "exits") std::exit(0);
  if (how == "quits") std::quick_exit(0);
  if (how == "aborts") std::abort();
  if (how == "crashes") *reinterpret_cast<volatile int*>(nowhere) = 0;
  if (how == "recurses") std::exit(Recurse(&none));
}

HRESULT Convert(const VLMListValVLMUnicodeString& /*identifiers*/,
                const VLMListValVLMISpecObject_var& /*features*/) {
  return S_OK;
}

VLMInterfaceId InterfaceOf(const std::string& name) {
  return name == "VLMISamUpgrade" ? VLMInterfaceId("VLMISamUpgrade") : HVXIUpgrade::kId;
}

Script::Script() {
  Dl_info own{};
  dladdr(reinterpret_cast<const void*>(&HVXGetUpgradeLibrary), &own);
  std::ifstream file(std::filesystem::canonical(own.dli_fname).string() + ".txt");
  std::string interface;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string what;
    words >> what;
    const auto next = [&] {
      std::string& text = texts.emplace_back();
      words >> text;
      return text.c_str();
    };
    const auto bind = [&](HRESULT (*routine)(VLMExtension&)) {
      bindings.push_back({next(), "Does what the test says.", routine, HVXOnFailure::kIgnore});
    };
    if (what == "name") name = next();
    if (what == "version") version = next();
    if (what == "continues") continues.push_back(next());
    if (what == "type") lateTypes.push_back(next());
    if (what == "interface") interface = next();
    if (what == "lists") identifiers.emplace_back(next());
    if (what == "conversion") conversions.push_back({next(), "Converts nothing.", &Convert});
    if (what == "upgrade") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Run>);
    if (what == "fails") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::RunAndFail>);
    if (what == "needs") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::RunWhereNeeded>);
    if (what == "throws") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Throw>);
    if (what == "disturbs") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Disturb>);
    if (what == "crashes") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Crash>);
    if (what == "removes") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Remove>);
    if (what == "undeclared") isDeclared = false;
    if (what == "rival") rivalTypes.push_back(next());
    if (what == "ends") words >> endsWhen >> endsHow;
    if (what == "order") {
      const char* const first = next();
      orders.push_back({first, next(), "The test says so."});
    }
  }
  const auto add = [this](std::optional<HVXUpgradeClass>& place, const HVXUpgradeClass& added) {
    if (!added.lateTypes.empty()) classes.push_back(&place.emplace(added));
  };
  add(upgradeClass, {.name = texts.emplace_back(std::string(name) + "Class").c_str(),
                     .interface = InterfaceOf(interface),
                     .lateTypes = lateTypes,
                     .bindings = bindings,
                     .createTIE = &ScriptedUpgrade::CreateTIE});
  add(rival, {.name = "Rival",
              .interface = HVXIUpgrade::kId,
              .lateTypes = rivalTypes,
              .bindings = {},
              .createTIE = &ScriptedUpgrade::CreateTIE});
}

const Script& TheScript() {
  static const Script script;
  return script;
}

const HVXUpgradeDeclarations declarations(TheScript().name,
                                          TheScript().isDeclared
                                              ? std::span<const HVXUpgradeClass* const>(TheScript().classes)
                                              : std::span<const HVXUpgradeClass* const>());

struct End {
  End() { At("loading"); }
  ~End() { At("unloading"); }
  static void At(std::string_view when) {
    if (TheScript().endsWhen == when) EndProgram(TheScript().endsHow);
  }
};
const End end;

HRESULT ScriptedUpgrade::Upgrade(const VLMListValVLMUnicodeString& identifiers) {
  return Dispatch(*TheScript().upgradeClass, identifiers);
}

HRESULT ScriptedUpgrade::Run() {
  const VLMISpecAttrAccess_var spAccess(Feature());
  VLMSpecAttrKey key = spAccess->GetAttrKey("Ran");
  VLMUnicodeString before;
  if (key.IsNull()) {
    if (const HRESULT added = spAccess->AddAttribute("Ran", VLMAttributeType::kString, key); Failed(added))
      return added;
  } else {
    static_cast<void>(spAccess->GetString(key, before));
  }
  const std::string after = std::string(before.View()) + TheScript().name + ";";
  return spAccess->SetString(key, VLMUnicodeString(after.c_str()));
}

}  // namespace

const VLMLibrary& HVXThisLibrary() {
  return declarations.Library();
}

const HVXUpgradeLibrary* HVXGetUpgradeLibrary() {
  End::At("asked");
  static const HVXUpgradeLibrary library = {
      .name = TheScript().name,
      .version = TheScript().version,
      .continues = TheScript().continues,
      .identifiers = TheScript().identifiers,
      .classes = TheScript().classes,
      .documentUpgrades = TheScript().conversions,
      .orders = TheScript().orders,
      .observer = &HVXDispatchObserver,
  };
  return &library;
}
