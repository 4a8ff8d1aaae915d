#include "archive/DoneDocuments.h"

#include <filesystem>

#include "file/FileIdentity.h"

namespace tool {
namespace {

bool IsUnchanged(const std::optional<RecordedFile>& recorded) {
  if (!recorded) return false;
  const auto now = standalone::FileIdentity::Of(std::filesystem::path(recorded->path));
  return now && static_cast<std::uint64_t>(now->size) == recorded->bytes &&
         now->modified == recorded->modified;
}

}  // namespace

DoneDocuments::DoneDocuments(const std::vector<GivenDocument>& documents, const std::string& again)
    : again_(again), done_(documents.size()) {
  places_.reserve(documents.size());
  for (std::size_t i = 0; i < documents.size(); ++i) places_.emplace(documents[i].file, i);
}

void DoneDocuments::Add(const ReportLine& line) {
  ++records_;
  const auto place = places_.find(line.file);
  if (place == places_.end()) return;
  const DocumentResult& result = line.result;
  const bool isWanted = again_ == "all" || (again_ == "failed" && !result.Succeeded()) ||
                        (again_ == "incomplete" && !result.IsComplete());
  const bool isInPlace = line.output && line.output->path == line.file;
  // Without either, such as of a file that was not there, nothing tells that it changed.
  const bool isUnchanged = isInPlace ? IsUnchanged(line.output) : IsUnchanged(line.input);
  Done& done = done_[place->second];
  done.isOwnResult = !isInPlace && IsUnchanged(line.output);
  done.isDone = isUnchanged && !isWanted && (!line.output || isInPlace || done.isOwnResult);
  done.record = records_;
}

void DoneDocuments::AddTo(RunSummary& summary, const std::filesystem::path& report) const {
  if (records_ == 0) return;
  std::size_t record = 0;
  ReadReport(report, [&](const ReportLine& line) {
    ++record;
    const auto place = places_.find(line.file);
    if (place != places_.end() && done_[place->second].isDone && done_[place->second].record == record)
      summary.Add(line.file, line.result);
  });
}

}  // namespace tool
