#pragma once

#include <map>
#include <string>
#include <vector>

#include "archive/Processes.h"
#include "archive/Supervisor.h"
#include "record/GivenDocument.h"
#include "settings/Arguments.h"
#include "terminal/RunProgress.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// What the check of a document comes to, as a worker tells it.
struct CheckOutcome {
  ExitCode code = ExitCode::kNeedsPerson;
  bool isChecked = false;    ///< Else `problem` says why not.
  bool isNotLoaded = false;  ///< It was refused for a library that is not loaded.
  std::string headline;
  std::string text;   ///< For people, with the headline.
  std::string entry;  ///< For a JSON list, where it is wanted; also of a document that was not checked.
  std::string problem;

  template <class Self, class Raw, class Text>
  static void VisitFields(Self& self, const Raw& raw, const Text& text) {
    raw(self.code);
    raw(self.isChecked);
    raw(self.isNotLoaded);
    text(self.headline);
    text(self.text);
    text(self.entry);
    text(self.problem);
  }
};

/// Checks documents in worker processes, and tells what comes of each.
class ArchiveCheck {
 public:
  /// All must outlive it.
  ArchiveCheck(const CheckArguments& arguments, const standalone::VersionManager& manager,
               const std::vector<GivenDocument>& documents);

  RunEnd Run();
  [[nodiscard]] ExitCode Code() const { return code_; }
  [[nodiscard]] std::size_t Left() const { return documents_.size() - state_.done; }
  [[nodiscard]] const std::string& StartFailure() const { return processes_.StartFailure(); }
  /// Whether documents need a person of which no more than that was told.
  [[nodiscard]] bool HidesFindings() const {
    return counts_.contains(ExitCode::kNeedsPerson) && documents_.size() > 1 && !arguments_.many.verbose &&
           !arguments_.all;
  }
  /// What JSON is told of each document, in their order; empty of those that were not looked at.
  [[nodiscard]] const std::vector<std::string>& Entries() const { return entries_; }
  /// "3 documents: 2 conform, 1 unreadable or broken".
  [[nodiscard]] std::string Verdict() const;

 private:
  [[nodiscard]] std::string Work(std::size_t document) const;
  bool Close(std::size_t document, const WorkEnd& end);
  void Tell(const CheckOutcome& outcome) const;
  void TellProgress();

  const CheckArguments& arguments_;
  const standalone::VersionManager& manager_;
  const std::vector<GivenDocument>& documents_;
  std::vector<Load> loads_;
  std::vector<std::string> entries_;
  std::map<ExitCode, std::size_t> counts_;
  std::size_t notLoaded_ = 0;
  std::size_t unchecked_ = 0;
  ExitCode code_ = ExitCode::kDone;
  std::map<std::size_t, bool> atWork_;
  RunState state_;
  RunProgress progress_;
  Processes processes_;
};

}  // namespace tool
