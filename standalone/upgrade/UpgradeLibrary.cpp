#include "upgrade/UpgradeLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <stdexcept>

namespace standalone {

UpgradeLibrary::UpgradeLibrary(const std::filesystem::path& file)
    : handle_(dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ == nullptr) {
    throw std::runtime_error(fmt::format(
        "{}: the upgrade library cannot be loaded ({}). Unless that is a lack of something, reinstall it",
        file.string(), dlerror()));
  }
  const auto entry = reinterpret_cast<HVXGetUpgradeLibraryEntry>(dlsym(handle_, "HVXGetUpgradeLibrary"));
  if (entry == nullptr) {
    dlclose(handle_);
    throw std::runtime_error(fmt::format(
        "{}: this is not an upgrade library: it exports no HVXGetUpgradeLibrary. Give another file",
        file.string()));
  }
  description_ = entry();
  if (description_->layout != HVXUpgradeLibrary::kLayout) {
    dlclose(handle_);
    throw std::runtime_error(
        fmt::format("{}: the upgrade library was built for another version of this program. Install the one "
                    "that belongs to "
                    "this version, or build it anew with its headers",
                    file.string()));
  }
}

UpgradeLibrary::~UpgradeLibrary() {
  dlclose(handle_);
}

}  // namespace standalone
