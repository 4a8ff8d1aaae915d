#pragma once

#include <cstdint>
#include <span>

#include "base/VLMMetaClass.h"
#include "base/VLMTie.h"
#include "modeler/VLMISpecObject.h"
#include "workbench/HVXUpgradeObserver.h"

/// \file
/// How an upgrade library describes itself: readable data that its dispatch runs on, that the version manager
/// asks which identifiers concern which late type, and that tools list.

/// What becomes of a routine's result.
enum class HVXOnFailure {
  kIgnore,  ///< Not looked at.
  kStop,    ///< A failure ends the upgrade of the feature with its code.
  kLast,    ///< Kept; the upgrade returns the result kept last.
  kSkip,    ///< A failure skips the remaining tests for the current identifier only.
  kFirst,   ///< The first match runs, ends the upgrade, and its result is returned.
};

/// How one identifier of the list is compared with a class's bindings.
enum class HVXMatching {
  kFirstMatch,  ///< The first binding that matches is run; the later ones are not tested.
  kSequential,  ///< Every binding is tested in turn, so two may fire for one identifier.
};

/// A migration routine, run on the extension of the feature to migrate.
using HVXRoutine = HRESULT (*)(VLMExtension& extension);

/// One row of a class's table. Rows stand in the order of comparison.
struct HVXUpgradeBinding {
  VLMUnicodeString identifier;
  const char* purpose;  ///< One sentence: what the routine does to a feature.
  HVXRoutine routine;
  HVXOnFailure onFailure;
  /// Why a failure that nobody looks at is no trouble: it means that there was nothing to do. Null where it
  /// means that the feature could not be migrated.
  const char* harmless = nullptr;
};

/// One upgrade class.
struct HVXUpgradeClass {
  const char* name;
  VLMInterfaceId interface;  ///< `HVXIUpgrade`, or `VLMISamUpgrade` for the binding of the host's upgrade.
  std::span<const char* const> lateTypes;  ///< The extended late types, in order.
  std::span<const HVXUpgradeBinding> bindings;
  VLMCreateTIE createTIE;
  HVXMatching matching = HVXMatching::kFirstMatch;
  HRESULT resultWithoutRun = S_OK;  ///< What an upgrade gives at its end, unless a `kLast` routine ran.
};

/// A routine on the whole document, handed the identifier's list and the document's features.
using HVXDocumentRoutine = HRESULT (*)(const VLMListValVLMUnicodeString& identifiers,
                                       const VLMListValVLMISpecObject_var& features);

/// A conversion of the whole document, run with a list that holds its identifier alone.
struct HVXDocumentUpgrade {
  VLMUnicodeString identifier;
  const char* purpose;
  HVXDocumentRoutine upgrade;
};

/// An order that must be kept also when only some upgrades are chosen: without it, values would be lost.
struct HVXUpgradeOrder {
  VLMUnicodeString first;  ///< Must have run ...
  VLMUnicodeString then;   ///< ... before this one.
  const char* reason;      ///< One sentence: what would be lost.
};

/// What an upgrade library offers.
struct HVXUpgradeLibrary {
  /// The layout of this description and of the interfaces that a library is built with. It stands first for
  /// ever, so that a library of another layout is told before anything else of it is read.
  std::uint64_t layout = kLayout;
  const char* name;
  const char* version;                            ///< Of the library, for people; reports tell it.
  std::span<const VLMUnicodeString> identifiers;  ///< All that it knows of, oldest first.
  std::span<const HVXUpgradeClass* const> classes;
  std::span<const HVXDocumentUpgrade> documentUpgrades;
  std::span<const HVXUpgradeOrder> orders;
  /// Gives the place where a version manager puts the observer of the library's dispatch, and null when it is
  /// done. Each thread has a place of its own. Null for a library that cannot be observed.
  HVXUpgradeObserver** (*observer)() = nullptr;

  /// Another number for every change of what a library and its host share: the revision, and the sizes of the
  /// tables.
  static constexpr std::uint64_t kLayout =
      (std::uint64_t{3} << 48U) | (std::uint64_t{sizeof(HVXUpgradeBinding)} << 32U) |
      (std::uint64_t{sizeof(HVXUpgradeClass)} << 16U) | std::uint64_t{sizeof(HVXDocumentUpgrade)};
};

/// The type of `HVXGetUpgradeLibrary`, which every upgrade library exports under C linkage. The description
/// lives until the library is unloaded.
using HVXGetUpgradeLibraryEntry = const HVXUpgradeLibrary* (*)();
