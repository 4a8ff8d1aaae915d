// The interfaces that every feature offers, beside its own (adapters/SpecObject.cpp).

#include <concepts>

#include "adapters/HostLibrary.h"
#include "base/VLMIModelEvents.h"
#include "modeler/VLMIAlias.h"
#include "modeler/VLMIContainer.h"
#include "modeler/VLMILinkableObject.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "session/Session.h"

namespace standalone {
namespace {

class AttributeAdapter final : public FeatureAdapter<VLMISpecAttribute> {
 public:
  AttributeAdapter(Feature& feature, NameId key) : FeatureAdapter(feature), key_(key) {}

  VLMUnicodeString GetName() override {
    return Self().removed ? VLMUnicodeString() : VLMUnicodeString(NameTable::Text(key_));
  }

  VLMAttributeType GetType() override {
    const Attribute* const attribute = Doc().FindAttribute(Self(), key_);
    return attribute == nullptr ? VLMAttributeType::kLink
                                : static_cast<VLMAttributeType>(attribute->value.Kind());
  }

 private:
  NameId key_;
};
static_assert(static_cast<int>(VLMAttributeType::kList) == static_cast<int>(ValueKind::kList) &&
              static_cast<int>(VLMAttributeType::kString) == static_cast<int>(ValueKind::kString));

class AttrAccessAdapter final : public FeatureAdapter<VLMISpecAttrAccess> {
 public:
  using FeatureAdapter::FeatureAdapter;

  VLMSpecAttrKey GetAttrKey(const VLMString& name) override {
    if (Failed(Enter("VLMISpecAttrAccess::GetAttrKey", name.View()))) return {};
    const NameId key = NameTable::Find(name.View());
    return key == kNoName || Doc().FindAttribute(Self(), key) == nullptr ? VLMSpecAttrKey()
                                                                         : VLMSpecAttrKey(key);
  }

  HRESULT AddAttribute(const VLMString& name, VLMAttributeType type, VLMSpecAttrKey& key) override {
    key = {};
    if (const HRESULT entered = Enter("VLMISpecAttrAccess::AddAttribute", name.View()); Failed(entered)) {
      return entered;
    }
    if (name.IsNull()) return E_FAIL;
    key = VLMSpecAttrKey(Doc().NameFor(name.View()));
    if (Doc().FindAttribute(Self(), key.Name()) == nullptr)
      Doc().SetAttribute(Self(), key.Name(), EmptyValue(type));
    return S_OK;
  }

  VLMISpecAttribute_var GetAttribute(VLMSpecAttrKey key) override {
    if (Failed(EnterKey("VLMISpecAttrAccess::GetAttribute", key))) return {};
    if (Doc().FindAttribute(Self(), key.Name()) == nullptr) return {};
    return VLMISpecAttribute_var::Adopt(new AttributeAdapter(Self(), key.Name()));
  }

  HRESULT RemoveAttribute(VLMSpecAttrKey key) override {
    if (const HRESULT entered = EnterKey("VLMISpecAttrAccess::RemoveAttribute", key); Failed(entered))
      return entered;
    if (Doc().FindAttribute(Self(), key.Name()) == nullptr) return E_FAIL;
    Doc().RemoveAttribute(Self(), key.Name());
    return S_OK;
  }

