#include "support/PropertyDocuments.h"

#include <fmt/format.h>

#include <algorithm>
#include <random>
#include <vector>

#include "adapters/FeatureAdapter.h"
#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "base/VLMLibrary.h"
#include "workbench/HVXAnalPreProcEntityUtils.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIContactConnectionEnhancementStd.h"
#include "workbench/HVXIContactConnectionProp.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIInterferenceFit.h"
#include "workbench/HVXIPropagatingFeature.h"
#include "workbench/HVXIStaticLPStep.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"
#include "workbench/HVXITraverser.h"
#include "workbench/HVXStepUtils.h"

namespace testing_support {

using namespace standalone;

namespace {

// Gathers feature lines; ids follow each other.
class Lines {
 public:
  int Add(std::string_view type, int father, std::string_view attributes = {}) {
    const std::string above = father == 0 ? "" : fmt::format(R"(,"father":{{"ref":{}}})", father);
    fmt::format_to(std::back_inserter(text_),
                   R"({{"id":{},"type":"{}"{}{}}})"
                   "\n",
                   ++last_, type, above,
                   attributes.empty() ? "" : fmt::format(R"(,"attributes":{{{}}})", attributes));
    return last_;
  }
  // A feature with supports on the given objects (0: a support that has lost its object) and further
  // attributes.
  int AddSupported(std::string_view type, int father, const std::vector<std::pair<int, int>>& supports,
                   const std::string& attributes = {}) {
    std::string list;
    for (std::size_t i = 0; i < supports.size(); ++i) {
      fmt::format_to(std::back_inserter(list), R"({}{{"ref":{}}})", i == 0 ? "" : ",",
                     last_ + 2 + static_cast<int>(i));
    }
    const int feature = Add(
        type, father, fmt::format(R"({}{}"Supports":[{}])", attributes, attributes.empty() ? "" : ",", list));
    for (const auto& [first, second] : supports) {
      std::string objects = first == 0 ? "" : fmt::format(R"("FirstObject":{{"ref":{}}})", first);
      if (second != 0)
        objects += fmt::format(R"({}"SecondObject":{{"ref":{}}})", first == 0 ? "" : ",", second);
      Add("GeometrySmartConnector", feature, objects);
    }
    return feature;
  }

  [[nodiscard]] int Next() const { return last_ + 1; }
  [[nodiscard]] std::string Text() const { return fmt::to_string(text_); }

