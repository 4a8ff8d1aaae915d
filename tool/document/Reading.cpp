#include "document/Reading.h"

#include "file/DocumentReader.h"
#include "report/JsonOutput.h"
#include "terminal/Progress.h"

namespace tool {

standalone::DocumentPtr ReadWithProgress(const std::string& file) {
  Progress progress(file, true);
  standalone::ReadOptions options;
  options.onProgress = [&progress](std::size_t read, std::size_t total) {
    progress.Update("reading", read, total);
  };
  return standalone::ReadDocument(file, options);
}

ExitCode ExitCodeOf(const standalone::DocumentError& error) {
  switch (error.GetKind()) {
    case standalone::DocumentError::Kind::kNewer:
      return ExitCode::kNewer;
    case standalone::DocumentError::Kind::kUnwritable:
      return ExitCode::kUnwritable;
    case standalone::DocumentError::Kind::kUnreadable:
    case standalone::DocumentError::Kind::kInvalid:
      break;
  }
  return ExitCode::kBadInput;
}

Verdict VerdictOf(const standalone::DocumentError& error) {
  return error.GetKind() == standalone::DocumentError::Kind::kNewer ? Verdict::kNewer : Verdict::kBadInput;
}

void AppendUnreadable(fmt::memory_buffer& out, const std::string& file, Verdict verdict,
                      std::string_view problem) {
  JsonObject entry(out);
  entry.Name("file", file);
  entry.Text("verdict", NameOf(verdict));
  entry.Text("words", verdict == Verdict::kNewer ? "newer than this program" : NameOf(verdict));
  entry.Text("problem", problem);
  entry.Close();
}

}  // namespace tool
