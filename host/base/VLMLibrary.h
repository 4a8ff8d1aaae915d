#pragma once

#include <string>
#include <string_view>

#include "base/VLMMetaClass.h"

/// Makes a component and gives interface `id` of it, as `VLMBaseUnknown::QueryInterface` does.
using VLMCreateComponent = HRESULT (*)(const VLMInterfaceId& id, void** out);

/// One loaded library, as the host's registry sees it. A library holds one as a static object: what it
/// declares stands in the registry from its loading to its unloading, when the destructor takes out every
/// tie, component and meta-object of the library. No object that the library made may be alive then.
class VLMLibrary {
 public:
  explicit VLMLibrary(std::string_view name);
  ~VLMLibrary();
  VLMLibrary(const VLMLibrary&) = delete;
  VLMLibrary& operator=(const VLMLibrary&) = delete;

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

  /// Objects of `lateType`, and of late types derived from it, offer interface `id` through `create`. A late
  /// type offers one entry per interface: E_FAIL, and the first declaration counts for as long as it is
  /// there, when it already has one.
  HRESULT DeclareTie(VLMMetaClass& lateType, const VLMInterfaceId& id, VLMCreateTIE create);

  /// `VLMInstantiateComponent` makes component `name` through `create`. E_FAIL when the name is taken.
  HRESULT DeclareComponent(std::string_view name, VLMCreateComponent create);

 private:
  std::string name_;
};

/// Makes the component registered as `name` and gives its interface `id` in `*out`, counted once for the
/// caller. E_FAIL, with `*out` null, when no such component is registered; E_NOINTERFACE when it lacks the
/// interface.
HRESULT VLMInstantiateComponent(std::string_view name, const VLMInterfaceId& id, void** out);

/// The same into a handle, which is null on failure.
template <class Interface>
HRESULT VLMInstantiateComponent(std::string_view name, VLMHandle<Interface>& component) {
  void* made = nullptr;
  const HRESULT result = VLMInstantiateComponent(name, Interface::kId, &made);
  component = VLMHandle<Interface>::Adopt(Succeeded(result) ? static_cast<Interface*>(made) : nullptr);
  return result;
}
