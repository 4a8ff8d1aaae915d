#include "upgrade/UpgradeLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace standalone {
namespace {

// Whether the file ends before what is to be mapped of it. Loading such a library would end the program by a
// signal, without a word.
bool IsCutOff(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  std::ifstream stream(file, std::ios::binary);
  ElfW(Ehdr) header{};
  // What cannot be read, and what is no library at all, the loader tells.
  if (error || !stream.read(reinterpret_cast<char*>(&header), sizeof header)) return false;
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  if (header.e_phentsize != sizeof(ElfW(Phdr))) return false;
  const auto endsBefore = [size](std::uint64_t begin, std::uint64_t bytes) {
    return begin > size || bytes > size - begin;
  };
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  const std::size_t bytes = segments.size() * sizeof(ElfW(Phdr));
  if (endsBefore(header.e_phoff, bytes)) return true;
  stream.seekg(static_cast<std::streamoff>(header.e_phoff));
  if (!stream.read(reinterpret_cast<char*>(segments.data()), static_cast<std::streamsize>(bytes)))
    return false;
  return std::ranges::any_of(segments, [&endsBefore](const ElfW(Phdr) & each) {
    return each.p_type == PT_LOAD && endsBefore(each.p_offset, each.p_filesz);
  });
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
    throw std::runtime_error(
        fmt::format("{}: the upgrade library cannot be loaded ({}). Unless something is missing that it "
                    "needs, reinstall it",
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
                    "that belongs to this version, or rebuild it with its headers",
                    file.string()));
  }
}

UpgradeLibrary::~UpgradeLibrary() {
  dlclose(handle_);
}

}  // namespace standalone
