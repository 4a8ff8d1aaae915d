#include "HVXContactPairIndex.h"

void HVXContactPairIndex::Add(const VLMILinkableObject_var& spFirst, const VLMILinkableObject_var& spSecond,
                              const VLMISpecObject_var& spPair) {
  static_cast<void>(
      entries_.try_emplace({spFirst->Identity(), spSecond->Identity()}, Entry{spFirst, spSecond, spPair}));
}

VLMISpecObject_var HVXContactPairIndex::Find(const VLMILinkableObject_var& spFirst,
                                             const VLMILinkableObject_var& spSecond) const {
  const auto found = entries_.find({spFirst->Identity(), spSecond->Identity()});
  return found == entries_.end() ? VLMISpecObject_var() : found->second.spPair;
}
