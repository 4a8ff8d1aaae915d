#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "record/DocumentResult.h"

namespace tool {

/// All documents of a run, in a few lines and numbers. It takes no more room for many documents than for
/// some.
class RunSummary {
 public:
  explicit RunSummary(bool dryRun) : dryRun_(dryRun) {}

  void Add(const std::string& file, const DocumentResult& result);

  [[nodiscard]] std::size_t Documents() const { return documents_; }
  [[nodiscard]] std::size_t Features() const { return features_; }
  [[nodiscard]] const Totals& All() const { return totals_; }
  [[nodiscard]] ExitCode Code() const { return code_; }
  /// Whether some result was written.
  [[nodiscard]] bool Wrote() const { return wrote_; }

  /// Whether something in a document that was gone through needs a person.
  [[nodiscard]] bool NeedsPerson() const;
  /// Whether a check of the results would not find all of that.
  [[nodiscard]] bool NeedsMoreThanCheck() const { return needsMoreThanCheck_; }
  /// A document that was gone through and in which something needs a person.
  struct InNeed {
    std::string file;
    bool isWritten;  ///< With a result of this run.
  };
  /// The first of them, a few.
  [[nodiscard]] const std::vector<InNeed>& FirstInNeed() const { return firstInNeed_; }
  [[nodiscard]] std::size_t CountInNeed() const { return inNeed_; }
  /// How many of them are written.
  [[nodiscard]] std::size_t CountWrittenInNeed() const { return writtenInNeed_; }

  /// "4 documents: 3 upgraded, 1 stopped".
  [[nodiscard]] std::string Verdict() const;
  /// Which documents need a person or have no result, by what is wrong with them: the first twenty of each
  /// kind, and how many more. `where`: what lists all of them; may be empty. Empty when there are none.
  [[nodiscard]] std::string ClosingList(const std::string& where) const;

 private:
  enum class Group {
    kUpgraded,
    kUpgradedInNeed,
    kHeldBack,
    kCurrent,
    kNotLookedInto,
    kCurrentInNeed,
    kChangedMeanwhile,
    kGivenUp,
    kBroken,
    kNewer,
    kNotLoaded,
    kUnwritable,
    kCount,
  };
  [[nodiscard]] static Group GroupOf(const DocumentResult& result);

  bool dryRun_;
  std::size_t documents_ = 0;
  std::size_t features_ = 0;
  Totals totals_;
  ExitCode code_ = ExitCode::kDone;
  bool wrote_ = false;
  bool needsMoreThanCheck_ = false;
  std::vector<InNeed> firstInNeed_;
  std::size_t inNeed_ = 0;
  std::size_t writtenInNeed_ = 0;
  std::array<std::size_t, static_cast<std::size_t>(Group::kCount)> counts_{};
  std::map<Group, std::vector<std::string>> first_;  // lines about the first documents that need a person
};

}  // namespace tool