  HRESULT GetString(VLMSpecAttrKey key, VLMUnicodeString& value) override {
    return Get("VLMISpecAttrAccess::GetString", key, value);
  }
  HRESULT SetString(VLMSpecAttrKey key, const VLMUnicodeString& value) override {
    return Set("VLMISpecAttrAccess::SetString", key, value);
  }
  HRESULT GetInteger(VLMSpecAttrKey key, std::int64_t& value) override {
    return Get("VLMISpecAttrAccess::GetInteger", key, value);
  }
  HRESULT SetInteger(VLMSpecAttrKey key, std::int64_t value) override {
    return Set("VLMISpecAttrAccess::SetInteger", key, value);
  }
  HRESULT GetReal(VLMSpecAttrKey key, double& value) override {
    return Get("VLMISpecAttrAccess::GetReal", key, value);
  }
  HRESULT SetReal(VLMSpecAttrKey key, double value) override {
    return Set("VLMISpecAttrAccess::SetReal", key, value);
  }
  HRESULT GetBoolean(VLMSpecAttrKey key, bool& value) override {
    return Get("VLMISpecAttrAccess::GetBoolean", key, value);
  }
  HRESULT SetBoolean(VLMSpecAttrKey key, bool value) override {
    return Set("VLMISpecAttrAccess::SetBoolean", key, value);
  }
  HRESULT GetRealList(VLMSpecAttrKey key, std::vector<double>& values) override {
    return Get("VLMISpecAttrAccess::GetRealList", key, values);
  }
  HRESULT SetRealList(VLMSpecAttrKey key, const std::vector<double>& values) override {
    return Set("VLMISpecAttrAccess::SetRealList", key, values);
  }

  int GetListSize(VLMSpecAttrKey key) override {
    if (Failed(EnterKey("VLMISpecAttrAccess::GetListSize", key))) return 0;
    return static_cast<int>(CountEntries(Self(), Key(key.Name())));
  }

  VLMISpecObject_var GetObject(VLMSpecAttrKey key, int position) override {
    if (Failed(EnterKey("VLMISpecAttrAccess::GetObject", key))) return {};
    if (position < 0) return {};
    if (position == 0) return HandleOn<VLMISpecObject>(LinkedFeature(Self(), Key(key.Name())));
    const Value* const entry = EntryAt(Self(), Key(key.Name()), static_cast<std::size_t>(position));
    return entry != nullptr && entry->Kind() == ValueKind::kLink ? HandleOn<VLMISpecObject>(entry->Target())
                                                                 : VLMISpecObject_var();
  }

  HRESULT StoreObject(VLMSpecAttrKey key, const VLMBaseUnknown_var& object, int index) override {
    if (const HRESULT entered = EnterKey("VLMISpecAttrAccess::StoreObject", key); Failed(entered))
      return entered;
    Feature* const target = FeatureOf(object);
    const Attribute* const attribute = Doc().FindAttribute(Self(), key.Name());
    if (attribute == nullptr || target == nullptr || target->document != &Doc() || target->removed)
      return E_FAIL;
    if (attribute->value.Kind() != ValueKind::kList) {
      if (attribute->value.Kind() != ValueKind::kLink || index != 0) return E_FAIL;
      Doc().SetAttribute(Self(), key.Name(), Value::Link(target));
      return S_OK;
    }
    if (index == 0) {
      Doc().AppendToList(Self(), key.Name(), Value::Link(target));
      return S_OK;
    }
    const std::span<Value> entries = attribute->value.Entries();
    if (index < 0 || static_cast<std::size_t>(index) > entries.size()) return E_FAIL;
    const std::span<Value> changed = Doc().Keep(std::span<const Value>(entries));
    changed[static_cast<std::size_t>(index) - 1] = Value::Link(target);
    Doc().SetAttribute(Self(), key.Name(), Value::List(changed));
    return S_OK;
  }

  int GetMode(VLMSpecAttrKey key) override {
    if (Failed(EnterKey("VLMISpecAttrAccess::GetMode", key))) return 0;
    const Attribute* const attribute = Doc().FindAttribute(Self(), key.Name());
    return attribute == nullptr ? 0 : attribute->mode;
  }

  HRESULT SetMode(VLMSpecAttrKey key, int mode) override {
    if (const HRESULT entered = EnterKey("VLMISpecAttrAccess::SetMode", key); Failed(entered)) return entered;
    if (Doc().FindAttribute(Self(), key.Name()) == nullptr) return E_FAIL;
    Doc().SetAttributeMode(Self(), key.Name(), mode);
    return S_OK;
  }

 private:
  HRESULT EnterKey(std::string_view operation, VLMSpecAttrKey key) const {
    if (const HRESULT entered = Enter(operation, NameTable::Text(key.Name())); Failed(entered))
      return entered;
    return key.IsNull() ? E_FAIL : S_OK;
  }

