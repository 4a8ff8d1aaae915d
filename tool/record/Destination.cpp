#include "record/Destination.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>

#include "file/Backup.h"
#include "file/DocumentError.h"
#include "file/FileIdentity.h"
#include "settings/UsageError.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path& file, std::string_view problem, std::string_view advice) {
  throw standalone::DocumentError(standalone::DocumentError::Kind::kUnwritable, file.string(), 0, problem,
                                  advice);
}

// What stands there, links followed. Refused when the system does not tell.
fs::file_status StatusOf(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::none && error != std::errc::permission_denied)
    Refuse(file, fmt::format("cannot be looked at ({})", error.message()), "Check that its disk is sound");
  return status;
}

// Where a write to `file` ends up: links are followed.
fs::path Followed(const fs::path& file) {
  std::error_code error;
  fs::path real = fs::weakly_canonical(fs::absolute(file), error);
  return error ? fs::absolute(file) : real;
}

// The folder, or the nearest above it that there is.
fs::path NearestOf(fs::path folder) {
  std::error_code error;
  while (!fs::exists(folder, error) && folder.has_relative_path()) folder = folder.parent_path();
  return folder;
}

Destination DestinationOf(const UpgradeArguments& arguments, const GivenDocument& input) {
  Destination destination;
  destination.overwrite = arguments.force || arguments.inPlace;
  destination.inPlace = arguments.inPlace;
  destination.backupSuffix = arguments.backupSuffix;
  if (arguments.inPlace) destination.file = input.file;
  destination.isOutput = arguments.output == kStandardStream;
  if (!arguments.output.empty() && !destination.isOutput) destination.file = arguments.output;
  destination.makesFolder = !arguments.outputDirectory.empty();
  if (destination.makesFolder) destination.file = fs::path(arguments.outputDirectory) / input.beneath;
  return destination;
}

// Files that the run writes, each with what it is for.
class Targets {
 public:
  // What is wrong when something else is to be written there; else nothing.
  std::string Add(const fs::path& file, const std::string& what) {
    const auto [entry, added] = targets_.try_emplace(Followed(file), what);
    if (added) return {};
    return fmt::format("{} would be written twice: as {} and as {}", file.string(), entry->second, what);
  }

 private:
  std::map<fs::path, std::string> targets_;
};

}  // namespace

std::string Destination::Text() const {
  if (isOutput) return "standard output";
  if (!file) return "";
  if (!inPlace) return file->string();
  if (backupSuffix.empty()) return "in place";
  return fmt::format("in place, the old document kept as {}", Backup().string());
}

fs::path Destination::Backup() const {
  if (backupSuffix.empty() || !file) return {};
  // Beside the document itself, where the file is a link to it.
  std::error_code error;
  return (fs::is_symlink(*file, error) ? Followed(*file) : *file).string() + backupSuffix;
}

bool Destination::Replaces(const fs::path& document) const {
  if (!file) return false;
  std::error_code error;  // a result that is not there yet replaces nothing
  return inPlace || Followed(*file) == Followed(document) || fs::equivalent(*file, document, error);
}

standalone::Compression Destination::CompressionFor(const fs::path& document,
                                                    standalone::Compression stored) const {
  if (isOutput) return standalone::Compression::kNone;
  const bool isNamed = file && !inPlace && !makesFolder;
  return isNamed && !Replaces(document) ? standalone::CompressionNamed(*file) : stored;
}

bool Destination::HoldsCopyOf(const fs::path& document) const {
  return file && !inPlace && standalone::HaveSameBytes(*file, document);
}

