#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "DocumentGenerator.h"
#include "adapters/FeatureAdapter.h"
#include "file/DocumentReader.h"
#include "session/Session.h"
#include "support/PropertyDocuments.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using namespace standalone;

const HVXUpgradeLibrary& Library() {
  static const UpgradeLibrary library(HVX_LIBRARY);
  return library.Description();
}

// What is measured must have done its work.
void Require(benchmark::State& state, bool holds, const char* otherwise) {
  if (!holds) state.SkipWithError(otherwise);
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
  Feature& feature = *document->Create(LateType::Of("HVXRiksStepLT"), "Step", nullptr, nullptr);
  VLMListValVLMUnicodeString identifiers = AllIdentifiersBut("AddConnectionContainer");
  identifiers.Append("UpgradeOfNobody");
  HRESULT result = S_OK;
  for (auto _ : state) {
    const HVXIUpgrade_var spUpgrade = HandleOn<HVXIUpgrade>(&feature);
    benchmark::DoNotOptimize(result = spUpgrade->Upgrade(identifiers));
  }
  Require(state, result == S_OK && document->Touched().size() == 1, "something was upgraded");
}
BENCHMARK(DispatchWithoutMatch);

// The cast that every routine begins with.
void Cast(benchmark::State& state) {
  const DocumentPtr document = Document::Create("bench");
  Feature& feature = *document->Create(LateType::Of("HVXPressure"), "Pressure", nullptr, nullptr);
  const VLMISpecObject_var spObject = HandleOn<VLMISpecObject>(&feature);
  for (auto _ : state) {
    const VLMISpecObject_var spCast{VLMBaseUnknown_var(spObject)};
    benchmark::DoNotOptimize(spCast.Get());
    if (spCast == NULL_var) state.SkipWithError("the cast gives nothing");
  }
}
BENCHMARK(Cast);

DocumentPtr ReadLines(const std::string& lines) {
  static_cast<void>(Library());
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("bench-" + std::to_string(getpid()) + ".hvxdoc");
  std::ofstream(file) << R"({"format":"hvxdoc","version":1,"upgrades":[],"features":)"
                      << std::ranges::count(lines, '\n') << "}\n"
                      << lines;
  DocumentPtr document = ReadDocument(file);
  std::filesystem::remove(file);
  return document;
}

// Setting the user numbers of a mesh back, which goes through its nodes and elements one by one.
void ResetMesh(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  VLMListValVLMUnicodeString identifiers;
  identifiers.Append("RestNodeAndElementUserNumber");
  for (auto _ : state) {
    state.PauseTiming();
    const DocumentPtr document = ReadLines(fmt::format(
        R"({{"id":1,"type":"AnalysisModel","attributes":{{"ExplicitModel":true}}}}
{{"id":2,"type":"MSHMeshSet"}}
{{"id":3,"type":"MSHMeshPart","father":{{"ref":2}},"attributes":{{"NodeCount":{0},"NodeUserNumbers":[1,{0}]}}}}
)",
        count));
    state.ResumeTiming();
    HRESULT result = E_FAIL;
    benchmark::DoNotOptimize(result = HandleOn<HVXIUpgrade>(document->Find(2))->Upgrade(identifiers));
    state.PauseTiming();
    document->DropAllDeadLinks();
    const Value numbers =
        document->FindAttribute(*document->Find(3), NameTable::Intern("NodeUserNumbers"))->value;
    Require(
        state,
        result == S_OK && numbers.Entries()[0].AsInteger() == 0 && numbers.Entries()[1].AsInteger() == count,
        "the numbers were not reset");
    state.ResumeTiming();
  }
  state.counters["per node"] =
      benchmark::Counter(static_cast<double>(count),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(ResetMesh)->RangeMultiplier(100)->Range(1000, 10000000)->Unit(benchmark::kMillisecond);

// The document-wide replacement of contact connection properties in 4 cases, with two output requests for
// each property. "per property" must stay what it is as their number grows.
void ReplaceProperties(benchmark::State& state) {
  const auto properties = static_cast<int>(state.range(0));
  const std::string lines = testing_support::LargePropertyDocument(properties, 4, 2 * properties);
  VLMListValVLMUnicodeString identifiers;
  identifiers.Append("UpgDocumentForCCPRemoval");
  for (auto _ : state) {
    state.PauseTiming();
    DocumentPtr document = ReadLines(lines);
    const CurrentDocumentScope current(document);
    VLMListValVLMISpecObject_var features;
    for (Feature* each = document->First(); each != nullptr; each = each->next)
      features.Append(HandleOn<VLMISpecObject>(each));
    state.ResumeTiming();
    HRESULT result = E_FAIL;
    benchmark::DoNotOptimize(result = Library().documentUpgrades[0].upgrade(identifiers, features));
    Require(state, result == S_OK && document->CreatedCount() >= 4 * static_cast<std::size_t>(properties),
            "the properties were not replaced");
  }
  state.counters["per property"] =
      benchmark::Counter(static_cast<double>(properties),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(ReplaceProperties)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

}  // namespace
