// What the host asks this library for: its classes, and its identifiers in their order.

#include "AcmeBoltUpgrade.h"
#include "AcmeIdentifiers.h"
#include "HVXUpgradeLibrary.h"

namespace {

constexpr const HVXUpgradeClass* kClasses[] = {&AcmeBoltUpgrade::kClass};

const VLMUnicodeString kIdentifiers[] = {kAcmeBoltDiameterInMetres, kAcmeBoltStrengths};

const HVXUpgradeDeclarations declarations("AcmeUpgrades", kClasses);

}  // namespace

const VLMLibrary& HVXThisLibrary() {
  return declarations.Library();
}

const HVXUpgradeLibrary* HVXGetUpgradeLibrary() {
  static const HVXUpgradeLibrary library = {
      .name = "AcmeUpgrades",
      .version = "1.0",
      .identifiers = kIdentifiers,
      .classes = kClasses,
      .documentUpgrades = {},
      .orders = {},
      .observer = &HVXDispatchObserver,
  };
  return &library;
}
