#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

#include "base/VLMLibrary.h"
#include "base/VLMMetaClass.h"

/// All that is registered in this process: meta-objects by name, ties by late type and interface, components
/// by name. One for the process, because libraries register while they are being loaded. Any thread may ask
/// and register at any time.
class VLMRegistry {
 public:
  struct Counts {
    std::size_t classes = 0;  ///< Meta-objects of classes, without those of late types.
    std::size_t ties = 0;
    std::size_t components = 0;

    friend bool operator==(const Counts&, const Counts&) = default;
  };

  static VLMRegistry& Instance();

  [[nodiscard]] VLMMetaClass* Find(std::string_view name) const;
  VLMMetaClass& LateType(std::string_view name, const VLMMetaClass* base);
  /// The same for a late type that a document names. Unless somebody else names it, too, it is there until
  /// `ForgetLateType`, which whoever asked for it calls once.
  VLMMetaClass& LateTypeOfDocument(std::string_view name, const VLMMetaClass* base);
  void ForgetLateType(std::string_view name);
  VLMMetaClass& Class(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                      const VLMMetaClass* base, std::string_view extendedLateType,
                      std::string_view framework);
  void SetExtensionOf(VLMMetaClass& extension, VLMMetaClass& lateType);
  [[nodiscard]] std::vector<const VLMMetaClass*> ExtendedBy(const VLMMetaClass& extension) const;
  [[nodiscard]] std::vector<const VLMMetaClass*> ExtensionsOf(const VLMMetaClass& lateType) const;

  HRESULT DeclareTie(const VLMLibrary& owner, VLMMetaClass& lateType, const VLMInterfaceId& id,
                     VLMCreateTIE create);
  /// Of what several libraries declared for the late type and interface, `create` is the one that counts.
  void Prefer(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create);
  /// Whether the late type has ties of its own, besides those that come from its base.
  [[nodiscard]] bool HasTies(const VLMMetaClass& lateType) const;
  [[nodiscard]] static VLMCreateTIE FindTie(const VLMMetaClass& lateType, const VLMInterfaceId& id);
  HRESULT DeclareComponent(const VLMLibrary& owner, std::string_view name, VLMCreateComponent create);
  HRESULT Instantiate(std::string_view name, const VLMInterfaceId& id, void** out) const;

  /// Takes out everything that `owner` registered.
  void Withdraw(const VLMLibrary& owner);

  [[nodiscard]] Counts Count() const;

 private:
  struct Component {
    VLMCreateComponent create;
    const VLMLibrary* owner;
  };

  // Of these, the caller holds the mutex.
  [[nodiscard]] VLMMetaClass* Known(std::string_view name) const;
  VLMMetaClass& Make(std::string_view name, VLMExtensionKind kind, const VLMMetaClass* base,
                     std::string_view framework, const VLMLibrary* owner);
  VLMMetaClass& KnownOrMade(std::string_view name, const VLMMetaClass* base, bool isOfDocuments);
  static void Extend(VLMMetaClass& extension, VLMMetaClass& lateType);
  /// Takes the mutex itself.
  [[nodiscard]] VLMCreateTIE LookUpTie(const VLMMetaClass& lateType, std::uint64_t interfaceValue) const;

  // Nothing of a library is called while it is held: that could ask the registry itself.
  mutable std::shared_mutex mutex_;
  std::map<std::string, std::unique_ptr<VLMMetaClass>, std::less<>> metaClasses_;
  std::map<std::string, Component, std::less<>> components_;
  std::uint64_t lastNumber_ = 0;
  // Changes whenever a look-up of a tie may have another outcome than before. Never 0.
  static inline constinit std::atomic<std::uint64_t> stateOfTies_ = 1;
};
