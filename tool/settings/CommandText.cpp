#include "settings/CommandText.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "settings/Sources.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

constexpr std::size_t kMostGiven = 5;  // else the command would be longer than what it shows

// So that it is not taken for an option.
std::string FileWord(const std::string& file) {
  return ShellWord(file.starts_with('-') ? "./" + file : file);
}

// Whether what was given names the documents still.
bool CanBeGivenAgain(const Sources& sources) {
  const bool readsStream =
      sources.list == kStandardStream || std::ranges::count(sources.given, std::string("/dev/stdin")) != 0;
  return !readsStream && sources.given.size() <= kMostGiven;
}

// The documents that were given, by their names and `suffix`.
std::string SourceWords(const Sources& sources, const std::vector<std::string>& firstInNeed,
                        const std::string& suffix) {
  std::string words;
  const auto add = [&words](const std::string& word) { words += " " + word; };
  const bool isNamedAnew = !CanBeGivenAgain(sources) || (!sources.list.empty() && !suffix.empty());
  if (isNamedAnew) {
    for (const std::string& file : firstInNeed) add(FileWord(file + suffix));
    return words;
  }
  bool isSearched = false;
  for (const std::string& given : sources.given) {
    std::error_code error;
    const bool isFolder = std::filesystem::is_directory(given, error);
    isSearched = isSearched || isFolder;
    add(FileWord(isFolder ? given : given + suffix));
  }
  std::vector<std::string> include = sources.include;
  if (isSearched && include.empty() && !suffix.empty()) include.emplace_back("*");
  for (const std::string& pattern : include) add("--include " + ShellWord(pattern + suffix));
  for (const std::string& pattern : sources.exclude) add("--exclude " + ShellWord(pattern));
  if (!sources.list.empty()) add("--files-from " + ShellWord(sources.list));
  if (sources.listHasNul) add("--null");
  return words;
}

}  // namespace

std::string ShellWord(const std::string& word) {
  const auto isPlain = [](char c) {
    const bool isOfShell =
        c <= ' ' || std::string_view("!\"#$&'()*;<>?[\\]^`{|}~\x7f").find(c) != std::string_view::npos;
    return static_cast<unsigned char>(c) >= 0x80 || !isOfShell;
  };
  const bool isSeen = WithEscapes(word, Escapes::kAll) == word;
  if (isSeen && std::ranges::all_of(word, isPlain)) return word;
  std::string quoted;
  for (const char c : word) {
    if (c == '\'') {
      quoted += isSeen ? R"('\'')" : R"(\')";
    } else if (c == '\\' && !isSeen) {
      quoted += R"(\\)";
    } else {
      quoted += c;
    }
  }
  return isSeen ? fmt::format("'{}'", quoted) : fmt::format("$'{}'", WithEscapes(quoted, Escapes::kAll));
}

std::string ProgramWith(const Places& places) {
  std::string words = "hvxupgrade";
  if (!places.defaultLibrary) words += " --no-default-library";
  for (const std::filesystem::path& each : places.plugins) words += " --plugins " + ShellWord(each.string());
  for (const std::filesystem::path& each : places.libraries)
    words += " --library " + ShellWord(each.string());
  if (!places.data.empty()) words += " --data " + ShellWord(places.data.string());
  return words;
}

std::string DryRunOf(const Places& places, const UpgradeArguments& arguments,
                     const std::vector<std::string>& firstInNeed) {
  std::string words = ProgramWith(places) + " upgrade --dry-run --verbose";
  for (const std::string& identifier : arguments.only) words += " --only " + ShellWord(identifier);
  if (!arguments.until.empty()) words += " --until " + ShellWord(arguments.until);
  if (arguments.retry) words += " --retry";
  if (arguments.failOnDrop) words += " --fail-on-drop";
  // What was held back has no backup, and with --strict that is all that needs a person.
  const bool isReplaced = arguments.inPlace && !arguments.dryRun && !arguments.strict;
  return words + SourceWords(arguments.sources, firstInNeed, isReplaced ? arguments.backupSuffix : "");
}

std::string CheckOf(const Places& places, const UpgradeArguments& arguments,
                    const std::vector<std::string>& firstInNeed) {
  const std::string words = ProgramWith(places) + " check --verbose";
  if (!arguments.outputDirectory.empty()) return words + " " + FileWord(arguments.outputDirectory);
  return words + SourceWords(arguments.sources, firstInNeed, "");
}

}  // namespace tool
