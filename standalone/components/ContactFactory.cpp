// The component that makes contact pairs and what belongs to them.

#include "adapters/FeatureAdapter.h"
#include "analysis/Contacts.h"
#include "analysis/Frame.h"
#include "components/Component.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"

namespace standalone {
namespace {

const Key kAnalysisType("AnalysisType");
constexpr std::int32_t kExplicitDynamics = 3;

bool IsThere(const Feature* feature) {
  return feature != nullptr && !feature->removed;
}

class ContactFactory final : public Component<HVXISurfaceToSurfaceContactFact> {
 public:
  HRESULT CreateContactPair(const VLMISamAnalysisSet_var& interactionSet,
                            const VLMBaseUnknown_var& analysisCase, VLMISpecObject_var& pair) override {
    pair = NULL_var;
    Feature* const set = FeatureOf(interactionSet);
    Feature* const owner = FeatureOf(analysisCase);
    if (const HRESULT entered = Checkpoint::Pass("HVXISurfaceToSurfaceContactFact::CreateContactPair", set);
        Failed(entered)) {
      return entered;
    }
    if (!IsThere(set) || !IsThere(owner) || set->document != owner->document) return E_FAIL;
    std::int32_t type = 0;
    static_cast<void>(ReadAttribute(*owner, kAnalysisType, type));
    Feature* const made = MakeContactPair(*set, type != kExplicitDynamics);
    pair = HandleOn<VLMISpecObject>(made);
    return made == nullptr ? E_FAIL : S_OK;
  }

  HRESULT CompleteContact(const VLMBaseUnknown_var& contact) override {
    Feature* const feature = FeatureOf(contact);
    if (const HRESULT entered = Checkpoint::Pass("HVXISurfaceToSurfaceContactFact::CompleteContact", feature);
        Failed(entered)) {
      return entered;
    }
    if (!IsThere(feature) || !IsContactPair(*feature)) return E_FAIL;
    if (!IsOfKind(*feature, kStandardPair) || LinkedFeature(*feature, kInterferenceFit) != nullptr)
      return S_OK;
    return !HasValue(*feature, kInterferenceFit) && MakeInterferenceFit(*feature) ? S_OK : E_FAIL;
  }

  HRESULT CreateContactControl(const VLMBaseUnknown_var& contact) override {
    Feature* const feature = FeatureOf(contact);
    if (const HRESULT entered =
            Checkpoint::Pass("HVXISurfaceToSurfaceContactFact::CreateContactControl", feature);
        Failed(entered)) {
      return entered;
    }
    if (!IsThere(feature) || !IsContactPair(*feature)) return E_FAIL;
    if (HasValue(*feature, kContactControl)) return E_FAIL;
    return MakeContactControl(*feature) ? S_OK : E_FAIL;
  }

  HRESULT ConvertContact(const VLMISamAnalysisSet_var& interactionSet, const VLMBaseUnknown_var& contact,
                         const VLMBaseUnknown_var& analysisCase, const VLMDocument_var& document) override {
    Feature* const set = FeatureOf(interactionSet);
    Feature* const feature = FeatureOf(contact);
    if (const HRESULT entered = Checkpoint::Pass("HVXISurfaceToSurfaceContactFact::ConvertContact", feature);
        Failed(entered)) {
      return entered;
    }
    if (!IsThere(set) || !IsThere(feature) || !IsThere(FeatureOf(analysisCase)) || document == NULL_var)
      return E_FAIL;
    const Document* const own = &Document::Of(*document.Get());
    if (feature->document != own || set->document != own) return E_FAIL;
    if (!IsOfKind(*feature, "HVXSurfaceToSurfaceContactLT")) return E_FAIL;
    return ConvertToStandardPair(*feature, *set) ? S_OK : E_FAIL;
  }
};

}  // namespace

void DeclareContactFactory(VLMLibrary& host) {
  static_cast<void>(
      host.DeclareComponent("HVXSurfaceToSurfaceContactFact", &CreateComponentOf<ContactFactory>));
}

}  // namespace standalone