  template <class T>
  HRESULT Get(std::string_view operation, VLMSpecAttrKey key, T& value) const {
    if (const HRESULT entered = EnterKey(operation, key); Failed(entered)) return entered;
    const bool asReal = std::same_as<T, double> && Holds(key, ValueKind::kInteger);
    return Holds(key, KindOf<T>()) || asReal ? ReadAttribute(Self(), Key(key.Name()), value) : E_FAIL;
  }

  // A value replaces one of its own type only: what an attribute is, is its late type's business.
  template <class T>
  HRESULT Set(std::string_view operation, VLMSpecAttrKey key, const T& value) const {
    if (const HRESULT entered = EnterKey(operation, key); Failed(entered)) return entered;
    return Holds(key, KindOf<T>()) ? ReplaceAttribute(Self(), Key(key.Name()), value) : E_FAIL;
  }

  template <class T>
  static constexpr ValueKind KindOf() {
    if constexpr (std::same_as<T, VLMUnicodeString>) return ValueKind::kString;
    if constexpr (std::same_as<T, std::int64_t>) return ValueKind::kInteger;
    if constexpr (std::same_as<T, double>) return ValueKind::kReal;
    if constexpr (std::same_as<T, bool>) return ValueKind::kBoolean;
    if constexpr (std::same_as<T, std::vector<double>>) return ValueKind::kList;
  }
  [[nodiscard]] bool Holds(VLMSpecAttrKey key, ValueKind wanted) const {
    const Attribute* const attribute = Doc().FindAttribute(Self(), key.Name());
    return attribute != nullptr && attribute->value.Kind() == wanted;
  }

  static Value EmptyValue(VLMAttributeType type) {
    switch (type) {
      case VLMAttributeType::kString:
        return Value::String({});
      case VLMAttributeType::kInteger:
        return Value::Integer(0);
      case VLMAttributeType::kReal:
        return Value::Real(0.0);
      case VLMAttributeType::kBoolean:
        return Value::Boolean(false);
      case VLMAttributeType::kLink:
        return Value::Link(nullptr);
      case VLMAttributeType::kList:
        return Value::List({});
    }
    return {};
  }
};

class AliasAdapter final : public FeatureAdapter<VLMIAlias> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetExternalName(VLMUnicodeString& name) override {
    if (const HRESULT entered = Enter("VLMIAlias::GetExternalName"); Failed(entered)) return entered;
    name = Self().externalName;
    return S_OK;
  }

  HRESULT SetExternalName(const VLMUnicodeString& name) override {
    if (const HRESULT entered = Enter("VLMIAlias::SetExternalName", name.View()); Failed(entered))
      return entered;
    Doc().SetExternalName(Self(), name.View());
    return S_OK;
  }
};

class LinkableObjectAdapter final : public FeatureAdapter<VLMILinkableObject> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetDocument(VLMDocument_var& document) override {
    document = NULL_var;
    if (const HRESULT entered = Enter("VLMILinkableObject::GetDocument"); Failed(entered)) return entered;
    document = VLMDocument_var(&Doc());
    return S_OK;
  }
};

class ModelEventsAdapter final : public FeatureAdapter<VLMIModelEvents> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT Dispatch(const VLMModify& notice) override {
    if (const HRESULT entered = Enter("VLMIModelEvents::Dispatch", notice.Changed().Name());
        Failed(entered)) {
      return entered;
    }
    Session::Current().NoteModified(Self());
    return S_OK;
  }
};

}  // namespace

void BindFeatureAdapters(VLMLibrary& host) {
  Bind<AttrAccessAdapter>(host, {kind::kFeature});
  Bind<AliasAdapter>(host, {kind::kFeature});
  Bind<LinkableObjectAdapter>(host, {kind::kFeature});
  Bind<ModelEventsAdapter>(host, {kind::kFeature});
}

}  // namespace standalone
