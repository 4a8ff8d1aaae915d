// Analysis cases of this workbench.

#include "adapters/HostLibrary.h"
#include "workbench/HVXIAnalysisCase.h"

namespace standalone {
namespace {

const Key kSolver("Solver");
const Key kAnalysisType("AnalysisType");
const Key kCaseKind("CaseKind");

constexpr std::string_view kThisProduct = "Halvex";

class AnalysisCaseAdapter final : public FeatureAdapter<HVXIAnalysisCase> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetAnalysisType(std::int32_t& type) override {
    return Read("HVXIAnalysisCase::GetAnalysisType", kAnalysisType, type);
  }

  HRESULT GetCaseKind(std::int32_t& caseKind) override {
    return ReadOr("HVXIAnalysisCase::GetCaseKind", kCaseKind, caseKind, 0);
  }

  HRESULT ListSets(VLMListValVLMBaseUnknown_var& sets) override {
    sets.RemoveAll();
    if (const HRESULT entered = Enter("HVXIAnalysisCase::ListSets"); Failed(entered)) return entered;
    for (Feature* each = NextBeneath(Self(), Self()); each != nullptr; each = NextBeneath(Self(), *each)) {
      if (each->type->MetaClass().IsAKindOf(kind::kAnalysisSet)) sets.Append(HandleOn<VLMBaseUnknown>(each));
    }
    return S_OK;
  }
};

// Other workbenches keep their cases in the same documents; those are solved by others.
void* MakeAnalysisCase(VLMBaseUnknown& extended) {
  VLMUnicodeString solver;
  static_cast<void>(ReadAttribute(*FeatureOf(&extended), kSolver, solver));
  return solver.View() == kThisProduct ? MakeAdapter<AnalysisCaseAdapter>(extended) : nullptr;
}

}  // namespace

void BindCaseAdapters(VLMLibrary& host) {
  static_cast<void>(
      host.DeclareTie(VLMMetaClass::LateType(kind::kAnalysisCase), HVXIAnalysisCase::kId, &MakeAnalysisCase));
}

}  // namespace standalone
