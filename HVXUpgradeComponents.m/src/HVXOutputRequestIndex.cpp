#include "HVXOutputRequestIndex.h"

#include <algorithm>
#include <utility>

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "workbench/HVXAnalysisDocUtils.h"

std::vector<VLMISpecObject_var> HVXOutputRequestIndex::RestingOn(const VLMBaseUnknown_var& support,
                                                                 const VLMUnicodeString& setType,
                                                                 const VLMBaseUnknown_var& spStep) {
  Step& step = StepOf(spStep);
  auto set = std::ranges::find(step.sets, setType, &Set::type);
  if (set == step.sets.end()) {
    bool isWhole = true;
    BySupport listed = List(setType, spStep, isWhole);
    if (!isWhole) return listed[support->Identity()].requests;
    set = step.sets.insert(set, {setType, std::move(listed)});
  }
  const auto found = set->requests.find(support->Identity());
  return found == set->requests.end() ? std::vector<VLMISpecObject_var>() : found->second.requests;
}

HVXOutputRequestIndex::Step& HVXOutputRequestIndex::StepOf(const VLMBaseUnknown_var& spStep) {
  if (latest_ == nullptr || !(latest_->spStep == spStep)) {
    latest_ = &steps_[spStep->Identity()];
    latest_->spStep = spStep;
  }
  return *latest_;
}

HVXOutputRequestIndex::BySupport HVXOutputRequestIndex::List(const VLMUnicodeString& setType,
                                                             const VLMBaseUnknown_var& spStep,
                                                             bool& isWhole) {
  BySupport bySupport;
  VLMListValVLMISpecObject_var requests;
  if (Failed(HVXAnalysisDocUtils::GetFeatureListFromSet(setType, spStep, requests))) isWhole = false;
  for (int position = 1; position <= requests.Size(); ++position) {
    const VLMISamAnalysisSupport_var spSupport(requests[position]);
    if (spSupport == NULL_var) continue;
    VLMListValVLMBaseUnknown_var supports;
    if (Failed(spSupport->ListSupports(supports))) isWhole = false;
    for (int index = 1; index <= supports.Size(); ++index) {
      const VLMISamAnalysisConnector_var spConnector(supports[index]);
      if (spConnector == NULL_var) continue;
      VLMBaseUnknown_var spPointed;
      if (Failed(spConnector->GetPointedObject(spPointed))) isWhole = false;
      if (spPointed == NULL_var) continue;
      Entry& entry = bySupport[spPointed->Identity()];
      entry.spSupport = spPointed;
      const bool listed = !entry.requests.empty() && entry.requests.back() == requests[position];
      if (!listed) entry.requests.push_back(requests[position]);
    }
  }
  return bySupport;
}
