#include "record/DocumentResult.h"

#include "record/Packing.h"

namespace tool {

std::string_view NameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kUpgraded:
      return "upgraded";
    case Verdict::kCurrent:
      return "current";
    case Verdict::kNothingChosen:
      return "nothingChosen";
    case Verdict::kNotLookedInto:
      return "notLookedInto";
    case Verdict::kDoneBefore:
      return "doneBefore";
    case Verdict::kHeldBack:
      return "heldBack";
    case Verdict::kBadInput:
      return "broken";
    case Verdict::kNewer:
      return "newer";
    case Verdict::kNotLoaded:
      return "notLoaded";
    case Verdict::kUnwritable:
      return "unwritable";
    case Verdict::kChangedMeanwhile:
      return "changedMeanwhile";
    case Verdict::kAborted:
      return "aborted";
    case Verdict::kTimedOut:
      return "timedOut";
    case Verdict::kCrashed:
      return "crashed";
    case Verdict::kInterrupted:
      return "interrupted";
  }
  return "";
}

Verdict VerdictNamed(std::string_view name) {
  for (int i = 0; i <= static_cast<int>(Verdict::kInterrupted); ++i) {
    if (NameOf(static_cast<Verdict>(i)) == name) return static_cast<Verdict>(i);
  }
  return Verdict::kCrashed;
}

ExitCode ExitCodeOf(const DocumentResult& result) {
  switch (result.verdict) {
    case Verdict::kUpgraded:
    case Verdict::kCurrent:
    case Verdict::kNothingChosen:
    case Verdict::kNotLookedInto:
    case Verdict::kDoneBefore:
    case Verdict::kHeldBack:
      return result.IsComplete() ? ExitCode::kDone : ExitCode::kFailedFeatures;
    case Verdict::kBadInput:
      return ExitCode::kBadInput;
    case Verdict::kNewer:
    case Verdict::kNotLoaded:
      return ExitCode::kNewer;
    case Verdict::kUnwritable:
    case Verdict::kChangedMeanwhile:
      return ExitCode::kUnwritable;
    case Verdict::kInterrupted:
      return ExitCode::kInterrupted;
    case Verdict::kAborted:
    case Verdict::kTimedOut:
    case Verdict::kCrashed:
      break;
  }
  return ExitCode::kFailedFeatures;
}

std::string Pack(const DocumentResult& result) {
  return PackFields(result);
}

DocumentResult Unpack(std::string_view bytes) {
  return UnpackFields<DocumentResult>(bytes);
}

}  // namespace tool
