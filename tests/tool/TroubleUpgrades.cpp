// An upgrade library whose conversions end in every bad way.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "base/VLMFatalError.h"
#include "workbench/HVXUpgradeTable.h"

namespace {

using Features = const VLMListValVLMISpecObject_var&;

HRESULT LoopForEver(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  std::puts("looping");  // so that a test knows when it has come so far
  std::fflush(stdout);
  for (;;) pause();
}

HRESULT Crash(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  std::abort();
}

HRESULT GiveUp(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  VLMFatalError("AssertionFailed:NULL_var != spThis", "src/Trouble");
}

HRESULT Fail(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  return static_cast<HRESULT>(0x80001234U);
}

HRESULT Succeed(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  return S_OK;
}

// Does what another program may do while the document is being upgraded.
HRESULT Meddle(const VLMListValVLMUnicodeString& /*identifiers*/, Features /*features*/) {
  if (const char* const document = std::getenv("HVX_TEST_MEDDLES_WITH"))
    std::ofstream(document, std::ios::app) << "\n";
  return S_OK;
}

// What the name of the last feature says.
HRESULT AsNamed(const VLMListValVLMUnicodeString& identifiers, Features features) {
  if (features.Size() == 0) return S_OK;
  const VLMUnicodeString name = features[features.Size()]->GetName();
  if (name == VLMUnicodeString("LoopForEver")) return LoopForEver(identifiers, features);
  if (name == VLMUnicodeString("Crash")) return Crash(identifiers, features);
  return S_OK;
}

const VLMUnicodeString kIdentifiers[] = {"Meddle", "Succeed", "LoopForEver", "Crash",
                                         "GiveUp", "Fail",    "AsNamed"};

const HVXDocumentUpgrade kDocumentUpgrades[] = {
    {"Meddle", "Writes to the document behind the program's back.", &Meddle},
    {"Succeed", "Does nothing.", &Succeed},
    {"LoopForEver", "Never ends.", &LoopForEver},
    {"Crash", "Aborts.", &Crash},
    {"GiveUp", "Gives up.", &GiveUp},
    {"Fail", "Fails.", &Fail},
    {"AsNamed", "Loops or crashes.", &AsNamed},
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const HVXUpgradeLibrary* HVXGetUpgradeLibrary() {
  static const HVXUpgradeLibrary library = {.name = "TroubleUpgrades",
                                            .version = "0.1",
                                            .identifiers = kIdentifiers,
                                            .classes = {},
                                            .documentUpgrades = kDocumentUpgrades,
                                            .orders = {}};
  return &library;
}
