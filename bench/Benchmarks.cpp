#include <benchmark/benchmark.h>

#include "DocumentGenerator.h"
#include "adapters/FeatureAdapter.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using namespace standalone;

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(HVX_LIBRARY);
  return library.Description();
}

VLMListValVLMUnicodeString AllIdentifiersBut(std::string_view left) {
  VLMListValVLMUnicodeString identifiers;
  for (const VLMUnicodeString& identifier : Library().identifiers) {
    if (identifier.View() != left) identifiers.Append(identifier);
  }
  return identifiers;
}

// Handing all identifiers to a feature that answers none of them: the class's own one is left out of the
// list.
void DispatchWithoutMatch(benchmark::State& state) {
  static_cast<void>(Library());
  const DocumentPtr document = Document::Create("bench");
  Feature& feature = document->Create(LateType::Of("HVXRiksStepLT"), "Step", nullptr, nullptr);
  VLMListValVLMUnicodeString identifiers = AllIdentifiersBut("AddConnectionContainer");
  identifiers.Append("UpgradeOfNobody");
  for (auto _ : state) {
    const HVXIUpgrade_var spUpgrade = HandleOn<HVXIUpgrade>(&feature);
    benchmark::DoNotOptimize(spUpgrade->Upgrade(identifiers));
  }
}
BENCHMARK(DispatchWithoutMatch);

// The cast that every routine begins with.
void Cast(benchmark::State& state) {
  const DocumentPtr document = Document::Create("bench");
  Feature& feature = document->Create(LateType::Of("HVXPressure"), "Pressure", nullptr, nullptr);
  const VLMISpecObject_var spObject = HandleOn<VLMISpecObject>(&feature);
  for (auto _ : state) {
    const VLMISpecObject_var spCast{VLMBaseUnknown_var(spObject)};
    benchmark::DoNotOptimize(spCast.Get());
  }
}
BENCHMARK(Cast);

}  // namespace
