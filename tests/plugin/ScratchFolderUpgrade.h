#pragma once

#include "HVXUpgradeExtension.h"
#include "modeler/VLMIAlias.h"

/// An identifier that comes after all others, with all that it takes: this class's one table row and one
/// routine.
class ScratchFolderUpgrade final : public HVXUpgradeOf<ScratchFolderUpgrade> {
 public:
  using HVXUpgradeOf::HVXUpgradeOf;

  static const HVXUpgradeClass kClass;

 private:
  HRESULT NameFolder() {
    const VLMIAlias_var spAlias(Feature());
    if (spAlias == NULL_var) return E_FAIL;
    return spAlias->SetExternalName("Scratch Folder");
  }

  static constexpr const char* kLateTypes[] = {"UpgradeTestScratchFolderLT"};
  static const HVXUpgradeBinding kBindings[];
};

inline const HVXUpgradeBinding ScratchFolderUpgrade::kBindings[] = {
    {"UpgradeTestScratchFolder", "Names the folder.", Own<&ScratchFolderUpgrade::NameFolder>,
     HVXOnFailure::kStop},
};

inline constinit const HVXUpgradeClass ScratchFolderUpgrade::kClass = {
    .name = "ScratchFolderUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};
