#include "utilities/ModelFactory.h"

#include "adapters/FeatureAdapter.h"
#include "analysis/Frame.h"
#include "analysis/Supports.h"
#include "session/FeatureCatalogs.h"

namespace standalone {
namespace {

class ModelFactory final : public VLMISamAnalysisModelFactory {
 public:
  explicit ModelFactory(Document& document) : document_(&document) {}

  void AddRef() noexcept override { ++references_; }
  void Release() noexcept override {
    if (--references_ == 0) delete this;
  }
  HRESULT QueryInterface(const VLMInterfaceId& id, void** out) override {
    *out = nullptr;
    if (!(id == VLMISamAnalysisModelFactory::kId || id == VLMBaseUnknown::kId)) return E_NOINTERFACE;
    AddRef();
    *out = static_cast<VLMISamAnalysisModelFactory*>(this);
    return S_OK;
  }
  [[nodiscard]] const void* Identity() const noexcept override { return this; }

  HRESULT CreateSet(const VLMUnicodeString& lateType, const VLMUnicodeString& name,
                    const VLMBaseUnknown_var& father, VLMBaseUnknown_var& set) override {
    set = NULL_var;
    Feature* const made = Create("VLMISamAnalysisModelFactory::CreateSet", lateType, name, father, true);
    set = HandleOn<VLMBaseUnknown>(made);
    return made == nullptr ? failure_ : S_OK;
  }

  HRESULT CreateFeature(const VLMUnicodeString& lateType, const VLMUnicodeString& name,
                        const VLMBaseUnknown_var& father, VLMISpecObject_var& feature) override {
    feature = NULL_var;
    Feature* const made = Create("VLMISamAnalysisModelFactory::CreateFeature", lateType, name, father, false);
    feature = HandleOn<VLMISpecObject>(made);
    return made == nullptr ? failure_ : S_OK;
  }

  HRESULT CreateSupport(const VLMISamAnalysisConnector_var& connector, VLMBaseUnknown_var& support) override {
    support = NULL_var;
    Feature* const old = FeatureOf(connector);
    if (const HRESULT entered = Checkpoint::Pass("VLMISamAnalysisModelFactory::CreateSupport", old);
        Failed(entered)) {
      return entered;
    }
    if (old == nullptr || old->removed || old->document != document_.Get()) return E_FAIL;
    support = HandleOn<VLMBaseUnknown>(&MakeConnector(
        *old, old->TypeName(), LinkedFeature(*old, kFirstObject), LinkedFeature(*old, kSecondObject)));
    return S_OK;
  }

 private:
  // Null, with the code in failure_, when it cannot be made.
  Feature* Create(std::string_view operation, const VLMUnicodeString& lateType, const VLMUnicodeString& name,
                  const VLMBaseUnknown_var& father, bool asSet) {
    Feature* const above = FeatureOf(father);
    failure_ = Checkpoint::Pass(operation, above, lateType.View());
    if (Failed(failure_)) return nullptr;
    failure_ = E_FAIL;
    if (above == nullptr || above->removed || above->document != document_.Get()) return nullptr;
    if (document_->LateTypeFor(lateType.View()).IsAnalysisSet() != asSet) return nullptr;
    return FeatureCatalogs::Create(lateType.View(), name.View(), *above);
  }

  std::uint32_t references_ = 1;
  DocumentPtr document_;
  HRESULT failure_ = S_OK;
};

}  // namespace

VLMISamAnalysisModelFactory_var MakeModelFactory(Document& document) {
  return VLMISamAnalysisModelFactory_var::Adopt(new ModelFactory(document));
}

}  // namespace standalone
