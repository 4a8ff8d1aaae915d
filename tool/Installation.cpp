#include "Installation.h"

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

}  // namespace

Installation::Installation(const Places& places) {
  standalone::FeatureCatalogs::Use(DataFolder(places) / "catalogs");
  standalone::Messages::RequireComplete(DataFolder(places) / "messages", "en");
  std::vector<fs::path> files = places.libraries;
  if (files.empty()) files.push_back(DefaultLibrary());
  std::vector<const HVXUpgradeLibrary*> descriptions;
  for (const fs::path& file : files) {
    libraries_.push_back(std::make_unique<standalone::UpgradeLibrary>(file));
    descriptions.push_back(&libraries_.back()->Description());
  }
  manager_ = std::make_unique<standalone::VersionManager>(descriptions);
}

fs::path DataFolder(const Places& places) {
  return places.data.empty() ? Prefix() / "share" / "hvxupgrade" : places.data;
}

}  // namespace tool
