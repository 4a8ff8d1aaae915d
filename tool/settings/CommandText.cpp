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

// The documents that were given; in folders, those with `suffix` behind their names.
std::string SourceWords(const Sources& sources, const std::string& suffix = "") {
  std::string words;
  const auto add = [&words](const std::string& word) { words += " " + word; };
  for (const std::string& given : sources.given) add(FileWord(given));
  std::vector<std::string> include = sources.include;
  if (include.empty() && !suffix.empty()) include.emplace_back("*");
  for (const std::string& pattern : include) add("--include " + ShellWord(pattern + suffix));
  for (const std::string& pattern : sources.exclude) add("--exclude " + ShellWord(pattern));
  if (!sources.list.empty()) add("--files-from " + ShellWord(sources.list));
  if (sources.listHasNul) add("--null");
  return words;
}

std::string NameWords(const std::vector<std::string>& files) {
  std::string words;
  for (const std::string& file : files) words.append(" ").append(FileWord(file));
  return words;
}

// Backups that were never made are not found there, so that a pattern names those that there are.
bool IsOneFolder(const Sources& sources) {
  std::error_code error;
  return sources.given.size() == 1 && sources.list.empty() &&
         std::filesystem::is_directory(sources.given.front(), error);
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

ProposedCommand DryRunOf(const Places& places, const UpgradeArguments& arguments,
                         const DocumentsInNeed& inNeed) {
  std::string words = ProgramWith(places) + " upgrade --dry-run --verbose";
  for (const std::string& identifier : arguments.only) words += " --only " + ShellWord(identifier);
  if (!arguments.until.empty()) words += " --until " + ShellWord(arguments.until);
  if (arguments.retry) words += " --retry";
  if (arguments.failOnDrop) words += " --fail-on-drop";
  if (inNeed.allHaveBackups && IsOneFolder(arguments.sources))
    return {words + SourceWords(arguments.sources, arguments.backupSuffix)};
  if (!inNeed.haveBackups && CanBeGivenAgain(arguments.sources))
    return {words + SourceWords(arguments.sources)};
  return {words + NameWords(inNeed.first), true};
}

ProposedCommand CheckOf(const Places& places, const UpgradeArguments& arguments,
                        const std::vector<std::string>& firstInNeed) {
  const std::string words = ProgramWith(places) + " check --verbose";
  if (!arguments.outputDirectory.empty()) return {words + " " + FileWord(arguments.outputDirectory)};
  if (CanBeGivenAgain(arguments.sources)) return {words + SourceWords(arguments.sources)};
  return {words + NameWords(firstInNeed), true};
}

}  // namespace tool
