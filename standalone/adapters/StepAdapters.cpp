// Analysis steps and the parameters that they own.

#include "adapters/HostLibrary.h"
#include "analysis/ComponentValues.h"
#include "workbench/HVXIGeneralStaticStep.h"
#include "workbench/HVXIHeatTransferStep.h"
#include "workbench/HVXIInitialStep.h"
#include "workbench/HVXIStaticLPStep.h"
#include "workbench/HVXIStep.h"

namespace standalone {
namespace {

const Key kParameter("Parameter");

// One component per quantity, with the link to the parameter that drives it.
constexpr std::string_view kTimePeriod = "StepTime";
constexpr std::string_view kInitialIncrement = "InitialIncrement";
constexpr std::string_view kMaximumIncrement = "MaximumIncrement";
constexpr std::string_view kMinimumIncrement = "MinimumIncrement";
constexpr std::string_view kStabilizationFactor = "StabilizationFactor";
constexpr std::string_view kMinimumTemperatureChange = "MinimumTemperatureChange";
constexpr std::string_view kMaximumTemperatureChange = "MaximumTemperatureChange";

/// The base of steps that own parameters.
template <class Interface>
class IncrementedStepAdapter : public FeatureAdapter<Interface> {
 public:
  using FeatureAdapter<Interface>::FeatureAdapter;

 protected:
  ~IncrementedStepAdapter() override = default;

  HRESULT SetValue(std::string_view operation, std::string_view quantity, double value) const {
    if (const HRESULT entered = this->Enter(operation, quantity); Failed(entered)) return entered;
    Feature* const component = FindComponent(this->Self(), quantity);
    Feature* const parameter = component == nullptr ? nullptr : LinkedFeature(*component, kParameter);
    if (parameter == nullptr) return E_FAIL;
    double current = 0.0;  // of the component, which is not written when the parameter cannot be
    if (const HRESULT read = ReadComponent(this->Self(), quantity, current); Failed(read)) return read;
    if (const HRESULT written = ReplaceAttribute(*parameter, kParameterValue, value); Failed(written))
      return written;
    return WriteComponent(this->Self(), quantity, value);
  }

  /// The parameter comes to stand beneath the step; the one that it replaces goes, unless it stands beneath
  /// another feature or is linked to from elsewhere.
  HRESULT SetParameter(std::string_view operation, std::string_view quantity,
                       const VLMIKpeParm_var& parameter) const {
    if (const HRESULT entered = this->Enter(operation, quantity); Failed(entered)) return entered;
    Feature* const owned = FeatureOf(parameter);
    if (owned == nullptr || owned->removed || owned->document != &this->Doc()) return E_FAIL;
    Feature* const component = FindComponent(this->Self(), quantity);
    if (component == nullptr) return E_FAIL;
    Feature* const before = LinkedFeature(*component, kParameter);
    if (before == nullptr && HasValue(*component, kParameter)) return E_FAIL;
    if (!this->Doc().PlaceBeneath(*owned, this->Self())) return E_FAIL;
    WriteLink(*component, kParameter, owned);
    if (before == nullptr || before == owned || before->father != &this->Self()) return S_OK;
    if (!this->Doc().IsLinkedFromElsewhere(*before, *component)) this->Doc().Remove(*before);
    return S_OK;
  }
};

class GeneralStaticStepAdapter final : public IncrementedStepAdapter<HVXIGeneralStaticStep> {
 public:
  using IncrementedStepAdapter::IncrementedStepAdapter;

