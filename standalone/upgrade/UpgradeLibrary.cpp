#include "upgrade/UpgradeLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <link.h>
#include <simdjson.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
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
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  // Looking into a pipe would wait for ever.
  if (std::filesystem::exists(status) && std::filesystem::is_other(status))
    throw std::runtime_error(fmt::format(
        "{}: this is not a regular file, and so no upgrade library. Give another file", file.string()));
  if (std::filesystem::is_directory(status))
    throw std::runtime_error(fmt::format(
        "{}: this is a folder, not an upgrade library. Name the libraries in it (--plugins takes folders)",
        file.string()));
  if (IsCutOff(file))
    throw std::runtime_error(fmt::format(
        "{}: the upgrade library cannot be loaded (the file is cut off). Reinstall it", file.string()));
  void* const handle = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr)
    throw std::runtime_error(
        fmt::format("{}: the upgrade library cannot be loaded ({}). Unless something is missing that it "
                    "needs, reinstall it",
                    file.string(), dlerror()));
  return handle;
}

// The number can be read of any library. What follows it is there from number 4 on.
std::uint16_t NumberOf(const void* description) {
  std::uint64_t begin = 0;
  std::memcpy(&begin, description, sizeof begin);
  constexpr unsigned kTop = 48;
  return static_cast<std::uint16_t>(begin >> kTop);
}

// Why the library cannot be used here, and what to do; empty when it can.
std::string Mismatch(const void* description) {
  constexpr HVXUpgradeInterface kHere = HVXUpgradeLibrary::Interface();
  const std::uint16_t number = NumberOf(description);
  const std::string numbers = fmt::format("(interface {}; this program has {})", number, kHere.number);
  if (number < kHere.number)
    return fmt::format(
        "the upgrade library was built for an older version of this program {}. Rebuild it with the headers "
        "of this program",
        numbers);
  if (number > kHere.number)
    return fmt::format(
        "the upgrade library was built for a newer version of this program {}. Install the program that it "
        "was built for, or rebuild it with the headers of this one",
        numbers);
  HVXUpgradeInterface there;
  std::memcpy(&there, description, sizeof there);
  if (there == kHere) return {};
  return fmt::format(
      "the upgrade library and this program have interface {}, but structures of other sizes. Rebuild it "
      "with "
      "the headers of this program, and for the same processor",
      number);
}

// An identifier is kept in documents, so it must be what they can hold.
bool IsIdentifier(const VLMUnicodeString& text) {
  const std::string_view view = text.View();
  return !view.empty() && simdjson::validate_utf8(view.data(), view.size());
}

// What is wrong with the tables, so that nothing could work on them; empty for nothing.
std::string FaultOf(const HVXUpgradeLibrary& library) {
  constexpr std::string_view kNoIdentifier =
      "has an identifier that is empty or not UTF-8. Correct it in its tables";
  if (!std::ranges::all_of(library.identifiers, IsIdentifier)) return std::string(kNoIdentifier);
  for (const HVXUpgradeClass* const each : library.classes) {
    if (each == nullptr || each->name == nullptr || each->createTIE == nullptr ||
        std::ranges::count(each->lateTypes, nullptr) != 0)
      return "has a class that lacks its name, the entry that makes its tie, or the name of a late type. "
             "Complete its tables";
    for (const HVXUpgradeBinding& row : each->bindings) {
      if (!IsIdentifier(row.identifier)) return std::string(kNoIdentifier);
      if (row.purpose == nullptr || row.routine == nullptr)
        return fmt::format("has no purpose or no routine for {} in class {}. Complete its table",
                           row.identifier.View(), each->name);
    }
  }
  for (const HVXDocumentUpgrade& each : library.documentUpgrades) {
    if (!IsIdentifier(each.identifier)) return std::string(kNoIdentifier);
    if (each.purpose == nullptr || each.upgrade == nullptr)
      return fmt::format("has no purpose or no routine for {}. Complete its table", each.identifier.View());
  }
  return {};
}

const HVXUpgradeLibrary* DescriptionOf(void* handle) {
  const auto entry = reinterpret_cast<HVXGetUpgradeLibraryEntry>(dlsym(handle, "HVXGetUpgradeLibrary"));
  if (entry == nullptr)
    throw std::runtime_error(
        "this is not an upgrade library: it exports no HVXGetUpgradeLibrary. Give another file");
  const HVXUpgradeLibrary* const description = entry();
  if (description == nullptr)
    throw std::runtime_error("the upgrade library gives no description. Correct its HVXGetUpgradeLibrary");
  if (const std::string mismatch = Mismatch(description); !mismatch.empty())
    throw std::runtime_error(mismatch);
  if (description->name == nullptr || *description->name == '\0')
    throw std::runtime_error(
        "the upgrade library has no name, by which documents would know it. Give its description a name");
  if (const std::string fault = FaultOf(*description); !fault.empty())
    throw std::runtime_error("the upgrade library " + fault);
  return description;
}

// What a library throws may not outlive it.
const HVXUpgradeLibrary* DescriptionOrFault(void* handle, std::string& fault) {
  try {
    return DescriptionOf(handle);
  } catch (const std::exception& error) {
    fault = error.what();
  } catch (...) {
    fault =
        "the upgrade library threw something when it was asked for its description. Correct its "
        "HVXGetUpgradeLibrary";
  }
  return nullptr;
}

}  // namespace

UpgradeLibrary::UpgradeLibrary(const std::filesystem::path& file) : file_(file), handle_(Load(file)) {
  std::string fault;
  description_ = DescriptionOrFault(handle_, fault);
  if (description_ != nullptr) return;
  dlclose(handle_);
  throw std::runtime_error(fmt::format("{}: {}", file.string(), fault));
}

UpgradeLibrary::~UpgradeLibrary() {
  dlclose(handle_);
}

}  // namespace standalone
