#include "archive/DocumentSearch.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <fnmatch.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <unordered_set>

#include "file/DocumentError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDocuments[] = {"*.hvxdoc", "*.hvxdoc.gz", "*.hvxdoc.zst"};

bool Matches(const std::vector<std::string>& patterns, const fs::path& beneath) {
  return std::ranges::any_of(patterns, [&beneath](const std::string& pattern) {
    const bool isOfName = pattern.find('/') == std::string::npos;
    const fs::path text = isOfName ? beneath.filename() : beneath;
    return fnmatch(pattern.c_str(), text.c_str(), FNM_PATHNAME) == 0;
  });
}

// Folder by folder: what stands in one stands together.
bool InOrderOfPlaces(std::string_view left, std::string_view right) {
  const auto rank = [](char letter) {
    return letter == '/' ? -1 : static_cast<int>(static_cast<unsigned char>(letter));
  };
  return std::ranges::lexicographical_compare(left, right, {}, rank, rank);
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Each name of the list, without empty ones.
template <typename Use>
void ReadList(const Sources& sources, const Use& use) {
  const auto fail = [&sources](int cause) {
    throw standalone::DocumentError(
        standalone::DocumentError::Kind::kUnreadable, sources.list, 0,
        fmt::format("the list of documents cannot be read ({})", std::strerror(cause)),
        "Check its name and permissions");
  };
  const bool isStandardInput = sources.list == "-";
  std::unique_ptr<std::FILE, CloseFile> opened(isStandardInput ? nullptr
                                                               : std::fopen(sources.list.c_str(), "re"));
  std::FILE* const file = isStandardInput ? stdin : opened.get();
  if (file == nullptr) fail(errno);
  const char end = sources.listHasNul ? '\0' : '\n';
  std::string name;
  errno = 0;
  for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
    if (byte != end) {
      name.push_back(static_cast<char>(byte));
      continue;
    }
    if (!name.empty()) use(name);
    name.clear();
  }
  if (std::ferror(file) != 0) fail(errno);
  if (!name.empty()) use(name);
}

class Search {
 public:
  Search(const Sources& sources, const fs::path& results, std::string backupSuffix)
      : sources_(sources),
        include_(sources.include),
        exclude_(sources.exclude),
        results_(results.empty() ? fs::path() : PlainFormOf(results)),
        backupSuffix_(std::move(backupSuffix)),
        isAlone_(sources.given.size() == 1 && sources.list.empty()) {
    TakeSlashesOff(include_);
    TakeSlashesOff(exclude_);
    if (include_.empty()) include_.assign(std::begin(kDocuments), std::end(kDocuments));
  }

  void Add(const std::string& given) {
    std::error_code error;  // what cannot be looked at cannot be read either, which is told then
    if (fs::is_directory(given, error)) {
      AddBeneath(given);
    } else {
      AddDocument({given, given.size() - fs::path(given).filename().native().size()});
    }
  }

  void AddList() {
    found_.areSearched = true;
    ReadList(sources_, [this](const std::string& name) { Add(name); });
  }

  // A list may well name nothing, such as one of documents that are still to be done.
  FoundDocuments Finish() {
    if (found_.documents.empty() && found_.problems.empty() && !folders_.empty()) {
      found_.problems.push_back(fmt::format("{}: no documents were found ({}). Choose others with --include",
                                            folders_, fmt::join(include_, ", ")));
    }
    return std::move(found_);
  }

 private:
  static fs::path PlainFormOf(const fs::path& path) {
    fs::path plain = fs::absolute(path).lexically_normal();
    return plain.has_filename() ? plain : plain.parent_path();  // "folder/" is "folder"
  }

  // "drafts/" is what other tools call a folder.
  static void TakeSlashesOff(std::vector<std::string>& patterns) {
    for (std::string& pattern : patterns) {
      while (pattern.size() > 1 && pattern.ends_with('/')) pattern.pop_back();
    }
  }

  void AddDocument(GivenDocument document) {
    if (isAlone_ || met_.insert(PlainFormOf(document.file).string()).second)
      found_.documents.push_back(std::move(document));
  }

