#include "settings/Installation.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "file/FileDigest.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "settings/UsageError.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLibraryName = "libHVXUpgradeComponents.so";

// The folder that holds bin/, lib/ and share/, in the build tree as when installed.
fs::path Prefix() {
  return fs::read_symlink("/proc/self/exe").parent_path().parent_path();
}

fs::path DefaultLibrary() {
  const fs::path installed = Prefix() / HVXUPGRADE_LIBDIR / "hvxupgrade" / kLibraryName;
  return fs::exists(installed) ? installed : Prefix() / "lib" / kLibraryName;
}

// The folders that the environment names stand before those of the command line. In which order libraries are
// given decides nothing but which of several faults is told first.
std::vector<fs::path> LibraryFilesOf(const Places& places) {
  std::vector<fs::path> folders;
  const char* const variable = std::getenv(kPluginsVariable);
  std::istringstream named(variable == nullptr ? "" : variable);
  for (std::string folder; std::getline(named, folder, ':');) {
    if (!folder.empty()) folders.emplace_back(folder);
  }
  folders.insert(folders.end(), places.plugins.begin(), places.plugins.end());
  std::vector<fs::path> files;
  if (places.defaultLibrary) files.push_back(DefaultLibrary());
  for (const fs::path& folder : folders) {
    const std::vector<fs::path> plugins = standalone::PluginsIn(folder);
    files.insert(files.end(), plugins.begin(), plugins.end());
  }
  files.insert(files.end(), places.libraries.begin(), places.libraries.end());
  if (files.empty())
    throw UsageError("--no-default-library leaves no upgrade library: give one with --library or --plugins");
  return files;
}

std::string SumOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  standalone::Sha256 sum;
  std::vector<char> block(std::size_t{1} << 16U);
  do {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    sum.Add({block.data(), static_cast<std::size_t>(stream.gcount())});
  } while (stream);
  if (!stream.eof())
    throw std::runtime_error(
        fmt::format("{}: the upgrade library cannot be read ({}). Check the path and the permissions",
                    file.string(), std::strerror(errno)));
  standalone::FileDigest digest;
  digest.sha256 = sum.Take();
  return digest.Sha256Text();
}

}  // namespace

Installation::Installation(const Places& places) {
  standalone::FeatureCatalogs::Use(DataFolder(places) / "catalogs");
  standalone::Messages::RequireComplete(DataFolder(places) / "messages", "en");
  libraries_ = std::make_unique<standalone::UpgradeLibraries>(LibraryFilesOf(places));
  manager_ = std::make_unique<standalone::VersionManager>(libraries_->Descriptions());
}

std::vector<LibraryFile> Installation::LibraryFiles() const {
  std::vector<LibraryFile> all;
  for (const auto& library : libraries_->All()) {
    const HVXUpgradeLibrary& description = library->Description();
    const fs::path file = fs::absolute(library->File()).lexically_normal();
    all.push_back({.name = description.name,
                   .version = description.version == nullptr ? "" : description.version,
                   .file = file.string(),
                   .sha256 = SumOf(file),
                   .continues = {description.continues.begin(), description.continues.end()}});
  }
  return all;
}

fs::path DataFolder(const Places& places) {
  return places.data.empty() ? Prefix() / "share" / "hvxupgrade" : places.data;
}

}  // namespace tool
