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
#include "settings/ForeignCode.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

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

// A folder that holds no upgrade library was meant to be another one.
std::vector<fs::path> PluginsGivenIn(const fs::path& folder) {
  std::vector<fs::path> files = standalone::PluginsIn(folder);
  if (files.empty())
    throw std::runtime_error(
        fmt::format("{}: this folder of plug-ins holds no upgrade library (*.so). Give the folder that they "
                    "are in, or leave out --plugins",
                    folder.string()));
  return files;
}

// The variable is set for all users of a machine, who did not choose the folder. One that holds nothing yet,
// or no more, stops nobody; it is told, since their documents would lack the upgrades.
std::vector<fs::path> PluginsNamedIn(const fs::path& folder) try {
  std::vector<fs::path> files = standalone::PluginsIn(folder);
  if (files.empty())
    Complain(fmt::format("{} names {}, a folder that holds no upgrade library (*.so)", kPluginsVariable,
                         folder.string()));
  return files;
} catch (const std::runtime_error& error) {
  throw std::runtime_error(fmt::format("{}: {}", kPluginsVariable, error.what()));
}

// The folders that the environment names stand before those of the command line. In which order libraries are
// given decides nothing but which of several faults is told first.
std::vector<fs::path> LibraryFilesOf(const Places& places) {
  std::vector<fs::path> files;
  const auto append = [&files](const std::vector<fs::path>& more) {
    files.insert(files.end(), more.begin(), more.end());
  };
  if (places.defaultLibrary) files.push_back(DefaultLibrary());
  const char* const variable = std::getenv(kPluginsVariable);
  std::istringstream named(variable == nullptr ? "" : variable);
  for (std::string folder; std::getline(named, folder, ':');) {
    if (!folder.empty()) append(PluginsNamedIn(folder));
  }
  for (const fs::path& folder : places.plugins) append(PluginsGivenIn(folder));
  append(places.libraries);
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
  const std::vector<fs::path> files = LibraryFilesOf(places);
  const ForeignCode foreign;
  libraries_ = std::make_unique<standalone::UpgradeLibraries>(files);
  manager_ = std::make_unique<standalone::VersionManager>(libraries_->Descriptions());
}

// A library that ends the program while it goes must not take along what was printed.
Installation::~Installation() {
  const ForeignCode foreign;
  manager_.reset();
  libraries_.reset();
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
