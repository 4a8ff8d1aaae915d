#pragma once

#include "workbench/HVXIUpgrade.h"
#include "workbench/HVXUpgradeTable.h"

/// What all upgrade extensions share: the feature that they work on and the walk over a list of identifiers.
class HVXUpgradeExtension : public VLMExtension {
 public:
  using VLMExtension::VLMExtension;

 protected:
  ~HVXUpgradeExtension() = default;

  /// The feature to migrate; cast it by making a handle from it.
  [[nodiscard]] const VLMBaseUnknown_var& Feature() const noexcept { return Extended(); }

  /// Walks the list and runs, for each identifier, the routines that the class's table binds to it. What a
  /// result does is told at `HVXOnFailure`; otherwise gives the table's result for no run.
  HRESULT Dispatch(const HVXUpgradeClass& upgradeClass, const VLMListValVLMUnicodeString& identifiers);
};

/// The place of who is told of the routines that `Dispatch` runs on the calling thread; null stands there for
/// nobody. The library's description hands this function out.
[[nodiscard]] HVXUpgradeObserver** HVXDispatchObserver();

/// Registers the class's meta-object: a data extension of its late types.
void HVXRegisterMetaObject(const HVXUpgradeClass& upgradeClass);

/// The base of upgrade class `Class`, which defines its table as `static const HVXUpgradeClass kClass`.
template <class Class>
class HVXUpgradeOf : public HVXUpgradeExtension {
 public:
  using HVXUpgradeExtension::HVXUpgradeExtension;

  HRESULT Upgrade(const VLMListValVLMUnicodeString& identifiers) {
    return Dispatch(Class::kClass, identifiers);
  }

  /// Makes the tie that forwards `HVXIUpgrade` of `extended` to a `Class`.
  static void* CreateTIE(VLMBaseUnknown& extended) {
    static const bool registered = (HVXRegisterMetaObject(Class::kClass), true);  // by the first tie, once
    static_cast<void>(registered);
    return VLMMakeTie<TIEHVXIUpgrade<Class>>(extended);
  }

 protected:
  ~HVXUpgradeOf() = default;

  /// A routine of the class, as a table holds it.
  template <HRESULT (Class::*Routine)()>
  static HRESULT Own(VLMExtension& extension) {
    return (static_cast<Class&>(extension).*Routine)();
  }

  /// A routine that several classes share, as a table holds it.
  template <HRESULT (*Routine)(const VLMBaseUnknown_var& feature)>
  static HRESULT Shared(VLMExtension& extension) {
    return Routine(static_cast<Class&>(extension).Feature());
  }
};

// NOLINTBEGIN(bugprone-macro-parentheses): a class name cannot stand in parentheses
/// Exports the entry by which the host makes the ties of `Class`; stands at the end of the class's source.
#define HVX_EXPORT_CREATE_TIE(Class)                                                                       \
  extern "C"                                                                                               \
      __attribute__((visibility("default"))) void* CreateTIEHVXIUpgrade##Class(VLMBaseUnknown& extended) { \
    return Class::CreateTIE(extended);                                                                     \
  }
// NOLINTEND(bugprone-macro-parentheses)
