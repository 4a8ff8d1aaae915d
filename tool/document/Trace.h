#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "checkpoint/Checkpoint.h"
#include "upgrade/UpgradeRun.h"

namespace tool {

/// A text file with a line for every host operation: its name, the feature (id and late type) and the key,
/// name or text that it was given. Lines of comment, which begin with '#', tell the documents apart. Each
/// line is written at once, so that the trace of a run that crashes ends where the run did.
class Trace {
 public:
  /// `file`: "-" stands for standard error. Throws `standalone::DocumentError` (`kUnwritable`) when it cannot
  /// be made, or exists and `overwrite` is false.
  Trace(const std::string& file, bool overwrite);

  // Both, and the calls traced, throw the same when the trace cannot be written.
  void BeginDocument(const std::string& name) const;
  /// Has the routines traced, in lines of comment: which identifier is at work on which feature, and what
  /// came of it. The trace must outlive its use.
  void Watch(standalone::UpgradeWatch& watch) const;
  /// A plan that traces every call. The trace must outlive its use.
  [[nodiscard]] standalone::CheckpointPlan Plan() const;

 private:
  std::string file_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> owned_;
  std::FILE* stream_;
};

}  // namespace tool
