#include "upgrade/UpgradeLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "upgrade/LibraryTables.h"
#include "upgrade/LoadFault.h"
#include "upgrade/LoadGuard.h"

namespace standalone {
namespace {

// What static objects throw cannot pass the loader: it would never let another thread load anything. This
// ends the program, with words of `LoadGuard`.
void* Open(const std::filesystem::path& file) noexcept {
  // Of the loader itself the compiler believes that it throws nothing, and would let it pass.
  void* (*volatile const open)(const char*, int) = &dlopen;
  return open(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* Load(const std::filesystem::path& file) {
  std::string fault = FaultOfFile(file);
  if (fault.empty()) {
    const std::filesystem::path absolute = std::filesystem::absolute(file);
    if (void* const handle = Open(absolute)) return handle;
    fault = FaultToldByLoader(absolute);
  }
  throw std::runtime_error(fmt::format("{}: {}", file.string(), fault));
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

// What a library throws may not outlive it.
const HVXUpgradeLibrary* Asked(HVXGetUpgradeLibraryEntry entry) {
  std::string thrown;
  try {
    return entry();
  } catch (const std::bad_alloc&) {
    throw std::bad_alloc();  // what a library throws may not outlive it
  } catch (const std::exception& error) {
    thrown = fmt::format(" ({})", error.what());
  } catch (...) {  // tells nothing of itself
  }
  throw std::runtime_error(
      fmt::format("the upgrade library threw something when it was asked for its description{}. Correct its "
                  "HVXGetUpgradeLibrary",
                  thrown));
}

const HVXUpgradeLibrary* DescriptionOf(void* handle) {
  const auto entry = reinterpret_cast<HVXGetUpgradeLibraryEntry>(dlsym(handle, "HVXGetUpgradeLibrary"));
  if (entry == nullptr)
    throw std::runtime_error(
        "this is not an upgrade library: it exports no HVXGetUpgradeLibrary. Give another file");
  const HVXUpgradeLibrary* const description = Asked(entry);
  if (description == nullptr)
    throw std::runtime_error("the upgrade library gives no description. Correct its HVXGetUpgradeLibrary");
  if (const std::string mismatch = Mismatch(description); !mismatch.empty())
    throw std::runtime_error(mismatch);
  if (const std::string fault = FaultOfTables(*description); !fault.empty())
    throw std::runtime_error("the upgrade library " + fault);
  return description;
}

}  // namespace

UpgradeLibrary::UpgradeLibrary(const std::filesystem::path& file) : file_(file) {
  const LoadGuard guard(file_, LoadGuard::Work::kLoading);
  handle_ = Load(file_);
  try {
    description_ = DescriptionOf(handle_);
  } catch (const std::bad_alloc&) {
    dlclose(handle_);
    throw;
  } catch (const std::exception& error) {
    const std::string fault = fmt::format("{}: {}", file_.string(), error.what());
    dlclose(handle_);
    throw std::runtime_error(fault);
  }
}

UpgradeLibrary::~UpgradeLibrary() {
  const LoadGuard guard(file_, LoadGuard::Work::kUnloading);
  dlclose(handle_);
}

}  // namespace standalone
