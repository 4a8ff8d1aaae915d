#include "HVXUpgradeExtension.h"

#include "HVXUpgradeLibrary.h"

namespace {

constexpr int kIdentical = 2;  // the one answer of Compare that counts as a match
constexpr const char* kFramework = "HVXHKPVersion";

HRESULT RunObserved(const HVXUpgradeBinding& row, HVXUpgradeExtension& extension,
                    const VLMBaseUnknown_var& feature) {
  // Read once: who watches the beginning of a routine is told of its end.
  HVXUpgradeObserver* const observer = *HVXDispatchObserver();
  if (observer == nullptr) return row.routine(extension);
  observer->BeforeRoutine(feature, row);
  const HRESULT result = row.routine(extension);
  observer->AfterRoutine(feature, row, result);
  return result;
}

}  // namespace

HVXUpgradeObserver** HVXDispatchObserver() {
  static constinit thread_local HVXUpgradeObserver* observer = nullptr;
  return &observer;
}

HRESULT HVXUpgradeExtension::Dispatch(const HVXUpgradeClass& upgradeClass,
                                      const VLMListValVLMUnicodeString& identifiers) {
  HRESULT kept = upgradeClass.resultWithoutRun;
  // The size is read anew each time, and the element copied: a routine may reach the list through the host.
  for (int position = 1; position <= identifiers.Size(); ++position) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): see above
    const VLMUnicodeString identifier = identifiers[position];
    for (const HVXUpgradeBinding& binding : upgradeClass.bindings) {
      if (binding.identifier.Compare(identifier) != kIdentical) continue;
      const HRESULT result = RunObserved(binding, *this, Feature());
      if (binding.onFailure == HVXOnFailure::kFirst) return result;
      if (binding.onFailure == HVXOnFailure::kStop && Failed(result)) return result;
      if (binding.onFailure == HVXOnFailure::kSkip && Failed(result)) break;
      if (binding.onFailure == HVXOnFailure::kLast) kept = result;
      if (upgradeClass.matching == HVXMatching::kFirstMatch) break;
    }
  }
  return kept;
}

HVXUpgradeDeclarations::HVXUpgradeDeclarations(std::string_view library,
                                               std::span<const HVXUpgradeClass* const> classes)
    : library_(library) {
  for (const HVXUpgradeClass* const upgradeClass : classes) {
    for (const char* const lateType : upgradeClass->lateTypes) {
      static_cast<void>(library_.DeclareTie(VLMMetaClass::LateType(lateType), upgradeClass->interface,
                                            upgradeClass->createTIE));
    }
  }
}

void HVXRegisterMetaObject(const HVXUpgradeClass& upgradeClass) {
  VLMMetaClass& metaObject =
      VLMMetaClass::Retrieve(HVXThisLibrary(), upgradeClass.name, VLMExtensionKind::kDataExtension,
                             &VLMMetaClass::BaseUnknown(), upgradeClass.lateTypes.front(), kFramework);
  for (const char* const lateType : upgradeClass.lateTypes.subspan(1)) {
    metaObject.SetExtensionOf(VLMMetaClass::LateType(lateType));
  }
}
