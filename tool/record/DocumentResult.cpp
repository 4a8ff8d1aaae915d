#include "record/DocumentResult.h"

#include <cstring>
#include <type_traits>

namespace tool {
namespace {

// One function for both directions keeps them the same.
template <class Result, class Raw, class Text>
void Visit(Result& result, const Raw& raw, const Text& text) {
  raw(result.verdict);
  raw(result.features);
  raw(result.identifiers);
  raw(result.needsPerson);
  raw(result.peakMemory);
  raw(result.dropped);
  raw(result.failsOnDrop);
  raw(result.totals);
  text(result.problem);
  text(result.kept);
  text(result.inputSha256);
  text(result.resultSha256);
  text(result.summary);
  text(result.attention);
}

}  // namespace

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
      return "badInput";
    case Verdict::kNewer:
      return "newer";
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
  std::string bytes;
  const auto raw = [&bytes](const auto& value) {
    static_assert(std::is_trivially_copyable_v<std::remove_cvref_t<decltype(value)>>);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  };
  Visit(result, raw, [&](const std::string& text) {
    raw(text.size());
    bytes += text;
  });
  return bytes;
}

DocumentResult Unpack(std::string_view bytes) {
  DocumentResult result;
  const auto raw = [&bytes](auto& value) {
    std::memcpy(&value, bytes.data(), sizeof value);
    bytes.remove_prefix(sizeof value);
  };
  Visit(result, raw, [&](std::string& text) {
    std::size_t size = 0;
    raw(size);
    text = bytes.substr(0, size);
    bytes.remove_prefix(size);
  });
  return result;
}

}  // namespace tool
