#include "record/Destinations.h"

#include <fmt/format.h>
#include <unistd.h>

#include "settings/UsageError.h"

namespace tool {

namespace fs = std::filesystem;

// Which files are meant, and what for: by the sums of their real paths, which are worked out again where two
// have the same sum. Of each it keeps a few bytes.
class Destinations::Files {
 public:
  using Meaning = std::function<fs::path(std::uint32_t what)>;  // the file that is kept as `what`

  explicit Files(Meaning meaning) : meaning_(std::move(meaning)) {}

  // What is kept for the file; none.
  [[nodiscard]] std::optional<std::uint32_t> Find(const fs::path& real) const {
    const auto [begin, end] = files_.equal_range(std::hash<std::string>()(real.native()));
    for (auto each = begin; each != end; ++each) {
      if (RealPathOf(meaning_(each->second)) == real) return each->second;
    }
    return std::nullopt;
  }
  void Add(const fs::path& real, std::uint32_t what) {
    files_.emplace(std::hash<std::string>()(real.native()), what);
  }

 private:
  Meaning meaning_;
  std::unordered_multimap<std::size_t, std::uint32_t> files_;
};

Destinations::Destinations(const UpgradeArguments& arguments, const std::vector<GivenDocument>& documents)
    : arguments_(arguments), documents_(documents) {
  if (!arguments.output.empty() && documents.size() > 1)
    throw UsageError("-o takes one document; give --output-dir DIR for several");
  Files inputs([this](std::uint32_t document) { return fs::path(documents_[document].file); });
  for (std::size_t i = 0; i < documents.size(); ++i) {
    const fs::path real = RealPathOf(documents[i].file);
    if (!inputs.Find(real)) inputs.Add(real, static_cast<std::uint32_t>(i));
  }
  // Results have even numbers, backups odd ones.
  Files targets([this](std::uint32_t what) {
    const Destination destination = PlaceOf(what / 2);
    return what % 2 == 0 ? *destination.file : destination.Backup();
  });
  for (std::size_t i = 0; i < documents.size(); ++i) {
    std::string clash = ClashOf(i, inputs, targets);
    if (!clash.empty()) clashes_.emplace(i, std::move(clash));
  }
  const auto addOther = [&](const std::string& file, const std::string& what) {
    fs::path real = RealPathOf(file);
    if (const auto input = inputs.Find(real))
      throw UsageError(fmt::format("{} would replace {}", what, documents[*input].file));
    if (const auto target = targets.Find(real)) {
      throw UsageError(fmt::format("{} would be written twice: as the {} of {} and as {}", file,
                                   *target % 2 == 0 ? "result" : "backup", documents[*target / 2].file,
                                   what));
    }
    return real;
  };
  std::map<fs::path, std::string> others;
  for (const auto& [file, what] :
       {std::pair(arguments.report, "the report"), std::pair(arguments.trace, "the trace"),
        std::pair(arguments.html, "the page")}) {
    if (file.empty() || file == kStandardStream) continue;
    const auto [other, isNew] = others.try_emplace(addOther(file, what), what);
    if (!isNew)
      throw UsageError(fmt::format("{} would be written twice: as {} and as {}", file, other->second, what));
  }
}

std::string Destinations::ClashOf(std::size_t document, const Files& inputs, Files& targets) const {
  const std::string& input = documents_[document].file;
  const Destination destination = PlaceOf(document);
  const auto add = [&](const fs::path& file, const char* kind, std::uint32_t what) -> std::string {
    const fs::path real = RealPathOf(file);
    if (const auto other = targets.Find(real)) {
      return fmt::format("{} would be written twice: as the {} of {} and as the {} of {}", file.string(),
                         *other % 2 == 0 ? "result" : "backup", documents_[*other / 2].file, kind, input);
    }
    targets.Add(real, what);
    return {};
  };
  const auto number = static_cast<std::uint32_t>(document * 2);
  if (destination.file) {
    if (std::string clash = add(*destination.file, "result", number); !clash.empty()) return clash;
    const auto replaced = destination.inPlace ? std::nullopt : inputs.Find(RealPathOf(*destination.file));
    if (replaced && RealPathOf(documents_[*replaced].file) != RealPathOf(input))
      return fmt::format("the result of {} would replace {}", input, documents_[*replaced].file);
  }
  const fs::path backup = destination.Backup();
  return backup.empty() ? std::string() : add(backup, "backup", number + 1);
}

Destination Destinations::PlaceOf(std::size_t document) const {
  const GivenDocument& input = documents_[document];
  Destination destination;
  destination.overwrite = arguments_.force || arguments_.inPlace || replaceable_.contains(document);
  destination.inPlace = arguments_.inPlace;
  destination.backupSuffix = arguments_.backupSuffix;
  if (arguments_.inPlace) destination.file = input.file;
  destination.isOutput = arguments_.output == kStandardStream;
  if (!arguments_.output.empty() && !destination.isOutput) destination.file = arguments_.output;
  destination.makesFolder = !arguments_.outputDirectory.empty();
  if (destination.makesFolder) destination.file = fs::path(arguments_.outputDirectory) / input.Beneath();
  return destination;
}

Destination Destinations::Of(std::size_t document) const {
  Destination destination = PlaceOf(document);
  const auto clash = clashes_.find(document);
  if (clash != clashes_.end()) destination.clash = clash->second;
  return destination;
}

std::set<fs::path> Destinations::Folders() const {
  std::set<fs::path> folders;
  std::optional<std::string> last;  // the documents of a folder mostly stand together
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    const Destination destination = PlaceOf(i);
    if (!destination.file) continue;
    // Beside what a link leads to, for there its temporary files are made.
    std::error_code error;
    const bool isLink = fs::is_symlink(*destination.file, error);
    const fs::path folder = (isLink ? RealPathOf(*destination.file) : *destination.file).parent_path();
    if (folder.native() != last) folders.insert(folder);
    last = folder.native();
  }
  return folders;
}

EmptyFolders::EmptyFolders(const std::set<fs::path>& folders) {
  std::error_code error;
  for (const fs::path& each : folders) {
    for (fs::path folder = fs::absolute(each);
         !missing_.contains(folder) && !fs::exists(folder, error) && folder.has_relative_path();
         folder = folder.parent_path())
      missing_.insert(folder);
  }
}

EmptyFolders::~EmptyFolders() {
  for (const fs::path& folder : missing_) rmdir(folder.c_str());  // fails where something stands in it
}

}  // namespace tool
