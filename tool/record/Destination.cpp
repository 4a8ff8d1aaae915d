#include "record/Destination.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "file/Backup.h"
#include "file/DocumentError.h"
#include "file/FileIdentity.h"

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
    Refuse(file, fmt::format("cannot be checked ({})", error.message()), "Check that its disk is sound");
  return status;
}

// The folder, or the nearest above it that there is.
fs::path NearestOf(fs::path folder) {
  std::error_code error;
  while (!fs::exists(folder, error) && folder.has_relative_path()) folder = folder.parent_path();
  return folder;
}

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
  return (fs::is_symlink(*file, error) ? RealPathOf(*file) : *file).string() + backupSuffix;
}

bool Destination::Replaces(const fs::path& document) const {
  if (!file) return false;
  std::error_code error;  // a result that is not there yet replaces nothing
  return inPlace || RealPathOf(*file) == RealPathOf(document) || fs::equivalent(*file, document, error);
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
  fs::path folder = RealPathOf(*file).parent_path();
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
  Refuse(folder, fmt::format("the folder cannot be created ({})", error.message()),
         "Choose another folder or change the permissions of the one above it");
}

}  // namespace tool
