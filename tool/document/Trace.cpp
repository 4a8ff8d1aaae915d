#include "document/Trace.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "file/DocumentError.h"
#include "report/ResultCodes.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::DocumentError;

// A trace that lacks lines would mislead, so the work ends.
void Write(std::FILE* stream, const std::string& file, std::string_view line) {
  if (std::fwrite(line.data(), 1, line.size(), stream) == line.size() && std::ferror(stream) == 0) return;
  throw DocumentError(DocumentError::Kind::kUnwritable, file, 0,
                      fmt::format("the trace cannot be written ({})", std::strerror(errno)),
                      "Make room on its disk, or leave --trace out");
}

}  // namespace

Trace::Trace(const std::string& file, bool overwrite)
    : file_(file), owned_(nullptr, &std::fclose), stream_(stderr) {
  if (file == "-") return;
  if (!overwrite && std::filesystem::is_regular_file(file)) {
    throw DocumentError(DocumentError::Kind::kUnwritable, file, 0, "the trace file exists already",
                        "Choose another name, or give --force to replace it");
  }
  owned_.reset(std::fopen(file.c_str(), "we"));
  stream_ = owned_.get();
  if (stream_ == nullptr) {
    throw DocumentError(DocumentError::Kind::kUnwritable, file, 0,
                        fmt::format("the trace cannot be written ({})", std::strerror(errno)),
                        "Check the folder and its permissions");
  }
  std::setvbuf(stream_, nullptr, _IOLBF, BUFSIZ);
}

void Trace::BeginDocument(const std::string& name) const {
  Write(stream_, file_, fmt::format("# {}\n", Printable(name)));
}

void Trace::Watch(standalone::UpgradeWatch& watch) const {
  const auto begin = [](const standalone::Feature& feature, const HVXUpgradeBinding& row) {
    return fmt::format("# {} on {} {}", row.identifier.View(), feature.id, Word(feature.TypeName()));
  };
  watch.onRoutine = [this, begin](const standalone::Feature& feature, const HVXUpgradeBinding& row) {
    Write(stream_, file_, begin(feature, row) + "\n");
  };
  watch.onRoutineDone = [this, begin](const standalone::Feature& feature, const HVXUpgradeBinding& row,
                                      HRESULT result) {
    if (Failed(result))
      Write(stream_, file_, fmt::format("{}: failed, {}\n", begin(feature, row), CodeWithName(result)));
  };
}

standalone::CheckpointPlan Trace::Plan() const {
  standalone::CheckpointPlan plan;
  plan.onCall = [stream = stream_, file = file_](const standalone::HostCall& call,
                                                 const standalone::Feature* feature) {
    fmt::memory_buffer line;
    auto to = std::back_inserter(line);
    fmt::format_to(to, "{}", call.operation);
    if (feature != nullptr) fmt::format_to(to, " {} {}", feature->id, Word(feature->TypeName()));
    if (!call.detail.empty()) fmt::format_to(to, " {}", Quoted(call.detail));
    line.push_back('\n');
    Write(stream, file, {line.data(), line.size()});
  };
  return plan;
}

}  // namespace tool
