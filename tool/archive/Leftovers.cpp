#include "archive/Leftovers.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>

#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// Beside what a link leads to, for there its temporary files are made.
fs::path FolderOf(const fs::path& target) {
  std::error_code error;
  return fs::weakly_canonical(fs::absolute(target), error).parent_path();
}

}  // namespace

FolderContent ContentOf(const fs::path& folder, std::error_code& error) {
  FolderContent content;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    // The folder itself tells what its entries are: to ask each of them would take most of the time in a
    // folder of many files.
    std::error_code gone;  // an entry that went in the meantime is none
    if (entry->is_symlink(gone)) continue;
    if (entry->is_directory(gone)) content.subfolders.push_back(entry->path());
    const auto name = standalone::TemporaryName::Parse(entry->path().filename().string());
    if (!name || !entry->is_regular_file(gone)) continue;
    const std::uintmax_t bytes = entry->file_size(gone);
    if (!gone) content.leftovers.push_back({entry->path(), bytes, *name, name->State()});
  }
  std::ranges::sort(content.leftovers, {}, &Leftover::file);
  std::ranges::sort(content.subfolders);
  return content;
}

void RemoveLeftovers(const fs::path& target, pid_t process) {
  std::error_code error;
  for (const Leftover& leftover : ContentOf(FolderOf(target), error).leftovers) {
    if (leftover.name.process == process && leftover.maker == standalone::Maker::kGone)
      fs::remove(leftover.file, error);
  }
}

void RemoveOldLeftovers(const std::set<fs::path>& folders, bool quiet) {
  std::size_t files = 0;
  std::uintmax_t bytes = 0;
  std::set<fs::path> cleaned;
  for (const fs::path& each : folders) {
    const fs::path folder = each.empty() ? fs::path(".") : each;
    std::error_code error;
    for (const Leftover& leftover : ContentOf(folder, error).leftovers) {
      if (leftover.maker != standalone::Maker::kGone || !fs::remove(leftover.file, error)) continue;
      ++files;
      bytes += leftover.bytes;
      cleaned.insert(folder);
    }
  }
  if (files == 0 || quiet) return;
  Put(stderr, fmt::format("removed {} ({}) that killed runs left in {}{}\n", Count(files, "temporary file"),
                          Count(bytes, "byte"), Printable(cleaned.begin()->string()),
                          cleaned.size() > 1 ? " and other folders" : ""));
}

}  // namespace tool
