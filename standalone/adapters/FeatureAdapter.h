#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "adapters/AdapterMemory.h"
#include "adapters/Attributes.h"
#include "checkpoint/Checkpoint.h"
#include "model/Document.h"

namespace standalone {

/// Whether the feature offers interface `id`.
bool Offers(Feature& feature, const VLMInterfaceId& id);

/// The feature that an object of this host stands for; null for anything else, null included.
Feature* FeatureOf(VLMBaseUnknown* object);
template <class Interface>
Feature* FeatureOf(const VLMHandle<Interface>& handle) {
  return FeatureOf(static_cast<VLMBaseUnknown*>(handle.Get()));
}

/// A handle on a feature; null for no feature, or when the feature does not offer the interface.
template <class Interface>
VLMHandle<Interface> HandleOn(Feature* feature) {
  if constexpr (std::is_base_of_v<Interface, VLMISpecObject>) {  // what a feature is itself
    if (feature == nullptr || Checkpoint::Withholds(Interface::kId, *feature)) return {};
    feature->AddRef();
    return VLMHandle<Interface>::Adopt(feature);
  } else {
    void* found = nullptr;
    if (feature != nullptr) static_cast<void>(feature->QueryInterface(Interface::kId, &found));
    return VLMHandle<Interface>::Adopt(static_cast<Interface*>(found));
  }
}

/// Passes the checkpoint with an operation of the feature. E_FAIL when that was removed before.
inline HRESULT EnterOn(const Feature& feature, std::string_view operation, std::string_view detail = {},
                       int option = 0) {
  const bool wasRemoved = feature.removed;
  const HRESULT passed = Checkpoint::Pass(operation, &feature, detail, option);
  return wasRemoved && !Failed(passed) ? E_FAIL : passed;
}

/// The base of every adapter: one interface of one feature. An adapter holds no state; it reads and writes
/// the feature.
template <class Interface>
class FeatureAdapter : public Interface {
 public:
  using AdaptedInterface = Interface;

  explicit FeatureAdapter(Feature& feature) : feature_(feature) { feature.AddRef(); }
  static void* operator new(std::size_t bytes) { return AdapterMemory::Take(bytes); }
  static void operator delete(void* memory, std::size_t bytes) noexcept {
    AdapterMemory::GiveBack(memory, bytes);
  }

  void AddRef() noexcept final { ++references_; }
  void Release() noexcept final {
    if (--references_ == 0) delete this;
  }
  HRESULT QueryInterface(const VLMInterfaceId& id, void** out) final {
    return feature_.QueryInterface(id, out);
  }
  [[nodiscard]] const void* Identity() const noexcept final { return &feature_; }

 protected:
  ~FeatureAdapter() override { feature_.Release(); }

  [[nodiscard]] Document& Doc() const { return *feature_.document; }
  [[nodiscard]] Feature& Self() const { return feature_; }

  /// Passes the checkpoint with an operation of this feature. `operation` is the interface's name, "::" and
  /// its own. E_FAIL when the feature was removed: a handle outlives what it is on.
  HRESULT Enter(std::string_view operation, std::string_view detail = {}, int option = 0) const {
    return EnterOn(feature_, operation, detail, option);
  }

  /// An operation that reads one attribute. E_FAIL, and `value` stays, when the feature lacks it or holds
  /// another type of value there.
  template <class T>
  HRESULT Read(std::string_view operation, const Key& key, T& value) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    return ReadAttribute(feature_, key, value);
  }
  /// The same; gives `missing` when the feature lacks the attribute.
  template <class T>
  HRESULT ReadOr(std::string_view operation, const Key& key, T& value, const T& missing) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    if (Doc().FindAttribute(feature_, key.Id()) != nullptr) return ReadAttribute(feature_, key, value);
    value = missing;
    return S_OK;
  }
  /// An operation that writes one attribute, adding it where the feature lacks it. E_FAIL, and the value
  /// stays, where one stands that cannot be read as a T.
  template <class T>
  HRESULT Write(std::string_view operation, const Key& key, const T& value) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    return ReplaceAttribute(feature_, key, value);
  }
  /// An operation that gives the object that a link attribute holds: null, with S_OK, when it holds none or
  /// is missing.
  template <class Handle>
  HRESULT ReadLink(std::string_view operation, const Key& key, Handle& object) const {
    object = NULL_var;
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    object = HandleOn<typename Handle::InterfaceType>(LinkedFeature(feature_, key));
    return S_OK;
  }

  /// An operation that stores a link. E_FAIL, and the value stays, for a null object, one of another document
  /// or one that was removed, and where what stands there is no link.
  template <class Handle>
  HRESULT StoreLink(std::string_view operation, const Key& key, const Handle& object) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    Feature* const target = FeatureOf(object);
    return CanBeLinked(target) ? ReplaceLink(feature_, key, target) : E_FAIL;
  }
  /// An operation that gives the objects that a list attribute holds links to, null for an entry that holds
  /// nothing; empty, with S_OK, without the attribute.
  HRESULT ReadLinkList(std::string_view operation, const Key& key, VLMListValVLMBaseUnknown_var& objects,
                       int option = 0) const {
    objects.RemoveAll();
    if (const HRESULT entered = Enter(operation, key.Text(), option); Failed(entered)) return entered;
    for (Feature* const target : LinkEntries(feature_, key)) {
      objects.Append(HandleOn<VLMBaseUnknown>(target));
    }
    return S_OK;
  }
  /// An operation that stores a whole list of links; a null object becomes an entry that holds nothing.
  /// E_FAIL, and the value stays, when one of the others cannot be linked, and where what stands there is no
  /// list.
  HRESULT StoreLinkList(std::string_view operation, const Key& key,
                        const VLMListValVLMBaseUnknown_var& objects) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    if (!CanHoldList(feature_, key)) return E_FAIL;
    std::vector<Feature*> targets;
    for (const VLMBaseUnknown_var& object : objects) {
      targets.push_back(FeatureOf(object));
      if (!(object == NULL_var) && !CanBeLinked(targets.back())) return E_FAIL;
    }
    WriteLinks(feature_, key, targets);
    return S_OK;
  }

  /// Whether a feature of this document may link to `target`.
  [[nodiscard]] bool CanBeLinked(const Feature* target) const {
    return target != nullptr && !target->removed && target->document == &Doc();
  }

 private:
  std::uint32_t references_ = 1;  // the creator's
  Feature& feature_;
};

/// Makes an adapter for the feature behind `extended`; what adapters are registered with.
template <class Adapter>
void* MakeAdapter(VLMBaseUnknown& extended) {
  typename Adapter::AdaptedInterface* const adapter = new Adapter(*FeatureOf(&extended));
  return adapter;
}

}  // namespace standalone