void Destination::Check() const {
  if (!file) return;
  if (!clash.empty()) Refuse(*file, clash, "Give the two documents in commands of their own");
  const fs::file_status status = StatusOf(*file);
  if (inPlace && !fs::is_regular_file(status)) return;  // reading it tells better what is wrong
  if (fs::is_directory(status)) Refuse(*file, "this is a folder", "Give a file name, or use --output-dir");
  RefuseTaken(*file, overwrite);
  fs::path folder = Followed(*file).parent_path();
  if (makesFolder) folder = NearestOf(folder);
  const fs::file_status folderStatus = StatusOf(folder);
  if (fs::exists(folderStatus) && !fs::is_directory(folderStatus))
    Refuse(folder, "this is a file, and results cannot be put into it", "Give the name of a folder");
  if (!fs::is_directory(folderStatus)) Refuse(*file, "its folder does not exist", "Create the folder first");
  if (access(folder.c_str(), W_OK) != 0) {
    Refuse(*file, fmt::format("its folder cannot be written ({})", std::strerror(errno)),
           "Choose another folder or change its permissions");
  }
  std::error_code error;
  const bool isTaken = !backupSuffix.empty() && fs::exists(fs::symlink_status(Backup(), error));
  // One of this very document is of a run that was killed.
  if (isTaken && !standalone::IsBackupOf(Backup(), *file))
    Refuse(Backup(), "the backup exists already", "Remove or rename it, or choose another suffix");
}

EmptyFolders::EmptyFolders(const std::vector<Destination>& destinations) {
  std::error_code error;
  for (const Destination& destination : destinations) {
    if (!destination.makesFolder || !destination.file) continue;
    for (fs::path folder = fs::absolute(*destination.file).parent_path();
         !missing_.contains(folder) && !fs::exists(folder, error) && folder.has_relative_path();
         folder = folder.parent_path())
      missing_.insert(folder);
  }
}

EmptyFolders::~EmptyFolders() {
  for (const fs::path& folder : missing_) rmdir(folder.c_str());  // fails where something stands in it
}

void RefuseTaken(const fs::path& file, bool overwrite) {
  const fs::file_status status = StatusOf(file);
  if (fs::exists(status) && !fs::is_regular_file(status))
    Refuse(file, "this is not a regular file", "Give the name of a file");
  std::error_code error;
  if (!overwrite && fs::exists(fs::symlink_status(file, error)))
    Refuse(file, "the file exists already", "Choose another name, or give --force to replace it");
}

void Destination::MakeFolder() const {
  if (makesFolder && file) tool::MakeFolder(file->parent_path());
}

void MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) return;
  Refuse(folder, fmt::format("the folder cannot be made ({})", error.message()),
         "Choose another folder or change the permissions of the one above it");
}

std::vector<Destination> DestinationsOf(const UpgradeArguments& arguments,
                                        const std::vector<GivenDocument>& documents) {
  if (!arguments.output.empty() && documents.size() > 1)
    throw UsageError("-o takes one document; give --output-dir DIR for several");
  std::map<fs::path, std::string> inputs;
  for (const GivenDocument& input : documents) inputs.try_emplace(Followed(input.file), input.file);
  Targets targets;
  std::vector<Destination> destinations;
  for (const GivenDocument& input : documents) {
    Destination& destination = destinations.emplace_back(DestinationOf(arguments, input));
    if (destination.file) destination.clash = targets.Add(*destination.file, "the result of " + input.file);
    if (destination.file && destination.clash.empty() && !destination.inPlace) {
      const auto replaced = inputs.find(Followed(*destination.file));
      if (replaced != inputs.end() && replaced->first != Followed(input.file))
        destination.clash = fmt::format("the result of {} would replace {}", input.file, replaced->second);
    }
    if (destination.clash.empty() && !destination.Backup().empty())
      destination.clash = targets.Add(destination.Backup(), "the backup of " + input.file);
  }
  const auto addOther = [&](const std::string& file, const std::string& what) {
    if (const auto input = inputs.find(Followed(file)); input != inputs.end())
      throw UsageError(fmt::format("{} would replace {}", what, input->second));
    if (const std::string clash = targets.Add(file, what); !clash.empty()) throw UsageError(clash);
  };
  if (!arguments.report.empty()) addOther(arguments.report, "the report");
  if (!arguments.trace.empty() && arguments.trace != "-") addOther(arguments.trace, "the trace");
  return destinations;
}

}  // namespace tool
