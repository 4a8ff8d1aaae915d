// The component that propagates features from step to step.

#include "adapters/FeatureAdapter.h"
#include "analysis/Propagation.h"
#include "components/Component.h"
#include "workbench/HVXIFactoryExtForPropagation.h"

namespace standalone {
namespace {

class PropagationFactory final : public Component<HVXIFactoryExtForPropagation> {
 public:
  HRESULT SetDefaultPropagationData(const VLMBaseUnknown_var& feature, int option,
                                    const VLMBaseUnknown_var& /*data*/) override {
    Feature* const own = FeatureOf(feature);
    if (const HRESULT entered =
            Checkpoint::Pass("HVXIFactoryExtForPropagation::SetDefaultPropagationData", own, {}, option);
        Failed(entered)) {
      return entered;
    }
    if (own == nullptr || own->removed) return E_FAIL;
    GiveDefaultPropagationData(*own);
    return S_OK;
  }

  HRESULT Propagate(const VLMBaseUnknown_var& feature, int option) override {
    Feature* const own = FeatureOf(feature);
    if (const HRESULT entered = Checkpoint::Pass("HVXIFactoryExtForPropagation::Propagate", own, {}, option);
        Failed(entered)) {
      return entered;
    }
    return own == nullptr || own->removed ? E_FAIL : PropagateToLaterSteps(*own);
  }
};

}  // namespace

void DeclarePropagationFactory(VLMLibrary& host) {
  static_cast<void>(
      host.DeclareComponent("HVXEFactoryExtForPropagation", &CreateComponentOf<PropagationFactory>));
}

}  // namespace standalone
