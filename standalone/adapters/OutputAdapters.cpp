// Output requests and the container that makes and propagates field output requests.

#include <fmt/format.h>

#include "adapters/HostLibrary.h"
#include "analysis/ComponentLayouts.h"
#include "analysis/Propagation.h"
#include "workbench/HVXIBaseOutput.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIFieldOutputFact.h"

namespace standalone {
namespace {

const Key kFrequencyType("FrequencyType");
const Key kFrequency("Frequency");
const Key kVariableSelection("VariableSelection");
const Key kPreselectedVariables("PreselectedVariableList");

constexpr std::int32_t kIncrements = 0;
constexpr std::int32_t kEveryOne = 1;
constexpr std::int32_t kOwnSelection = 0;

constexpr std::string_view kFieldOutputRequest = "HVXNewFieldOutputLT";
constexpr std::string_view kRequestName = "Field Output Request-";

class OutputAdapter final : public FeatureAdapter<HVXIBaseOutput> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetFrequencyType(std::int32_t& type) override {
    return ReadOr("HVXIBaseOutput::GetFrequencyType", kFrequencyType, type, kIncrements);
  }
  HRESULT GetFrequency(std::int32_t& frequency) override {
    return ReadOr("HVXIBaseOutput::GetFrequency", kFrequency, frequency, kEveryOne);
  }
  HRESULT SetFrequencyType(std::int32_t type) override {
    return Write("HVXIBaseOutput::SetFrequencyType", kFrequencyType, type);
  }
  HRESULT SetFrequency(std::int32_t frequency) override {
    return Write("HVXIBaseOutput::SetFrequency", kFrequency, frequency);
  }
  HRESULT GetVariableSelection(std::int32_t& selection) override {
    return ReadOr("HVXIBaseOutput::GetVariableSelection", kVariableSelection, selection, kOwnSelection);
  }
  HRESULT SetVariableSelection(std::int32_t selection) override {
    return Write("HVXIBaseOutput::SetVariableSelection", kVariableSelection, selection);
  }
  HRESULT GetPreselectedVariableList(VLMUnicodeString& variables) override {
    return ReadOr("HVXIBaseOutput::GetPreselectedVariableList", kPreselectedVariables, variables,
                  VLMUnicodeString());
  }
  HRESULT SetPreselectedVariableList(const VLMUnicodeString& variables) override {
    return Write("HVXIBaseOutput::SetPreselectedVariableList", kPreselectedVariables, variables);
  }
};

class FieldOutputFactoryAdapter final : public FeatureAdapter<HVXIFieldOutputFact> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT CreateFieldOutputRequest(VLMISpecObject_var& request) override {
    request = NULL_var;
    if (const HRESULT entered = Enter("HVXIFieldOutputFact::CreateFieldOutputRequest"); Failed(entered)) {
      return entered;
    }
    static const LateType& requestType = LateType::Of(kFieldOutputRequest);
    Feature* const created = Doc().Create(
        requestType, fmt::format("{}.{}", kFieldOutputRequest, Doc().NextId()), &Self(), Self().container);
    if (created == nullptr) return E_FAIL;
    Feature& made = *created;
    Doc().SetExternalName(made,
                          fmt::format("{}{}", kRequestName, Doc().HighestNumberAfter(kRequestName) + 1));
    static_cast<void>(WriteAttribute(made, kFrequencyType, kIncrements));
    static_cast<void>(WriteAttribute(made, kFrequency, kEveryOne));
    static_cast<void>(WriteAttribute(made, kVariableSelection, kOwnSelection));
    static_cast<void>(WriteAttribute(made, kPreselectedVariables, VLMUnicodeString()));
    CompleteComponents(made);
    request = HandleOn<VLMISpecObject>(&made);
    return S_OK;
  }
};

class PropagationAdapter final : public FeatureAdapter<HVXIFactoryExtForPropagation> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetDefaultPropagationData(const VLMBaseUnknown_var& feature, int option,
                                    const VLMBaseUnknown_var& /*data*/) override {
    if (const HRESULT entered = Enter("HVXIFactoryExtForPropagation::SetDefaultPropagationData", {}, option);
        Failed(entered)) {
      return entered;
    }
    Feature* const target = FeatureOf(feature);
    if (!CanBeLinked(target)) return E_FAIL;
    GiveDefaultPropagationData(*target);
    return S_OK;
  }

  HRESULT Propagate(const VLMBaseUnknown_var& feature, int option) override {
    if (const HRESULT entered = Enter("HVXIFactoryExtForPropagation::Propagate", {}, option); Failed(entered))
      return entered;
    Feature* const target = FeatureOf(feature);
    return CanBeLinked(target) ? PropagateToLaterSteps(*target) : E_FAIL;
  }
};

}  // namespace

void BindOutputAdapters(VLMLibrary& host) {
  Bind<OutputAdapter>(host,
                      {"HVXFieldOutputLT", "HVXNewFieldOutputLT", "HVXHistoryOutputLT", "HVXDatOutputLT"});
  Bind<FieldOutputFactoryAdapter>(host, {"HVXFieldOutputRequestContainerLT"});
  Bind<PropagationAdapter>(host, {"HVXFieldOutputRequestContainerLT"});
}

}  // namespace standalone
