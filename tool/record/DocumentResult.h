#pragma once

#include <string>
#include <string_view>

#include "record/Comparison.h"
#include "settings/ExitCode.h"

namespace tool {

enum class Verdict {
  kUpgraded,       ///< Possibly with things that need a person.
  kCurrent,        ///< Nothing was pending; what earlier runs left behind may need a person.
  kNothingChosen,  ///< Nothing that was pending was chosen.
  kNotLookedInto,  ///< Nothing is pending, says its header; more of it was not read.
  kDoneBefore,     ///< The result that an earlier run made of it stands there already.
  kHeldBack,       ///< Upgraded, but not written, because something needs a person.
  kBadInput,
  kNewer,
  kNotLoaded,  ///< It was upgraded by a library that is not loaded, and something is pending.
  kUnwritable,
  kChangedMeanwhile,  ///< The document is no longer what was read; the result was not put in its place.
  kAborted,
  kTimedOut,
  kCrashed,
  kInterrupted,
};

/// What became of one document, as a worker process tells its parent.
struct DocumentResult {
  Verdict verdict = Verdict::kCrashed;
  std::size_t features = 0;      ///< Of the document before the run.
  std::size_t identifiers = 0;   ///< That were run.
  std::size_t needsPerson = 0;   ///< Things that a person must look at.
  std::size_t foundByCheck = 0;  ///< Those of them that a check of the result finds too; 0 when unknown.
  std::size_t peakMemory = 0;    ///< Of the worker, in bytes; 0 when it is not known.
  std::size_t dropped = 0;       ///< Attributes with dropped values, where these were looked for.
  bool failsOnDrop = false;      ///< Dropped values are wanted to be a failure.
  Totals totals;
  std::string problem;       ///< Why there is no result; empty when there is one.
  std::string kept;          ///< Where the result is when its document was changed meanwhile; mostly empty.
  std::string inputSha256;   ///< Of the files as they are stored, in hexadecimal digits; empty without a
  std::string resultSha256;  ///< report, and where there is none.
  std::string summary;       ///< For people; empty when there is no result.
  std::string table;         ///< What comes after the summary, behind the places of result and report.
  std::string attention;     ///< JSON objects, separated by commas: what needs a person.
  std::string missing;  ///< The same: libraries whose upgrades it has been through and nobody here knows.

  /// Whether the upgrade was carried through, written or not.
  [[nodiscard]] bool Succeeded() const { return verdict <= Verdict::kHeldBack; }
  /// Whether all that the upgrade was to do is done.
  [[nodiscard]] bool IsComplete() const {
    return verdict <= Verdict::kDoneBefore && needsPerson == 0 && !(failsOnDrop && dropped != 0);
  }

  template <class Self, class Raw, class Text>
  static void VisitFields(Self& self, const Raw& raw, const Text& text) {
    raw(self.verdict);
    raw(self.features);
    raw(self.identifiers);
    raw(self.needsPerson);
    raw(self.foundByCheck);
    raw(self.peakMemory);
    raw(self.dropped);
    raw(self.failsOnDrop);
    raw(self.totals);
    text(self.problem);
    text(self.kept);
    text(self.inputSha256);
    text(self.resultSha256);
    text(self.summary);
    text(self.table);
    text(self.attention);
    text(self.missing);
  }
};

/// A word for the verdict, as reports hold it.
[[nodiscard]] std::string_view NameOf(Verdict verdict);
/// The verdict of that word; `kCrashed` for none.
[[nodiscard]] Verdict VerdictNamed(std::string_view name);
[[nodiscard]] ExitCode ExitCodeOf(const DocumentResult& result);

/// The result as bytes for the same program, and back.
[[nodiscard]] std::string Pack(const DocumentResult& result);
[[nodiscard]] DocumentResult Unpack(std::string_view bytes);

}  // namespace tool
