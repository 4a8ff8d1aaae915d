#include "file/FileAttributes.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "file/DocumentError.h"

namespace standalone {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";

class TakingOver {
 public:
  TakingOver(int descriptor, const std::filesystem::path& file, const std::filesystem::path& told)
      : descriptor_(descriptor), file_(file.string()), told_(told.string()) {}

  // The owner first, for a change of it takes rights away; the rights last, for they and the access control
  // list, which may also come from the folder, stand in one place.
  void Run() const {
    struct stat old {};
    struct stat fresh {};
    if (stat(file_.c_str(), &old) != 0 || fstat(descriptor_, &fresh) != 0) Fail("attributes");
    const bool sameOwner = old.st_uid == fresh.st_uid && old.st_gid == fresh.st_gid;
    if (!sameOwner && fchown(descriptor_, old.st_uid, old.st_gid) != 0)
      Fail(fmt::format("owner and group ({}:{})", old.st_uid, old.st_gid));
    TakeExtended();
    if (fstat(descriptor_, &fresh) != 0) Fail("access rights");
    const mode_t rights = old.st_mode & 07777U;
    if ((fresh.st_mode & 07777U) != rights && fchmod(descriptor_, rights) != 0) Fail("access rights");
  }

 private:
  void TakeExtended() const {
    const std::vector<std::string> names = Names();
    for (const std::string& name : names) Take(name);
    // One that the folder gives to all its files.
    if (std::ranges::find(names, kAccessList) == names.end()) fremovexattr(descriptor_, kAccessList);
  }

  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    std::string list;
    ssize_t size = 0;
    do {
      size = listxattr(file_.c_str(), nullptr, 0);
      if (size <= 0) break;
      list.resize(static_cast<std::size_t>(size));
      size = listxattr(file_.c_str(), list.data(), list.size());
    } while (size < 0 && errno == ERANGE);  // one came up in the meantime
    if (size < 0 && errno != ENOTSUP) Fail("extended attributes");
    for (std::size_t at = 0; size > 0 && at < static_cast<std::size_t>(size); at += names.back().size() + 1)
      names.emplace_back(list.data() + at);
    return names;
  }

  void Take(const std::string& name) const {
    std::string value;
    ssize_t size = 0;
    do {
      size = getxattr(file_.c_str(), name.c_str(), nullptr, 0);
      if (size <= 0) break;
      value.resize(static_cast<std::size_t>(size));
      size = getxattr(file_.c_str(), name.c_str(), value.data(), value.size());
    } while (size < 0 && errno == ERANGE);
    if (size < 0 && errno == ENODATA) return;  // gone in the meantime
    if (size >= 0) {
      value.resize(static_cast<std::size_t>(size));
      if (fsetxattr(descriptor_, name.c_str(), value.data(), value.size(), 0) == 0) return;
    }
    const bool isForbidden = errno == EPERM || errno == ENOTSUP;
    if (isForbidden && name.starts_with("security.")) return;
    Fail(name == kAccessList ? "access control list" : fmt::format("extended attribute {}", name));
  }

  [[noreturn]] void Fail(std::string_view what) const {
    throw DocumentError(
        DocumentError::Kind::kUnwritable, told_, 0,
        fmt::format("it cannot be replaced, because its {} cannot be kept ({})", what, std::strerror(errno)),
        "Run this program as its owner, or write the result to another file with -o; nothing was changed");
  }

  int descriptor_;
  std::string file_;
  std::string told_;
};

}  // namespace

void TakeOverAttributes(int descriptor, const std::filesystem::path& file,
                        const std::filesystem::path& told) {
  TakingOver(descriptor, file, told).Run();
}

}  // namespace standalone
