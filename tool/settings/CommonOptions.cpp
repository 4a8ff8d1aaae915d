#include "settings/CommonOptions.h"

#include <algorithm>

#include "settings/UsageError.h"

namespace tool {
namespace {

bool IsWholeNumber(const std::string& value) {
  return !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::string NotEmpty(const std::string& value) {
  return value.empty() ? "the value is empty" : "";
}

std::string AboveZero(const std::string& value) {
  return IsWholeNumber(value) && value.find_first_not_of('0') != std::string::npos
             ? ""
             : "must be a whole number above 0";
}

// Else the parser would take -1 for the largest number that there is, and nothing for 0.
std::string WholeNumber(const std::string& value) {
  return IsWholeNumber(value) ? "" : "must be a whole number, or 0 for no limit";
}

std::string FileName(const std::string& value) {
  if (value == "-") return "must be the name of a file";
  return NotEmpty(value);
}

void AddSources(CLI::App& verb, Sources& sources) {
  verb.add_option("FILE", sources.given,
                  "Documents ('-': standard input), and folders with all documents beneath them")
      ->type_name("")
      ->check(NotEmpty);
  const auto which = "Which documents";
  verb.add_option("--files-from", sources.list, "Also those that this file lists ('-': standard input)")
      ->type_name("LIST")
      ->check(NotEmpty)
      ->group(which);
  verb.add_flag("-0,--null", sources.listHasNul, "The names in LIST end with NUL, not with the line")
      ->group(which);
  verb.add_option("--include", sources.include,
                  "In folders, only files that match this (default: *.hvxdoc, *.hvxdoc.gz, *.hvxdoc.zst)")
      ->type_name("PATTERN")
      ->allow_extra_args(false)
      ->check(NotEmpty)
      ->group(which);
  verb.add_option("--exclude", sources.exclude, "In folders, skip files and folders that match this")
      ->type_name("PATTERN")
      ->allow_extra_args(false)
      ->check(NotEmpty)
      ->group(which);
}

CLI::Option& AddHtml(CLI::App& verb, std::string& file) {
  return *verb.add_option("--html", file,
                          "Also write a page for a browser: one file, to be read without a network. Replaces "
                          "a page of "
                          "this program, and nothing else")
              ->type_name("FILE")
              ->check(FileName);
}

void AddMany(CLI::App& verb, ManyDocuments& many) {
  verb.add_option("-j,--jobs", many.workers,
                  "Work on this many at a time (default: the number of processors that this process may use)")
      ->type_name("N")
      ->check(AboveZero)
      ->group(kMany);
  verb.add_option("--memory", many.megabytes,
                  "Begin a document only when those in progress will probably need no more than this many MB "
                  "in all (default: what is available; 0: no limit)")
      ->type_name("MB")
      ->check(WholeNumber)
      ->group(kMany);
  verb.add_flag("-v,--verbose", many.verbose, "Show all about each document, and shorten nothing")
      ->group(kMany);
  verb.add_option("--progress", many.progress,
                  "Show progress: auto (default), plain (a line a minute, as without a terminal) or none")
      ->type_name("HOW")
      ->check(CLI::IsMember({"auto", "plain", "none"}))
      ->group(kMany);
}

void Check(Sources& sources) {
  const auto streams =
      std::ranges::count(sources.given, kStandardStream) + (sources.list == kStandardStream ? 1 : 0);
  if (streams > 1) throw UsageError("standard input can be read only once");
  std::ranges::for_each(sources.given, OpenStream);
  if (sources.IsEmpty()) throw UsageError("give documents: files or folders, or --files-from LIST");
}

void CheckNull(const Sources& sources) {
  if (sources.listHasNul && sources.list.empty()) throw UsageError("--null requires --files-from");
}

void OpenStream(std::string& document) {
  if (document == kStandardStream) document = "/dev/stdin";
}

}  // namespace tool
