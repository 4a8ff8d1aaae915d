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

/// What a description was built with. It stands first in every description for ever, in this form, so that it
/// can be read of a library that shares nothing else with this program.
struct HVXUpgradeInterface {
  std::uint16_t documentUpgradeBytes;
  std::uint16_t classBytes;
  std::uint16_t bindingBytes;
  /// Another one for every change of what a library and its host share. Descriptions before number 4 have it
  /// in the same place, the top of their first 64 bits, and nothing of what follows here.
  std::uint16_t number;
  std::uint16_t orderBytes;
  std::uint16_t libraryBytes;
  std::uint32_t unused;  ///< 0.

  static constexpr std::uint16_t kNumber = 4;

  friend bool operator==(const HVXUpgradeInterface&, const HVXUpgradeInterface&) = default;
};

/// What an upgrade library offers.
struct HVXUpgradeLibrary {
  HVXUpgradeInterface builtFor = Interface();
  const char* name;     ///< Not empty. Documents record it, so it stays as it is from version to version.
  const char* version;  ///< Of the library, for people; reports and documents tell it.
  /// The names of the libraries that this one was written to be used with, though both extend a late type or
  /// answer to an identifier. They must be loaded, too. A feature of such a late type has the extensions of
  /// both; each is handed the identifiers of its own table, and one that both bind the continued library's
  /// first.
  std::span<const char* const> continues = {};
  std::span<const VLMUnicodeString> identifiers;  ///< All that it knows of, oldest first.
  std::span<const HVXUpgradeClass* const> classes;
  std::span<const HVXDocumentUpgrade> documentUpgrades;
  std::span<const HVXUpgradeOrder> orders;  ///< Each is about one of its own, at least.
  /// Gives the place where a version manager puts the observer of the library's dispatch, and null when it is
  /// done. Each thread has a place of its own. Null for a library that cannot be observed.
  HVXUpgradeObserver** (*observer)() = nullptr;

  /// That of these headers.
  static constexpr HVXUpgradeInterface Interface();
};

constexpr HVXUpgradeInterface HVXUpgradeLibrary::Interface() {
  return {.documentUpgradeBytes = sizeof(HVXDocumentUpgrade),
          .classBytes = sizeof(HVXUpgradeClass),
          .bindingBytes = sizeof(HVXUpgradeBinding),
          .number = HVXUpgradeInterface::kNumber,
          .orderBytes = sizeof(HVXUpgradeOrder),
          .libraryBytes = sizeof(HVXUpgradeLibrary),
          .unused = 0};
}

/// The type of `HVXGetUpgradeLibrary`, which every upgrade library exports under C linkage. The description
/// lives until the library is unloaded.
using HVXGetUpgradeLibraryEntry = const HVXUpgradeLibrary* (*)();
