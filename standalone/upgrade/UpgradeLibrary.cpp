#include "upgrade/UpgradeLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace standalone {
namespace {

// Whether the file ends before what is to be mapped of it. Loading such a library would end the program by a
// signal, without a word.
bool IsCutOff(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  ElfW(Ehdr) header{};
  if (!stream.read(reinterpret_cast<char*>(&header), sizeof header)) return false;  // the loader tells
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  if (header.e_phentsize != sizeof(ElfW(Phdr))) return false;
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  stream.seekg(static_cast<std::streamoff>(header.e_phoff));
  const auto bytes = static_cast<std::streamsize>(segments.size() * sizeof(ElfW(Phdr)));
  if (!stream.read(reinterpret_cast<char*>(segments.data()), bytes)) return true;
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) return false;
  for (const ElfW(Phdr) & each : segments) {
    if (each.p_type == PT_LOAD && (each.p_offset > size || each.p_filesz > size - each.p_offset)) return true;
  }
  return false;
}

void* Load(const std::filesystem::path& file) {
  if (IsCutOff(file))
    throw std::runtime_error(fmt::format(
        "{}: the upgrade library cannot be loaded (the file is cut off). Reinstall it", file.string()));
  return dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

UpgradeLibrary::UpgradeLibrary(const std::filesystem::path& file) : handle_(Load(file)) {
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
