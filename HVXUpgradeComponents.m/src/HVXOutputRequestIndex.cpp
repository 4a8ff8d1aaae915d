#include "HVXOutputRequestIndex.h"

#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "workbench/HVXAnalysisDocUtils.h"

const std::vector<VLMISpecObject_var>& HVXOutputRequestIndex::RestingOn(const VLMBaseUnknown_var& support,
                                                                        const VLMUnicodeString& setType,
                                                                        const VLMBaseUnknown_var& spStep) {
  static const std::vector<VLMISpecObject_var> none;
  Step& step = steps_[spStep->Identity()];
  step.spStep = spStep;
  auto set = step.sets.find(setType.View());
  if (set == step.sets.end()) set = step.sets.emplace(setType.View(), List(setType, spStep)).first;
  const auto found = set->second.find(support->Identity());
  return found == set->second.end() ? none : found->second.requests;
}

HVXOutputRequestIndex::BySupport HVXOutputRequestIndex::List(const VLMUnicodeString& setType,
                                                             const VLMBaseUnknown_var& spStep) {
  BySupport bySupport;
  VLMListValVLMISpecObject_var requests;
  static_cast<void>(HVXAnalysisDocUtils::GetFeatureListFromSet(setType, spStep, requests));
  for (int position = 1; position <= requests.Size(); ++position) {
    const VLMISamAnalysisSupport_var spSupport(requests[position]);
    if (spSupport == NULL_var) continue;
    VLMListValVLMBaseUnknown_var supports;
    static_cast<void>(spSupport->ListSupports(supports));
    for (int index = 1; index <= supports.Size(); ++index) {
      const VLMISamAnalysisConnector_var spConnector(supports[index]);
      if (spConnector == NULL_var) continue;
      VLMBaseUnknown_var spPointed;
      if (Failed(spConnector->GetPointedObject(spPointed)) || spPointed == NULL_var) continue;
      Entry& entry = bySupport[spPointed->Identity()];
      entry.spSupport = spPointed;
      const bool listed = !entry.requests.empty() && entry.requests.back() == requests[position];
      if (!listed) entry.requests.push_back(requests[position]);
    }
  }
  return bySupport;
}
