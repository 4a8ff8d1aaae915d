#include "report/ReportFile.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "file/DocumentError.h"
#include "file/TemporaryName.h"
#include "settings/Sources.h"

namespace tool {
namespace {

using standalone::DocumentError;

constexpr std::size_t kBlock = std::size_t{1} << 16U;

bool IsNamed(std::string_view document, std::string_view name) {
  if (!document.ends_with(name)) return false;
  const std::size_t before = document.size() - name.size();
  return before == 0 || document[before - 1] == '/';
}

}  // namespace

ReportFile::ReportFile(const std::string& name, const std::vector<std::string>& documents)
    : name_(name), path_(name) {
  if (name == kStandardStream) KeepStandardInput();
  runs_ = ReadReport(
      path_,
      [&](const ReportLine& record) {
        const auto isMeant = [&record](const std::string& each) { return IsNamed(record.file, each); };
        if (documents.empty() || std::ranges::any_of(documents, isMeant)) begins_[record.file] = record.begin;
      },
      name_);
}

ReportFile::~ReportFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

void ReportFile::KeepStandardInput() {
  name_ = "standard input";
  const std::filesystem::path place = std::filesystem::temp_directory_path() / "hvxupgrade-report";
  const auto fail = [&](DocumentError::Kind kind, std::string_view doing, std::string_view advice) {
    throw DocumentError(kind, name_, 0, fmt::format("{} ({})", doing, std::strerror(errno)), advice);
  };
  std::string temporary;
  descriptor_ = standalone::MakeTemporary(place, temporary);
  const auto failKeeping = [&] {
    fail(DocumentError::Kind::kUnwritable, fmt::format("cannot be kept in {}", place.parent_path().string()),
         "Check the folder, its permissions and the room on its disk, or give the name of a file");
  };
  if (descriptor_ < 0) failKeeping();
  unlink(temporary.c_str());
  std::array<char, kBlock> block{};
  for (;;) {
    const ssize_t got = read(STDIN_FILENO, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail(DocumentError::Kind::kUnreadable, "cannot be read", "Give the name of a file");
    if (got == 0) break;
    for (ssize_t done = 0; done < got;) {
      const ssize_t put = write(descriptor_, block.data() + done, static_cast<std::size_t>(got - done));
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) failKeeping();
      done += put;
    }
  }
  path_ = fmt::format("/proc/self/fd/{}", descriptor_);
}

bool ReportFile::IsDryRun() const {
  const std::vector<std::string>& arguments = runs_.head.arguments;
  const auto names = std::ranges::find(arguments, "--");
  return std::find(arguments.begin(), names, "--dry-run") != names;
}

std::vector<std::string> ReportFile::NotThere(const std::vector<std::string>& documents) const {
  std::vector<std::string> missing;
  for (const std::string& each : documents) {
    if (std::ranges::none_of(begins_, [&each](const auto& there) { return IsNamed(there.first, each); }))
      missing.push_back(each);
  }
  return missing;
}

void ReportFile::ForEach(const std::function<void(const ReportLine&)>& take) const {
  static_cast<void>(ReadReport(
      path_,
      [&](const ReportLine& record) {
        const auto counts = begins_.find(record.file);
        if (counts != begins_.end() && counts->second == record.begin) take(record);
      },
      name_));
}

void ReportFile::CopyRecord(const ReportLine& record,
                            const std::function<void(std::string_view)>& write) const {
  std::ifstream stream(path_, std::ios::binary);
  stream.seekg(record.begin);
  std::vector<char> block(kBlock);
  for (std::int64_t left = record.size - 1; left > 0;) {
    const auto size = std::min<std::int64_t>(left, static_cast<std::int64_t>(block.size()));
    if (!stream.read(block.data(), size))
      throw DocumentError(DocumentError::Kind::kUnreadable, name_, 0,
                          "the report was changed while it was read", "Run the same command again");
    write({block.data(), static_cast<std::size_t>(size)});
    left -= size;
  }
}

}  // namespace tool