  HRESULT SetTimePeriod(double value) override {
    return SetValue("HVXIGeneralStaticStep::SetTimePeriod", kTimePeriod, value);
  }
  HRESULT SetInitialIncrement(double value) override {
    return SetValue("HVXIGeneralStaticStep::SetInitialIncrement", kInitialIncrement, value);
  }
  HRESULT SetMaximumIncrement(double value) override {
    return SetValue("HVXIGeneralStaticStep::SetMaximumIncrement", kMaximumIncrement, value);
  }
  HRESULT SetMinimumIncrement(double value) override {
    return SetValue("HVXIGeneralStaticStep::SetMinimumIncrement", kMinimumIncrement, value);
  }
  HRESULT SetStabilizationFactor(double value) override {
    return SetValue("HVXIGeneralStaticStep::SetStabilizationFactor", kStabilizationFactor, value);
  }
  HRESULT SetTimePeriodParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIGeneralStaticStep::SetTimePeriodParameter", kTimePeriod, parameter);
  }
  HRESULT SetInitialIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIGeneralStaticStep::SetInitialIncrementParameter", kInitialIncrement, parameter);
  }
  HRESULT SetMaximumIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIGeneralStaticStep::SetMaximumIncrementParameter", kMaximumIncrement, parameter);
  }
  HRESULT SetMinimumIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIGeneralStaticStep::SetMinimumIncrementParameter", kMinimumIncrement, parameter);
  }
  HRESULT SetStabilizationFactorParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIGeneralStaticStep::SetStabilizationFactorParameter", kStabilizationFactor,
                        parameter);
  }
};

class HeatTransferStepAdapter final : public IncrementedStepAdapter<HVXIHeatTransferStep> {
 public:
  using IncrementedStepAdapter::IncrementedStepAdapter;

  HRESULT SetTimePeriod(double value) override {
    return SetValue("HVXIHeatTransferStep::SetTimePeriod", kTimePeriod, value);
  }
  HRESULT SetInitialIncrement(double value) override {
    return SetValue("HVXIHeatTransferStep::SetInitialIncrement", kInitialIncrement, value);
  }
  HRESULT SetMaximumIncrement(double value) override {
    return SetValue("HVXIHeatTransferStep::SetMaximumIncrement", kMaximumIncrement, value);
  }
  HRESULT SetMinimumIncrement(double value) override {
    return SetValue("HVXIHeatTransferStep::SetMinimumIncrement", kMinimumIncrement, value);
  }
  HRESULT SetMinimumTemperatureChange(double value) override {
    return SetValue("HVXIHeatTransferStep::SetMinimumTemperatureChange", kMinimumTemperatureChange, value);
  }
  HRESULT SetMaximumTemperatureChange(double value) override {
    return SetValue("HVXIHeatTransferStep::SetMaximumTemperatureChange", kMaximumTemperatureChange, value);
  }
  HRESULT SetTimePeriodParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetTimePeriodParameter", kTimePeriod, parameter);
  }
  HRESULT SetInitialIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetInitialIncrementParameter", kInitialIncrement, parameter);
  }
  HRESULT SetMaximumIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetMaximumIncrementParameter", kMaximumIncrement, parameter);
  }
  HRESULT SetMinimumIncrementParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetMinimumIncrementParameter", kMinimumIncrement, parameter);
  }
  HRESULT SetMinimumTemperatureChangeParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetMinimumTemperatureChangeParameter",
                        kMinimumTemperatureChange, parameter);
  }
  HRESULT SetMaximumTemperatureChangeParameter(const VLMIKpeParm_var& parameter) override {
    return SetParameter("HVXIHeatTransferStep::SetMaximumTemperatureChangeParameter",
                        kMaximumTemperatureChange, parameter);
  }
};

class StepMarkAdapter final : public FeatureAdapter<HVXIStep> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class InitialStepMarkAdapter final : public FeatureAdapter<HVXIInitialStep> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class StaticLPStepMarkAdapter final : public FeatureAdapter<HVXIStaticLPStep> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

}  // namespace

void BindStepAdapters(VLMLibrary& host) {
  Bind<StepMarkAdapter>(host, {kind::kStep});
  Bind<InitialStepMarkAdapter>(host, {"HVXInitialStepLT"});
  Bind<StaticLPStepMarkAdapter>(host, {"HVXStaticLPStepLT"});
  Bind<GeneralStaticStepAdapter>(host, {"HVXGeneralStaticStepLT"});
  Bind<HeatTransferStepAdapter>(host, {"HVXHeatTransferStepLT"});
}

}  // namespace standalone