  void AddBeneath(const std::string& given) {
    found_.areSearched = true;
    folders_ += (folders_.empty() ? "" : ", ") + given;
    std::vector<GivenDocument> documents;
    std::vector<fs::path> folders{fs::path()};  // beneath the given one, still to be looked through
    while (!folders.empty()) {
      const fs::path folder = std::move(folders.back());
      folders.pop_back();
      LookThrough(given, folder, folders, documents);
    }
    std::ranges::sort(documents, InOrderOfPlaces, &GivenDocument::Beneath);
    for (GivenDocument& document : documents) AddDocument(std::move(document));
  }

  // So is a link that leads nowhere: what it led to is told to be missing, not passed over.
  static bool IsDocument(const fs::directory_entry& entry) {
    std::error_code error;
    const fs::file_type type = entry.status(error).type();
    return type == fs::file_type::regular ||
           (entry.is_symlink(error) && (type == fs::file_type::not_found || type == fs::file_type::none));
  }

  // Of a run with the same arguments, which may well choose documents by the beginning of their names.
  [[nodiscard]] bool IsBackup(const fs::path& file) const {
    const std::string& name = file.native();
    if (backupSuffix_.empty() || !name.ends_with(backupSuffix_)) return false;
    std::error_code error;
    return fs::is_regular_file(name.substr(0, name.size() - backupSuffix_.size()), error);
  }

  void LookThrough(const std::string& given, const fs::path& folder, std::vector<fs::path>& folders,
                   std::vector<GivenDocument>& documents) {
    const fs::path place = folder.empty() ? fs::path(given) : fs::path(given) / folder;
    std::error_code error;
    fs::directory_iterator entry(place, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      const fs::path name = entry->path().filename();
      const fs::path beneath = folder / name;
      if (name.native().starts_with('.') || Matches(exclude_, beneath)) continue;
      std::error_code gone;  // meanwhile
      const fs::file_type type = entry->symlink_status(gone).type();
      if (type == fs::file_type::directory) {
        if (PlainFormOf(fs::path(given) / beneath) != results_) folders.push_back(beneath);
      } else if (Matches(include_, beneath) && IsDocument(*entry) && !IsBackup(entry->path())) {
        std::string file = (fs::path(given) / beneath).string();
        const std::size_t begins = file.size() - beneath.native().size();
        documents.push_back({std::move(file), begins});
      }
    }
    if (!error) return;
    found_.problems.push_back(
        fmt::format("{}: the folder cannot be read ({}), and its documents were skipped. Check its "
                    "permissions, then run the same command again",
                    place.string(), error.message()));
  }

  const Sources& sources_;
  std::vector<std::string> include_;
  std::vector<std::string> exclude_;
  fs::path results_;
  std::string backupSuffix_;
  std::string folders_;  // those that were searched
  bool isAlone_;         // nothing but one folder or file was given, in which nothing stands twice
  std::unordered_set<std::string> met_;
  FoundDocuments found_;
};

}  // namespace

FoundDocuments FindDocuments(const Sources& sources, const fs::path& results,
                             const std::string& backupSuffix) {
  Search search(sources, results, backupSuffix);
  for (const std::string& given : sources.given) search.Add(given);
  if (!sources.list.empty()) search.AddList();
  return search.Finish();
}

ExitCode TellProblems(const FoundDocuments& found) {
  for (const std::string& problem : found.problems) Complain(problem);
  return found.problems.empty() ? ExitCode::kDone : ExitCode::kBadInput;
}

std::string ListOfProblems(const FoundDocuments& found) {
  constexpr std::size_t kListed = 20;
  const std::size_t count = found.problems.size();
  if (count == 0) return {};
  std::string text = fmt::format("Not searched for documents ({}):\n", count);
  for (std::size_t i = 0; i < std::min(count, kListed); ++i)
    text += fmt::format("  {}\n", Printable(found.problems[i]));
  if (count > kListed) text += fmt::format("  and {} more\n", count - kListed);
  return text;
}

}  // namespace tool
