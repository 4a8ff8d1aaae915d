#pragma once

#include <unordered_map>

#include "model/Feature.h"

namespace standalone {

/// As long as it lives, `CaseAbove` remembers what it found above features that stand deep, so that asking
/// for every feature of a document costs no more than one walk over it. No feature may be moved, and none may
/// get another late type, in the meantime. One at a time in a thread.
class CaseMemo {
 public:
  CaseMemo();
  ~CaseMemo();
  CaseMemo(const CaseMemo&) = delete;
  CaseMemo& operator=(const CaseMemo&) = delete;

  /// The one that lives in this thread; null without one.
  static CaseMemo* Current();

  Feature* CaseAbove(Feature& feature);

 private:
  std::unordered_map<const Feature*, Feature*> found_;  // null where no case stands above
};

}  // namespace standalone
