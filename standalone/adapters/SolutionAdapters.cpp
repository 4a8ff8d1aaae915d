// Solutions of cases and of their steps, and the explicit counterparts that link the two.

#include "adapters/HostLibrary.h"
#include "analysis/VLMISamExplicit.h"
#include "workbench/HVXIAnalysisCaseSolution.h"
#include "workbench/HVXIHalvexResultStep.h"

namespace standalone {
namespace {

const Key kAnalysisCase("AnalysisCase");
const Key kResultStepType("ResultStepType");
const Key kAttachedExplicit("AttachedExplicit");

class CaseSolutionAdapter final : public FeatureAdapter<HVXIAnalysisCaseSolution> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetAnalysisCase(const VLMISpecObject_var& analysisCase) override {
    return StoreLink("HVXIAnalysisCaseSolution::SetAnalysisCase", kAnalysisCase, analysisCase);
  }
  HRESULT GetAnalysisCase(VLMISpecObject_var& analysisCase) override {
    return ReadLink("HVXIAnalysisCaseSolution::GetAnalysisCase", kAnalysisCase, analysisCase);
  }
};

class ResultStepAdapter final : public FeatureAdapter<HVXIHalvexResultStep> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetResultStepType(std::int32_t& type) override {
    return Read("HVXIHalvexResultStep::GetResultStepType", kResultStepType, type);
  }
};

class ExplicitAdapter final : public FeatureAdapter<VLMISamExplicit> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT Attach(const VLMISamExplicit_var& other) override {
    return StoreLink("VLMISamExplicit::Attach", kAttachedExplicit, other);
  }
  HRESULT GetAttached(VLMISamExplicit_var& other) override {
    return ReadLink("VLMISamExplicit::GetAttached", kAttachedExplicit, other);
  }
};

}  // namespace

void BindSolutionAdapters(VLMLibrary& host) {
  Bind<CaseSolutionAdapter>(host, {"HVXHacSolutionLT"});
  Bind<ResultStepAdapter>(host, {"HVXHacAnaStepSolLT"});
  Bind<ExplicitAdapter>(host, {"AnalysisCase", "HVXHacSolutionLT"});
}

}  // namespace standalone
