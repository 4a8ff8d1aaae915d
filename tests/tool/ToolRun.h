#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tool_testing {

/// A folder for one test's documents, and the program run on them.
class ToolTest : public testing::Test {
 protected:
  struct Ended {
    int code;  ///< The exit code; -1 when a signal ended the program.
    std::string out;
    std::string err;
  };

  ToolTest();
  ~ToolTest() override;

  /// Writes a document of these feature lines, which has been through `upgrades` (JSON texts with commas).
  std::string Document(const std::string& name, std::string_view lines, std::string_view upgrades = "") const;
  [[nodiscard]] std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  [[nodiscard]] static std::string Content(const std::string& file);
  static void Put(const std::string& file, std::string_view content);
  /// The names of all that stands in the folder, sorted, with blanks between.
  [[nodiscard]] std::string Names() const;

  /// `out`, where it is given, takes the standard output instead of the result; "closed" closes it.
  [[nodiscard]] Ended Run(const std::vector<std::string>& arguments,
                          const std::filesystem::path& out = {}) const;
  /// For tests that meddle with the running program.
  [[nodiscard]] pid_t Start(const std::vector<std::string>& arguments,
                            const std::filesystem::path& out = {}) const;
  [[nodiscard]] Ended Wait(pid_t program) const;
  /// Programs that are started from now on may have so many files open.
  void LimitOpenFiles(unsigned most) { mostOpenFiles_ = most; }
  [[nodiscard]] std::string ErrorsSoFar() const { return Content(streams_ / "err"); }

 private:
  std::filesystem::path folder_;
  std::filesystem::path streams_;
  unsigned mostOpenFiles_ = 0;  // 0 for no limit
};

/// A model with a job that upgrades change.
inline constexpr std::string_view kJobLines =
    R"({"id":1,"type":"AnalysisModel","name":"Model"}
{"id":2,"type":"AnalysisCase","name":"Case","alias":"Case","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}}
{"id":3,"type":"HVXJobLT","name":"Job","alias":"Job.1","father":{"ref":2},"attributes":{"AnalysisCase":{"ref":2},"RunType":"From InputFile","RestartFrequency":0,"InputFileFlag":1}}
)";
/// A job whose restart upgrade fails, since it has no analysis case.
inline constexpr std::string_view kBrokenJobLine =
    R"({"id":4,"type":"HVXJobLT","name":"Stray","alias":"Stray Job"}
)";

}  // namespace tool_testing
