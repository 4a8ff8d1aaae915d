// An upgrade library that is what the file beside it says, "NAME.so.txt", a word and its values in each line:
//   name NAME            version VERSION          continues NAME          order FIRST THEN
//   type LATETYPE        interface INTERFACE      conversion IDENTIFIER   lists IDENTIFIER
//   upgrade IDENTIFIER   fails IDENTIFIER         removes IDENTIFIER      needs IDENTIFIER
//   throws IDENTIFIER    crashes IDENTIFIER
// Its routines append the library's name to the feature's attribute "Ran"; one that fails does so afterwards,
// and one that needs something fails, doing nothing, where the feature has no attribute "Needed". What is
// thrown is named as the feature; no exception of the standard library where it has none.
// Copies of the library are different libraries.

#include <dlfcn.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
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
};

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
    if (what == "crashes") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Crash>);
    if (what == "removes") bind(&ScriptedUpgrade::Own<&ScriptedUpgrade::Remove>);
    if (what == "order") {
      const char* const first = next();
      orders.push_back({first, next(), "The test says so."});
    }
  }
  if (lateTypes.empty()) return;
  upgradeClass = HVXUpgradeClass{.name = texts.emplace_back(std::string(name) + "Class").c_str(),
                                 .interface = InterfaceOf(interface),
                                 .lateTypes = lateTypes,
                                 .bindings = bindings,
                                 .createTIE = &ScriptedUpgrade::CreateTIE};
  classes.push_back(&*upgradeClass);
}

const Script& TheScript() {
  static const Script script;
  return script;
}

const HVXUpgradeDeclarations declarations(TheScript().name, TheScript().classes);

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
