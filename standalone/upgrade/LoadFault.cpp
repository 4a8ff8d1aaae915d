#include "upgrade/LoadFault.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string_view>
#include <vector>

namespace standalone {
namespace {

namespace fs = std::filesystem;

using Header = ElfW(Ehdr);

std::string CannotBeLoaded(std::string_view why, std::string_view advice) {
  return fmt::format("the upgrade library cannot be loaded ({}). {}", why, advice);
}

std::string FaultOfOpening(const fs::path& file) {
  const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (opened >= 0) {
    close(opened);
    return {};
  }
  const int error = errno;
  std::string_view advice = "Mend that, and try again";
  if (error == EACCES) advice = "Give yourself the right to read it, or give another file";
  if (error == ENOENT || error == ENOTDIR || error == ELOOP) advice = "Check the path";
  return CannotBeLoaded(std::strerror(error), advice);
}

// That of the library in which this function is.
const Header& OwnHeader() {
  Dl_info own{};
  dladdr(reinterpret_cast<const void*>(&OwnHeader), &own);
  return *static_cast<const Header*>(own.dli_fbase);
}

// Whether the file ends before what is to be mapped of it. Loading such a library would end the program by a
// signal.
bool IsCutOff(std::ifstream& stream, const Header& header, std::uintmax_t size) {
  const auto endsBefore = [size](std::uint64_t begin, std::uint64_t bytes) {
    return begin > size || bytes > size - begin;
  };
  if (header.e_phentsize != sizeof(ElfW(Phdr))) return false;
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

std::string FaultOfHeader(const fs::path& file) {
  constexpr std::string_view kNoLibrary = "this is no shared library";
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  std::ifstream stream(file, std::ios::binary);
  Header header{};
  stream.read(reinterpret_cast<char*>(&header), sizeof header);
  if (error || !stream.is_open() || stream.bad()) return {};  // which the loader tells
  if (size == 0) return CannotBeLoaded("the file is empty", "Reinstall it");
  if (stream.gcount() < SELFMAG || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
    return CannotBeLoaded(kNoLibrary, "Give another file");
  const Header& own = OwnHeader();
  // The loader would say of another processor's that there is no such file.
  if (stream && (!std::equal(header.e_ident, header.e_ident + EI_VERSION, own.e_ident) ||
                 header.e_machine != own.e_machine))
    return CannotBeLoaded("it was built for another kind of processor",
                          "Install or build the one for this machine");
  if (!stream || IsCutOff(stream, header, size)) return CannotBeLoaded("the file is cut off", "Reinstall it");
  if (header.e_type != ET_DYN) return CannotBeLoaded(kNoLibrary, "Link it as one (-shared)");
  return {};
}

// What the loader said, in English like all that is told, whatever language the program set.
std::string ToldByLoader() {
  const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  const locale_t before = plain == nullptr ? nullptr : uselocale(plain);
  const char* const told = dlerror();
  std::string text = told == nullptr ? "it does not say why" : told;
  if (plain != nullptr) {
    uselocale(before);
    freelocale(plain);
  }
  return text;
}

std::string Demangled(const std::string& symbol) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
  return status == 0 ? text.get() : symbol;
}

}  // namespace

std::string FaultOfFile(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  // Looking into a pipe would wait for ever.
  if (fs::exists(status) && fs::is_other(status))
    return "this is not a regular file, and so no upgrade library. Give another file";
  if (fs::is_directory(status))
    return "this is a folder, not an upgrade library. Name the libraries in it (--plugins takes folders)";
  const std::string fault = FaultOfOpening(file);
  return fault.empty() ? FaultOfHeader(file) : fault;
}

std::string FaultToldByLoader(const fs::path& file) {
  const std::string told = ToldByLoader();
  const std::size_t nameEnd = told.find(": ");
  const std::string_view name = std::string_view(told).substr(0, std::min(nameEnd, told.size()));
  const std::string_view what =
      nameEnd == std::string::npos ? std::string_view(told) : std::string_view(told).substr(nameEnd + 2);

  constexpr std::string_view kUndefined = "undefined symbol: ";
  if (what.starts_with(kUndefined)) {
    const std::string_view symbol = what.substr(kUndefined.size());
    return CannotBeLoaded(
        fmt::format("{} uses {}, which is not found", name == file.native() ? "it" : name,
                    Demangled(std::string(symbol.substr(0, symbol.find_first_of(", \t"))))),
        "Rebuild it with the headers of this program, and link it with what it uses besides the host");
  }
  if (what.starts_with("cannot open shared object file") && name != file.native())
    return CannotBeLoaded(
        fmt::format("it needs {}, which is not found", name),
        "Install that, or build the upgrade library with a run path that leads to it (-Wl,-rpath)");
  if (what.starts_with("version ") && what.find(" not found") != std::string_view::npos)
    return CannotBeLoaded(told, "It was built on a newer system: build it on this one");
  if (what.starts_with("cannot dynamically load position-independent executable"))
    return CannotBeLoaded("this is a program", "Give another file, or link it as a library (-shared)");
  if (what.starts_with("failed to map segment"))
    return CannotBeLoaded(told, "Put it where programs may be run, and see that there is enough memory");
  return CannotBeLoaded(told, "Rebuild or reinstall it");
}

}  // namespace standalone
