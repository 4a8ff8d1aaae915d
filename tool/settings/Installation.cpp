#include "settings/Installation.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "file/FileDigest.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"

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

// Of two extensions of one late type that offer one interface a feature has only one, and what the other
// would have migrated would be recorded as done.
void RefuseBoth(const HVXUpgradeLibrary& one, const fs::path& fileOfOne, const HVXUpgradeLibrary& other,
                const fs::path& fileOfOther) {
  std::map<std::pair<std::string_view, std::uint64_t>, const HVXUpgradeClass*> bound;
  for (const HVXUpgradeClass* const each : one.classes) {
    for (const std::string_view lateType : each->lateTypes)
      bound.emplace(std::pair(lateType, each->interface.Value()), each);
  }
  for (const HVXUpgradeClass* const each : other.classes) {
    for (const std::string_view lateType : each->lateTypes) {
      const auto found = bound.find({lateType, each->interface.Value()});
      if (found == bound.end()) continue;
      throw std::runtime_error(
          fmt::format("{} ({}) and {} ({}) both extend {} with {}: {} and {}. A feature has only one of "
                      "them; give one of the "
                      "libraries alone",
                      one.name, fileOfOne.string(), other.name, fileOfOther.string(), lateType,
                      each->interface.Name(), found->second->name, each->name));
    }
  }
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
  files_ = places.libraries;
  if (files_.empty()) files_.push_back(DefaultLibrary());
  std::vector<const HVXUpgradeLibrary*> descriptions;
  for (const fs::path& file : files_) {
    libraries_.push_back(std::make_unique<standalone::UpgradeLibrary>(file));
    descriptions.push_back(&libraries_.back()->Description());
    for (std::size_t i = 0; i + 1 < descriptions.size(); ++i)
      RefuseBoth(*descriptions[i], files_[i], *descriptions.back(), file);
  }
  manager_ = std::make_unique<standalone::VersionManager>(descriptions);
}

std::vector<LibraryFile> Installation::LibraryFiles() const {
  std::vector<LibraryFile> all;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    const HVXUpgradeLibrary& description = libraries_[i]->Description();
    const fs::path file = fs::absolute(files_[i]).lexically_normal();
    all.push_back({description.name, description.version, file.string(), SumOf(file)});
  }
  return all;
}

fs::path DataFolder(const Places& places) {
  return places.data.empty() ? Prefix() / "share" / "hvxupgrade" : places.data;
}

}  // namespace tool
