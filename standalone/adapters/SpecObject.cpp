// What a feature does as its own `VLMISpecObject`.

#include <algorithm>

#include "adapters/FeatureAdapter.h"
#include "base/VLMMetaClass.h"
#include "modeler/VLMIContainer.h"

namespace standalone {
namespace {

const Key kSonsList("SonsList");
const Key kNotReadyIn("NotReadyIn");

// Asked of an object to learn which feature it stands for. Private to this host: gives the `Feature`,
// uncounted.
constexpr VLMInterfaceId kFeatureItself{"standalone::Feature"};

}  // namespace

Feature* FeatureOf(VLMBaseUnknown* object) {
  void* feature = nullptr;
  if (object != nullptr) static_cast<void>(object->QueryInterface(kFeatureItself, &feature));
  return static_cast<Feature*>(feature);
}

bool Offers(Feature& feature, const VLMInterfaceId& id) {
  void* found = nullptr;
  if (Failed(feature.QueryInterface(id, &found))) return false;
  static_cast<VLMBaseUnknown*>(found)->Release();
  return true;
}

// The feature's memory lives as long as its document, which its handles therefore hold.
void Feature::AddRef() noexcept {
  document->AddRef();
}

void Feature::Release() noexcept {
  document->Release();
}

HRESULT Feature::QueryInterface(const VLMInterfaceId& interface, void** out) {
  *out = nullptr;
  if (interface == kFeatureItself) {
    *out = this;
    return S_OK;
  }
  if (Checkpoint::Withholds(interface, *this)) return E_NOINTERFACE;
  if (interface == VLMISpecObject::kId || interface == VLMBaseUnknown::kId) {
    AddRef();
    VLMISpecObject* const self = this;  // the one base of both
    *out = self;
    return S_OK;
  }
  const VLMCreateTIE create = type->MetaClass().FindTie(interface);
  if (create != nullptr) *out = create(*this);
  return *out != nullptr ? S_OK : E_NOINTERFACE;
}

VLMUnicodeString Feature::GetLateType() {
  if (Failed(EnterOn(*this, "VLMISpecObject::GetLateType"))) return {};
  return type->Text();
}

VLMUnicodeString Feature::GetName() {
  if (Failed(EnterOn(*this, "VLMISpecObject::GetName"))) return {};
  return name;
}

HRESULT Feature::SetUpToDate(int flag) {
  if (const HRESULT entered = EnterOn(*this, "VLMISpecObject::SetUpToDate"); Failed(entered)) return entered;
  document->SetUpToDate(*this, flag != 0);
  return S_OK;
}

HRESULT Feature::GetFather(VLMISpecObject_var& found) {
  found = NULL_var;
  if (const HRESULT entered = EnterOn(*this, "VLMISpecObject::GetFather"); Failed(entered)) return entered;
  found = HandleOn<VLMISpecObject>(father);
  return found == NULL_var ? E_FAIL : S_OK;
}

HRESULT Feature::GetContainer(VLMIContainer_var& found) {
  found = NULL_var;
  if (const HRESULT entered = EnterOn(*this, "VLMISpecObject::GetContainer"); Failed(entered)) return entered;
  found = HandleOn<VLMIContainer>(Container());
  return found == NULL_var ? E_FAIL : S_OK;
}

HRESULT Feature::RemoveSon(const VLMISpecObject_var& son, int option) {
  Feature* const feature = FeatureOf(son);
  const std::string_view sonName = feature == nullptr ? std::string_view() : feature->name;
  if (const HRESULT entered = EnterOn(*this, "VLMISpecObject::RemoveSon", sonName, option); Failed(entered))
    return entered;
  if (feature == nullptr || feature->removed) return E_FAIL;
  if (feature->father == this) {
    document->Remove(*feature);
    return S_OK;
  }
  // Old documents list sons that stand beneath another feature, which keeps them.
  const std::vector<Feature*> listed = LinkedFeatures(*this, kSonsList);
  if (std::ranges::find(listed, feature) == listed.end()) return E_FAIL;
  DropLink(*this, kSonsList, *feature);
  return S_OK;
}

int Feature::IsReadyInDomain(const VLMUnicodeString& domain) {
  if (Failed(EnterOn(*this, "VLMISpecObject::IsReadyInDomain", domain.View()))) return 0;
  const Attribute* const notReady = document->FindAttribute(*this, kNotReadyIn.Id());
  if (notReady == nullptr) return 1;
  if (notReady->value.Kind() != ValueKind::kList) return 0;  // unreadable: nobody knows that it is ready
  const std::span<const Value> domains = notReady->value.Entries();
  if (domain.IsNull()) return domains.empty() ? 1 : 0;
  const auto names = [&domain](const Value& entry) {
    return entry.Kind() != ValueKind::kString || entry.AsString() == domain.View();
  };
  return std::ranges::none_of(domains, names) ? 1 : 0;
}

}  // namespace standalone
