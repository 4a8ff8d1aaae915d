#pragma once

#include "base/VLMLibrary.h"

namespace standalone {

/// The base of components: objects that are made by name and stand for no feature.
template <class Interface>
class Component : public Interface {
 public:
  void AddRef() noexcept final { ++references_; }
  void Release() noexcept final {
    if (--references_ == 0) delete this;
  }
  HRESULT QueryInterface(const VLMInterfaceId& id, void** out) final {
    *out = nullptr;
    if (!(id == Interface::kId || id == VLMBaseUnknown::kId)) return E_NOINTERFACE;
    AddRef();
    *out = static_cast<Interface*>(this);
    return S_OK;
  }
  [[nodiscard]] const void* Identity() const noexcept final { return this; }

 protected:
  ~Component() override = default;

 private:
  std::uint32_t references_ = 1;  // the creator's
};

/// Makes a `Made` and gives interface `id` of it; what components are registered with.
template <class Made>
HRESULT CreateComponentOf(const VLMInterfaceId& id, void** out) {
  auto* const made = new Made;
  const HRESULT result = made->QueryInterface(id, out);
  made->Release();
  return result;
}

// One per source file of components; called once, when the host is loaded.
void DeclareContactFactory(VLMLibrary& host);
void DeclarePropagationFactory(VLMLibrary& host);

}  // namespace standalone
