#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/VLMLibrary.h"
#include "base/VLMMetaClass.h"

/// All that is registered in this process: meta-objects by name, ties by late type and interface, components
/// by name. One for the process, because libraries register while they are being loaded.
class VLMRegistry {
 public:
  struct Counts {
    std::size_t classes = 0;  ///< Meta-objects of classes; those of late types stay until the process ends.
    std::size_t ties = 0;
    std::size_t components = 0;

    friend bool operator==(const Counts&, const Counts&) = default;
  };

  static VLMRegistry& Instance();

  [[nodiscard]] VLMMetaClass* Find(std::string_view name) const;
  VLMMetaClass& LateType(std::string_view name, const VLMMetaClass* base);
  VLMMetaClass& Class(const VLMLibrary& owner, std::string_view name, VLMExtensionKind kind,
                      const VLMMetaClass* base, std::string_view extendedLateType,
                      std::string_view framework);

  static HRESULT DeclareTie(const VLMLibrary& owner, VLMMetaClass& lateType, const VLMInterfaceId& id,
                            VLMCreateTIE create);
  /// Of what several libraries declared for the late type and interface, `create` is the one that counts.
  static void Prefer(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create);
  /// Whether the late type has ties of its own, besides those that come from its base.
  [[nodiscard]] static bool HasTies(const VLMMetaClass& lateType) { return !lateType.ties_.empty(); }
  HRESULT DeclareComponent(const VLMLibrary& owner, std::string_view name, VLMCreateComponent create);
  HRESULT Instantiate(std::string_view name, const VLMInterfaceId& id, void** out) const;

  /// Changes whenever a look-up of a tie may have another outcome than before. Never 0.
  [[nodiscard]] static std::uint64_t StateOfTies() noexcept { return stateOfTies_; }

  /// Takes out everything that `owner` registered.
  void Withdraw(const VLMLibrary& owner);

  [[nodiscard]] Counts Count() const;

 private:
  struct Component {
    VLMCreateComponent create;
    const VLMLibrary* owner;
  };

  static inline std::uint64_t stateOfTies_ = 1;

  std::map<std::string, std::unique_ptr<VLMMetaClass>, std::less<>> metaClasses_;
  std::map<std::string, Component, std::less<>> components_;
};
