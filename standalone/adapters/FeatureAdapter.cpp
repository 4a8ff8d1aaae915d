#include "adapters/FeatureAdapter.h"

namespace standalone {
namespace {

// Asked of an object to learn which feature it stands for. Private to this host: gives the `Feature`,
// uncounted.
constexpr VLMInterfaceId kFeatureItself{"standalone::Feature"};

// A feature seen as nothing but itself.
class BareFeature final : public FeatureAdapter<VLMBaseUnknown> {
 public:
  using FeatureAdapter::FeatureAdapter;

 private:
  ~BareFeature() override = default;
};

}  // namespace

HRESULT QueryFeature(Feature& feature, const VLMInterfaceId& id, void** out, VLMBaseUnknown* self) {
  *out = nullptr;
  if (id == kFeatureItself) {
    *out = &feature;
    return S_OK;
  }
  if (Checkpoint::Withholds(id, feature)) return E_NOINTERFACE;
  if (id == VLMBaseUnknown::kId) {
    VLMBaseUnknown* const bare = new BareFeature(feature);
    *out = bare;
    return S_OK;
  }
  const VLMCreateTIE create = feature.type->MetaClass().FindTie(id);
  if (create == nullptr) return E_NOINTERFACE;
  const VLMBaseUnknown_var extended =
      self != nullptr ? VLMBaseUnknown_var(self) : VLMBaseUnknown_var::Adopt(new BareFeature(feature));
  *out = create(*extended.Get());
  return *out != nullptr ? S_OK : E_NOINTERFACE;
}

bool Offers(Feature& feature, const VLMInterfaceId& id) {
  void* found = nullptr;
  if (Failed(QueryFeature(feature, id, &found))) return false;
  static_cast<VLMBaseUnknown*>(found)->Release();
  return true;
}

Feature* FeatureOf(VLMBaseUnknown* object) {
  void* feature = nullptr;
  if (object != nullptr) static_cast<void>(object->QueryInterface(kFeatureItself, &feature));
  return static_cast<Feature*>(feature);
}

}  // namespace standalone
