#pragma once

#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/VLMListVal.h"
#include "base/VLMResult.h"

/// Names an interface. Two ids are equal when their names are; the hash makes that one comparison of
/// integers.
class VLMInterfaceId {
 public:
  constexpr explicit VLMInterfaceId(std::string_view name) noexcept : name_(name), hash_(Hash(name)) {}

  [[nodiscard]] constexpr std::string_view Name() const noexcept { return name_; }
  [[nodiscard]] constexpr std::uint64_t Value() const noexcept { return hash_; }

  friend constexpr bool operator==(const VLMInterfaceId& left, const VLMInterfaceId& right) noexcept {
    return left.hash_ == right.hash_;
  }

 private:
  static constexpr std::uint64_t Hash(std::string_view text) noexcept {  // FNV-1a
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return hash;
  }

  std::string_view name_;
  std::uint64_t hash_;
};

/// The root of every interface. Objects are reference-counted; handles count, so that nobody releases by
/// hand.
class VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMBaseUnknown"};

  VLMBaseUnknown() = default;
  VLMBaseUnknown(const VLMBaseUnknown&) = delete;
  VLMBaseUnknown& operator=(const VLMBaseUnknown&) = delete;

  virtual void AddRef() noexcept = 0;
  virtual void Release() noexcept = 0;

  /// Asks the object for an interface. On success `*out` is that interface (a pointer to the interface class
  /// `id` names), counted once for the caller. E_NOINTERFACE, with `*out` null, when the object does not
  /// offer it.
  virtual HRESULT QueryInterface(const VLMInterfaceId& id, void** out) = 0;

  /// The same for every interface of one object, and different for different objects.
  [[nodiscard]] virtual const void* Identity() const noexcept = 0;

 protected:
  virtual ~VLMBaseUnknown() = default;
};

/// What a call through a null handle throws.
class VLMNullVarError : public std::logic_error {
 public:
  VLMNullVarError() : std::logic_error("call through a null handle") {}
};
[[noreturn]] void VLMThrowErrorNullVar();

/// The null handle, to compare with and to assign from.
struct VLMNullVar {};
inline constexpr VLMNullVar NULL_var{};

/// A counted handle on one interface of an object; made from anything of another interface, it asks the
/// object for `Interface` and is null when the object does not offer it.
template <class Interface>
class VLMHandle {
 public:
  using InterfaceType = Interface;

  VLMHandle() noexcept = default;
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMHandle(VLMNullVar /*null*/) noexcept {}
  VLMHandle(const VLMHandle& other) noexcept : object_(other.object_) { Count(); }
  VLMHandle(VLMHandle&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

  /// The cast. Shares `object` when its type already is `Interface`, and asks it otherwise. Null gives null.
  template <std::derived_from<VLMBaseUnknown> Other>
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMHandle(Other* object) {
    if constexpr (std::derived_from<Other, Interface>) {
      object_ = object;
      Count();
    } else if (object != nullptr) {
      void* found = nullptr;
      if (Succeeded(object->QueryInterface(Interface::kId, &found))) object_ = static_cast<Interface*>(found);
    }
  }
  template <class Other>
  // NOLINTNEXTLINE(google-explicit-constructor)
  requires(!std::same_as<Other, Interface>) VLMHandle(const VLMHandle<Other>& other)
      : VLMHandle(other.Get()) {}

  VLMHandle& operator=(VLMHandle other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~VLMHandle() {
    if (object_ != nullptr) object_->Release();
  }

  /// Takes over a reference that the caller already holds.
  [[nodiscard]] static VLMHandle Adopt(Interface* object) noexcept {
    VLMHandle handle;
    handle.object_ = object;
    return handle;
  }

  /// A call through a null handle raises the host's null-handle error.
  Interface* operator->() const {
    if (object_ == nullptr) ThrowErrorNullVar();
    return object_;
  }
  [[nodiscard]] Interface* Get() const noexcept { return object_; }

  /// Raises the host's null-handle error, `VLMNullVarError`.
  [[noreturn]] static void ThrowErrorNullVar() { VLMThrowErrorNullVar(); }

  friend bool operator==(const VLMHandle& handle, VLMNullVar /*null*/) noexcept {
    return handle.object_ == nullptr;
  }

 private:
  void Count() noexcept {
    if (object_ != nullptr) object_->AddRef();
  }

  Interface* object_ = nullptr;
};

/// True when both handles denote the same object, whatever interfaces they hold; two null handles are equal.
template <class Left, class Right>
[[nodiscard]] bool operator==(const VLMHandle<Left>& left, const VLMHandle<Right>& right) noexcept {
  if (left.Get() == nullptr || right.Get() == nullptr) return left.Get() == nullptr && right.Get() == nullptr;
  return left.Get()->Identity() == right.Get()->Identity();
}

using VLMBaseUnknown_var = VLMHandle<VLMBaseUnknown>;
using VLMListValVLMBaseUnknown_var = VLMListVal<VLMBaseUnknown_var>;