 private:
  fmt::memory_buffer text_;
  int last_ = 0;
};

constexpr std::pair<const char*, const char*> kRequestKinds[] = {
    {"HVXDatOutputRequestContainerLT", "HVXDatOutputLT"},
    {"HVXHistoryOutputRequestContainerLT", "HVXHistoryOutputLT"},
    {"HVXFieldOutputRequestContainerLT", "HVXNewFieldOutputLT"}};

// A host operation of the plain algorithm whose failure no document of ours can bring about.
void Must(HRESULT result) {
  if (Failed(result)) throw std::logic_error("a host operation failed");
}

void SupportsOf(const VLMBaseUnknown_var& feature, VLMBaseUnknown_var& first, VLMBaseUnknown_var& second) {
  const VLMISamAnalysisSupport_var support(feature);
  VLMListValVLMBaseUnknown_var supports;
  Must(support->ListSupports(supports));
  if (supports.Size() == 0) return;
  const VLMISamAnalysisConnector_var connector(supports[1]);
  Must(connector->GetPointedObject(first));
  if (!(first == NULL_var)) Must(connector->GetSecondObject(second));
}

VLMISpecObject_var FindPair(const HVXIAnalysisCase_var& analysisCase, const VLMBaseUnknown_var& first,
                            const VLMBaseUnknown_var& second) {
  VLMListValVLMBaseUnknown_var sets;
  Must(analysisCase->ListSets(sets));
  for (const VLMBaseUnknown_var& set : sets) {
    VLMListValVLMISpecObject_var features;
    Must(HVXITraverser_var(set)->ListFeatures(features));
    for (const VLMISpecObject_var& feature : features) {
      const HVXIPropagatingFeature_var propagating(feature);
      if (HVXIContactConnectionEnhancement_var(feature) == NULL_var || propagating == NULL_var) continue;
      if (propagating->GetPropagationState() != 0) continue;
      VLMBaseUnknown_var ownFirst;
      VLMBaseUnknown_var ownSecond;
      SupportsOf(feature, ownFirst, ownSecond);
      if (!(ownFirst == NULL_var) && !(ownSecond == NULL_var) && ownFirst == first && ownSecond == second)
        return feature;
    }
  }
  return {};
}

VLMISamAnalysisSet_var SetForNewPair(const HVXIAnalysisCase_var& analysisCase,
                                     const HVXIContactConnectionProp_var& property) {
  std::int32_t caseKind = 0;
  unsigned char clearance = 0;
  Must(analysisCase->GetCaseKind(caseKind));
  Must(property->GetClearanceFlag(clearance));
  VLMISamAnalysisSet_var set;
  VLMListValVLMBaseUnknown_var steps;
  Must(HVXStepUtils::GetAllSteps(steps, VLMISamAnalysisCase_var(analysisCase)));
  for (int position = 2; caseKind == 1 && clearance == 1 && position <= steps.Size(); ++position) {
    if (!(HVXIStaticLPStep_var(steps[position]) == NULL_var)) continue;
    VLMListValVLMBaseUnknown_var containers;
    Must(VLMISamAnalysisScan_var(steps[position])
             ->ListChildrenOfLateType("HVXInteractionContainerLT", containers, VLMScanMode::kAll));
    if (containers.Size() > 0) set = VLMISamAnalysisSet_var(containers[1]);
    break;
  }
  if (set == NULL_var) static_cast<void>(HVXAnalysisDocUtils::GetInteractionSet(analysisCase, set));
  return set;
}

VLMISpecObject_var MakePair(const HVXIAnalysisCase_var& analysisCase,
                            const HVXIContactConnectionProp_var& property, const VLMBaseUnknown_var& first,
                            const VLMBaseUnknown_var& second) {
  const VLMISamAnalysisSet_var set = SetForNewPair(analysisCase, property);
  if (set == NULL_var) return {};
  HVXISurfaceToSurfaceContactFact_var factory;
  Must(VLMInstantiateComponent("HVXSurfaceToSurfaceContactFact", factory));
  VLMISpecObject_var pair;
  Must(factory->CreateContactPair(set, analysisCase, pair));
  if (!(first == NULL_var) && !(second == NULL_var)) {
    Must(VLMISamAnalysisSupport_var(pair)->AddSupport(VLMILinkableObject_var(first), second,
                                                      "GeometrySmartConnector"));
  }
  std::int32_t kind = 0;
  Must(property->GetKind(kind));
  const HVXIContactConnectionEnhancementStd_var standard(pair);
  if (kind == 1 && !(standard == NULL_var)) {
    VLMBaseUnknown_var from;
    VLMBaseUnknown_var to;
    Must(property->GetInterferenceFit(from));
    Must(standard->GetInterferenceFit(to));
    const HVXIInterferenceFit_var source(from);
    const HVXIInterferenceFit_var target(to);
    if (!(source == NULL_var)) {
      std::int32_t number = 0;
      double value = 0.0;
      Must(source->GetFitType(number));
      Must(target->SetFitType(number));
      Must(source->GetDefinition(number));
      Must(target->SetDefinition(number));
      Must(source->GetValue(value));
      Must(target->SetValue(value));
    }
  }
  HVXIFactoryExtForPropagation_var propagation;
  Must(VLMInstantiateComponent("HVXEFactoryExtForPropagation", propagation));
  Must(propagation->SetDefaultPropagationData(pair, 0, NULL_var));
  Must(propagation->Propagate(pair, 0));
  return pair;
}

void PointRequestsAt(const VLMISpecObject_var& pair, const VLMBaseUnknown_var& property) {
  VLMISpecObject_var analysisCase;
  Must(HVXAnalysisEntityUtils::GetParentCaseFromObject(pair, analysisCase));
  VLMListValVLMBaseUnknown_var steps;
  Must(HVXStepUtils::GetAllSteps(steps, VLMISamAnalysisCase_var(analysisCase)));
  for (const VLMBaseUnknown_var& step : steps) {
    for (const auto& [set, type] : kRequestKinds) {
      VLMListValVLMISpecObject_var requests;
      Must(HVXAnalysisDocUtils::GetFeatureListFromSet(set, step, requests));
      for (const VLMISpecObject_var& request : requests) {
        const VLMISamAnalysisSupport_var support(request);
        VLMListValVLMBaseUnknown_var supports;
        Must(support->ListSupports(supports));
        for (const VLMBaseUnknown_var& each : supports) {
          if (VLMISamAnalysisConnector_var(each)->IsConnectedTo(property) != 1) continue;
          Must(support->RemoveSupport(each, "GeometrySmartConnector"));
          Must(support->AddSupport(VLMILinkableObject_var(pair), pair, "GeometrySmartConnector", -1));
        }
      }
    }
  }
}

}  // namespace

std::string RandomPropertyDocument(std::uint32_t seed) {
  std::mt19937 random(seed);
  // Not a standard distribution: those differ from one standard library to the next.
  const auto below = [&random](int bound) {
    return static_cast<int>(random() % static_cast<std::uint32_t>(bound));
  };
  const auto oneIn = [&below](int n) { return below(n) == 0; };

  Lines lines;
  const int product = lines.Add("Product", 0);
  const int model = lines.Add("AnalysisModel", 0);
  const int designs = lines.Add("SAMConnectionSet", model);
  std::vector<int> connected;
  for (int i = 0; i < 6; ++i) connected.push_back(lines.Add("SAMGenericConnDesign", designs));
  const auto someSupport = [&]() -> std::vector<std::pair<int, int>> {
    if (oneIn(8)) return {};
    const int first = oneIn(10) ? 0 : connected[static_cast<std::size_t>(below(6))];
    const int second = oneIn(10) ? 0 : (oneIn(3) ? connected[static_cast<std::size_t>(below(6))] : product);
    return {{first, second}};
  };

  const int set = lines.Add(oneIn(2) ? "PropertySet" : "HVXHalvexPropertySetLT", model);
  std::vector<int> properties;
  for (int i = 2 + below(10); i > 0; --i) {
    const std::string attributes =
        fmt::format(R"("ContactKind":{},"ClearanceFlag":{})", 1 + below(2), oneIn(2));
    properties.push_back(lines.AddSupported("SAMFaceFaceContact", set, someSupport(), attributes));
    if (oneIn(4)) lines.Add("HVXInteractionPropertyLT", set);
    if (oneIn(2)) {  // a further property, with an interference fit
      const int property = lines.AddSupported(
          "SAMFaceFaceContact", set, {{connected[static_cast<std::size_t>(below(6))], product}},
          fmt::format(R"("InterferenceFit":{{"ref":{}}})", lines.Next() + 2));  // behind property and support
      lines.Add("HVXInterferenceFitLT", property, R"("FitType":1,"Definition":1,"Value":0.5)");
      properties.push_back(property);
    }
  }
  const auto someProperty = [&] {
    return properties[static_cast<std::size_t>(below(static_cast<int>(properties.size())))];
  };

  for (int c = 1 + below(4); c > 0; --c) {
    const int analysisCase = lines.Add(
        "AnalysisCase", model,
        oneIn(8)
            ? R"("Solver":"Other")"
            : fmt::format(R"("Solver":"Halvex","AnalysisType":{},"CaseKind":{})", 1 + below(3), below(2)));
    const auto addPairs = [&](int holder) {
      for (int i = below(4); i > 0; --i) {
        lines.AddSupported(
            oneIn(4) ? "HVXContactConnectionEnhancementExplicitLT" : "HVXContactConnectionEnhancementStdLT",
            holder, someSupport(), oneIn(4) ? R"("PropagationState":1)" : R"("PropagationState":0)");
      }
    };
    if (!oneIn(6)) addPairs(lines.Add("HVXInteractionContainerLT", analysisCase));
    const int history = lines.Add("HVXSimulationHistoryLT", analysisCase);
    for (int s = below(4), k = 0; k <= s; ++k) {
      const int step = lines.Add(
          k == 0 ? "HVXInitialStepLT" : (oneIn(3) ? "HVXStaticLPStepLT" : "HVXGeneralStaticStepLT"), history);
      if (!oneIn(3)) addPairs(lines.Add("HVXInteractionContainerLT", step));
      for (const auto& [container, request] : kRequestKinds) {
        if (oneIn(4)) continue;
        const int requests = lines.Add(container, step);
        for (int i = below(4); i > 0; --i) {
          std::vector<std::pair<int, int>> supports;
          for (int n = below(4); n > 0; --n)
            supports.emplace_back(oneIn(4) ? model : someProperty(), product);
          lines.AddSupported(request, requests, supports);
        }
      }
    }
  }
  return lines.Text();
}

std::string LargePropertyDocument(int properties, int cases, int requests) {
  Lines lines;
  const int product = lines.Add("Product", 0);
  const int model = lines.Add("AnalysisModel", 0);
  const int designs = lines.Add("SAMConnectionSet", model);
  const int set = lines.Add("PropertySet", model);
  std::vector<int> made;
  for (int i = 0; i < properties; ++i) {
    const int design = lines.Add("SAMGenericConnDesign", designs);
    made.push_back(
        lines.AddSupported("SAMFaceFaceContact", set, {{design, product}}, R"("ClearanceFlag":true)"));
  }
  int request = 0;
  for (int c = 0; c < cases; ++c) {
    const int analysisCase =
        lines.Add("AnalysisCase", model, R"("Solver":"Halvex","AnalysisType":1,"CaseKind":1)");
    static_cast<void>(lines.Add("HVXInteractionContainerLT", analysisCase));
    const int history = lines.Add("HVXSimulationHistoryLT", analysisCase);
    for (int s = 0; s < 3; ++s) {
      const int step = lines.Add(s == 0 ? "HVXInitialStepLT" : "HVXGeneralStaticStepLT", history);
      static_cast<void>(lines.Add("HVXInteractionContainerLT", step));
      for (const auto& [container, type] : kRequestKinds) {
        const int holder = lines.Add(container, step);
        for (int i = requests / (cases * 9); i > 0; --i, ++request) {
          lines.AddSupported(type, holder, {{made[static_cast<std::size_t>(request % properties)], product}});
        }
      }
    }
  }
  return lines.Text();
}

HRESULT ReplacePropertiesPlainly(Document& document) {
  const VLMDocument_var handle(&document);
  VLMListValVLMBaseUnknown_var allCases;
  Must(HVXAnalysisDocUtils::GetAllAnalysisCases(allCases, handle));
  if (allCases.Size() == 0) return S_OK;
  std::vector<HVXIAnalysisCase_var> cases;
  for (const VLMBaseUnknown_var& each : allCases) {
    const HVXIAnalysisCase_var ofThisProduct(each);
    if (!(ofThisProduct == NULL_var)) cases.push_back(ofThisProduct);
  }
  VLMListValVLMBaseUnknown_var properties;
  Must(HVXAnalPreProcEntityUtils::GetListOfPropFromAnalDoc(handle, properties));
  for (const VLMBaseUnknown_var& each : properties) {
    const HVXIContactConnectionProp_var property(each);
    if (property == NULL_var) continue;
    VLMBaseUnknown_var first;
    VLMBaseUnknown_var second;
    SupportsOf(each, first, second);
    bool everywhere = static_cast<int>(cases.size()) == allCases.Size();
    for (const HVXIAnalysisCase_var& analysisCase : cases) {
      VLMISpecObject_var pair = FindPair(analysisCase, first, second);
      if (pair == NULL_var) pair = MakePair(analysisCase, property, first, second);
      everywhere = everywhere && !(pair == NULL_var);
      if (!(pair == NULL_var)) PointRequestsAt(pair, each);
    }
    if (everywhere) Must(HVXAnalysisDocUtils::RemoveAnalysisEntity(each));
  }
  return S_OK;
}

}  // namespace testing_support
