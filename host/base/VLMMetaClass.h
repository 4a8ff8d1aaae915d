#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/VLMBaseUnknown.h"

class VLMLibrary;
class VLMMetaClass;

/// How a class stands to the late types that it is declared for.
enum class VLMExtensionKind : int {
  kLateType =
      0,  ///< Not an extension: the meta-object of a late type, or of a kind that late types derive from.
  kImplementation = 1,  ///< A component of its own, instantiated by name.
  kCodeExtension = 2,   ///< Extends late types and holds nothing.
  kDataExtension = 3,   ///< Extends late types; made for one extended object, anew for every tie.
};

/// Makes the object that offers one interface of `extended`: a tie that forwards to an extension, or an
/// adapter. Gives a pointer to the interface class, counted once for the caller; null when it cannot be made.
using VLMCreateTIE = void* (*)(VLMBaseUnknown& extended);

/// The run-time description of a class or late type. Meta-objects live in the host's registry: a class's
/// until its library is unloaded, a late type's until the process ends; that of a late type which nobody but
/// documents ever named, until the last of these is closed. Threads share them.
class VLMMetaClass {
 public:
  /// The meta-object of class `name`; created by the first call (with `base`, the first late type that it
  /// extends and its framework), found by later ones, which leave it as it is. `owner` is the library that
  /// holds the class.
  static VLMMetaClass& Retrieve(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                                const VLMMetaClass* base, std::string_view extendedLateType,
                                std::string_view framework);

  /// The meta-object of late type `name`; created, derived from `base`, by the first call.
  static VLMMetaClass& LateType(std::string_view name, const VLMMetaClass* base = nullptr);

  /// The meta-object of that name; null when there is none.
  [[nodiscard]] static VLMMetaClass* Find(std::string_view name);

  /// The meta-object of `VLMBaseUnknown`, the root of all.
  [[nodiscard]] static const VLMMetaClass& BaseUnknown();

  VLMMetaClass(const VLMMetaClass&) = delete;
  VLMMetaClass& operator=(const VLMMetaClass&) = delete;

  /// Declares that this class extends `lateType` too. Declaring it twice changes nothing.
  void SetExtensionOf(VLMMetaClass& lateType);

  /// True when this is the class `name` or derives from it.
  [[nodiscard]] bool IsAKindOf(std::string_view name) const noexcept;

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }
  [[nodiscard]] VLMExtensionKind Kind() const noexcept { return kind_; }
  [[nodiscard]] const VLMMetaClass* Base() const noexcept { return base_.load(std::memory_order_acquire); }
  [[nodiscard]] const std::string& Framework() const noexcept { return framework_; }
  /// The late types that this class extends, in the order of declaration.
  [[nodiscard]] std::vector<const VLMMetaClass*> ExtendedLateTypes() const;
  /// The classes that extend this late type, in the order of declaration.
  [[nodiscard]] std::vector<const VLMMetaClass*> Extensions() const;

  /// The entry that makes interface `id` for objects of this late type: its own, else its base's; null
  /// without one.
  [[nodiscard]] VLMCreateTIE FindTie(const VLMInterfaceId& id) const;

 private:
  friend class VLMRegistry;  // the host's own
  struct TieEntry {
    std::uint64_t interfaceValue;
    VLMCreateTIE create;
    const VLMLibrary* owner;
  };

  VLMMetaClass(std::string_view name, VLMExtensionKind kind, const VLMMetaClass* base,
               std::string_view framework, const VLMLibrary* owner, std::uint64_t number)
      : name_(name), kind_(kind), base_(base), framework_(framework), owner_(owner), number_(number) {}

  std::string name_;
  VLMExtensionKind kind_;
  std::atomic<const VLMMetaClass*> base_;  // may be told later than the name
  std::string framework_;
  const VLMLibrary* owner_;  // null for late types
  std::uint64_t number_;     // never given twice, as an address is

  // What the registry's mutex guards.
  bool isOfDocuments_ = false;  // nobody else named the late type
  std::vector<const VLMMetaClass*> extended_;
  std::vector<const VLMMetaClass*> extensions_;
  std::vector<TieEntry> ties_;
};
