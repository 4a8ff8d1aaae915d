#include "session/InstalledFiles.h"

#include <dlfcn.h>

#include <stdexcept>

#include "session/FeatureCatalogs.h"
#include "session/Messages.h"

namespace standalone {
namespace {

namespace fs = std::filesystem;

fs::path FindOwnFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&FindOwnFolder), &info) == 0)
    throw std::runtime_error("the folder that this library is in cannot be found");
  return fs::canonical(info.dli_fname).parent_path();
}

// Found once: what the loader tells may be relative to a folder that the program leaves.
const fs::path& OwnFolder() {
  static const fs::path folder = FindOwnFolder();
  return folder;
}

}  // namespace

void InstalledFiles::Use(std::string_view language) {
  const fs::path data = DataFolder();
  FeatureCatalogs::Use(data / "catalogs");
  Messages::RequireComplete(data / "messages", language);
  Messages::Use(data / "messages", language);
}

fs::path InstalledFiles::UpgradeLibraryFile() {
  return OwnFolder() / "libHVXUpgradeComponents.so";
}

fs::path InstalledFiles::DataFolder() {
  const fs::path installed = OwnFolder() / HVX_DATA_FROM_LIBRARY;
  if (fs::exists(installed)) return installed.lexically_normal();
  return OwnFolder().parent_path() / "share/hvxupgrade";  // of a build tree
}

}  // namespace standalone
