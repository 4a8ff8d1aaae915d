#pragma once

#include <cstdint>

#include "base/VLMBaseUnknown.h"

/// The base of extension classes: code that works on the object that it extends, and holds nothing else.
/// Every tie has an object of it of its own, so nothing that is kept in one would be found again: what lasts
/// belongs into the extended object.
class VLMExtension {
 public:
  explicit VLMExtension(VLMBaseUnknown_var extended) : extended_(std::move(extended)) {}
  VLMExtension(const VLMExtension&) = delete;
  VLMExtension& operator=(const VLMExtension&) = delete;

 protected:
  ~VLMExtension() = default;

  /// The extended object; cast it by making a handle from it.
  [[nodiscard]] const VLMBaseUnknown_var& Extended() const noexcept { return extended_; }

 private:
  VLMBaseUnknown_var extended_;
};

/// The part that all ties share: one interface of an extended object, served by an extension that lives in
/// the tie. A tie of an interface derives from this and forwards each operation to `Implementation()`.
template <class Interface, class Extension>
class VLMTie : public Interface {
 public:
  using TiedInterface = Interface;

  explicit VLMTie(VLMBaseUnknown& extended) : object_(&extended), extension_(object_) {}

  void AddRef() noexcept final { ++references_; }
  void Release() noexcept final {
    if (--references_ == 0) delete this;
  }
  HRESULT QueryInterface(const VLMInterfaceId& id, void** out) final {
    if (!(id == Interface::kId)) return object_->QueryInterface(id, out);
    AddRef();
    *out = static_cast<Interface*>(this);
    return S_OK;
  }
  [[nodiscard]] const void* Identity() const noexcept final { return object_.Get()->Identity(); }

 protected:
  ~VLMTie() override = default;
  [[nodiscard]] Extension& Implementation() noexcept { return extension_; }

 private:
  std::uint32_t references_ = 1;  // the creator's
  VLMBaseUnknown_var object_;
  Extension extension_;
};

/// Makes the tie `Tie` for `extended`: what an exported `CreateTIE` entry returns.
template <class Tie>
[[nodiscard]] void* VLMMakeTie(VLMBaseUnknown& extended) {
  typename Tie::TiedInterface* const tie = new Tie(extended);
  return tie;
}
