#pragma once

#include <map>
#include <utility>

#include "modeler/VLMILinkableObject.h"
#include "modeler/VLMISpecObject.h"

/// Contact pairs by the two objects that they connect, the order of the two counting.
class HVXContactPairIndex {
 public:
  /// Where several pairs connect the same two objects, the one added first is found.
  void Add(const VLMILinkableObject_var& spFirst, const VLMILinkableObject_var& spSecond,
           const VLMISpecObject_var& spPair);

  /// Null when no pair connects the two.
  [[nodiscard]] VLMISpecObject_var Find(const VLMILinkableObject_var& spFirst,
                                        const VLMILinkableObject_var& spSecond) const;

 private:
  struct Entry {
    // Held, so that no other object can come to bear the identity that the entry is found by.
    VLMILinkableObject_var spFirst;
    VLMILinkableObject_var spSecond;
    VLMISpecObject_var spPair;
  };

  std::map<std::pair<const void*, const void*>, Entry> entries_;
};
