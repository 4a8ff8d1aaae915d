#include "settings/Arguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr double kLongestTimeout = 1e9;

constexpr const char* kExitCodes = R"(Exit codes:
  0  done, or nothing to do
  1  finished, but some feature failed or some document was given up; check: something takes a person;
     diff: the documents differ
  2  wrong usage
  3  some input is unreadable or invalid
  4  some document is newer than this program
  5  some output could not be written, or a document was changed meanwhile by another program; what stood
     there is as it was
  6  an upgrade is needed (check and status --check only)
  130  interrupted
Of several, the most serious: 130, 2, 5, 3, 4, 1, 6, 0.)";

constexpr const char* kExamples = R"(Examples:
  hvxupgrade status bracket.hvxdoc                     what the document still needs
  hvxupgrade upgrade bracket.hvxdoc -o current.hvxdoc  write the current document beside the old one
  hvxupgrade check current.hvxdoc                      whether anything is still stored the old way
  hvxupgrade diff bracket.hvxdoc current.hvxdoc        what differs, feature by feature
  hvxupgrade identifiers UpgradeJobMemoryUnit          what one upgrade does, and to which features
  hvxupgrade show bracket.hvxdoc --type HVXJobLT --attributes
)";

constexpr const char* kStatusExamples = R"(Examples:
  hvxupgrade status bracket.hvxdoc pipe.hvxdoc
  hvxupgrade status --check archive --exclude drafts && echo all current
  hvxupgrade status --list pending -0 archive | hvxupgrade upgrade --files-from - -0 --in-place --backup .old
  hvxupgrade status --json bracket.hvxdoc | jq -r '.documents[].pending[]')";

constexpr const char* kUpgradeExamples = R"(Examples:
  hvxupgrade upgrade bracket.hvxdoc -o current.hvxdoc
  hvxupgrade upgrade bracket.hvxdoc --dry-run --report changes.jsonl
  hvxupgrade upgrade archive --output-dir current --report run.jsonl
  find archive -name '*.hvxdoc' -mtime -30 -print0 | hvxupgrade upgrade --files-from - -0 --in-place --backup .old
  hvxupgrade upgrade bracket.hvxdoc --in-place --backup .old
  hvxupgrade upgrade bracket.hvxdoc -o half.hvxdoc --until UpgradeJobRestartData)";

constexpr const char* kIdentifiersExamples = R"(Examples:
  hvxupgrade identifiers
  hvxupgrade identifiers ReExplicitateFeature AddConnectionContainer
  hvxupgrade identifiers --json | jq -r '.identifiers[] | select(.documentWide) | .name')";

constexpr const char* kShowExamples = R"(Examples:
  hvxupgrade show bracket.hvxdoc --depth 2
  hvxupgrade show bracket.hvxdoc --type HVXPressure --attributes
  hvxupgrade show bracket.hvxdoc --id 17)";

constexpr const char* kCheckExamples = R"(Examples:
  hvxupgrade check current.hvxdoc
  hvxupgrade check --json *.hvxdoc | jq -r '.documents[].findings[] | select(.kind == "leftBehind") | .alias')";

constexpr const char* kDiffExamples = R"(Examples:
  hvxupgrade diff bracket.hvxdoc current.hvxdoc
  hvxupgrade diff --json a.hvxdoc b.hvxdoc | jq '.changed[] | select(.type == "HVXPressure")')";

constexpr const char* kMergeExamples = R"(Examples:
  hvxupgrade merge run.1.jsonl run.2.jsonl
  hvxupgrade merge run.*.jsonl --report run.jsonl)";

constexpr const char* kCleanExamples = R"(Examples:
  hvxupgrade clean --dry-run .
  hvxupgrade clean --json results | jq .bytes)";

// Checks of option values: each gives what is wrong, or nothing. An empty value is mostly a variable of a
// script that was never set.
std::string NotEmpty(const std::string& value) {
  return value.empty() ? "the value is empty" : "";
}

bool IsWholeNumber(const std::string& value) {
  return !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
}

std::string AboveZero(const std::string& value) {
  return IsWholeNumber(value) && value.find_first_not_of('0') != std::string::npos
             ? ""
             : "must be a whole number above 0";
}

// Without this the parser would take -1 for the largest number that there is, and nothing for 0.
std::string WholeNumber(const std::string& value) {
  return IsWholeNumber(value) ? "" : "must be a whole number, or 0 for no limit";
}

// The standard streams are no places for it.
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
                  "In folders, files like this (default: *.hvxdoc, *.hvxdoc.gz, *.hvxdoc.zst)")
      ->type_name("PATTERN")
      ->allow_extra_args(false)
      ->check(NotEmpty)
      ->group(which);
  verb.add_option("--exclude", sources.exclude, "In folders, no files and folders like this")
      ->type_name("PATTERN")
      ->allow_extra_args(false)
      ->check(NotEmpty)
      ->group(which);
}

// A stream is opened under a name, as any other document.
void OpenStream(std::string& document) {
  if (document == kStandardStream) document = "/dev/stdin";
}

constexpr const char* kMany = "Many documents";

void AddMany(CLI::App& verb, ManyDocuments& many) {
  verb.add_option("-j,--jobs", many.workers,
                  "Work on so many at a time (default: as many as this process may use processors)")
      ->type_name("N")
      ->check(AboveZero)
      ->group(kMany);
  verb.add_option(
          "--memory", many.megabytes,
          "Begin a document only when those at work will probably need no more than so many MB in all "
          "(default: what is available; 0: no limit)")
      ->type_name("MB")
      ->check(WholeNumber)
      ->group(kMany);
  verb.add_flag("-v,--verbose", many.verbose, "Tell of each document what became of it")->group(kMany);
  verb.add_option(
          "--progress", many.progress,
          "How far the run is: auto (default), plain (a line a minute, as without a terminal) or none")
      ->type_name("HOW")
      ->check(CLI::IsMember({"auto", "plain", "none"}))
      ->group(kMany);
}

void Check(Sources& sources) {
  const auto streams =
      std::ranges::count(sources.given, kStandardStream) + (sources.list == kStandardStream ? 1 : 0);
  if (streams > 1) throw UsageError("standard input can be read once");
  std::ranges::for_each(sources.given, OpenStream);
  if (sources.IsEmpty()) throw UsageError("say which documents: files or folders, or --files-from LIST");
}

void Check(StatusArguments& status) {
  Check(status.sources);
  if (status.sources.listHasNul && status.sources.list.empty() && status.list.empty())
    throw UsageError("--null goes with --files-from or --list");
  if (status.json && !status.list.empty()) throw UsageError("give one of --json and --list");
}

void CheckNull(const Sources& sources) {
  if (sources.listHasNul && sources.list.empty()) throw UsageError("--null goes with --files-from");
}

void AddStatus(CLI::App& app, StatusArguments& status) {
  CLI::App* const verb =
      app.add_subcommand("status", "Tell which upgrades documents have been through and need");
  AddSources(*verb, status.sources);
  verb->add_option("--list", status.list,
                   "Print only the names of documents that are pending, current, newer or "
                   "broken; with --null, each ended by NUL")
      ->type_name("STATE")
      ->check(CLI::IsMember({"pending", "current", "newer", "broken"}));
  verb->add_flag("--check", status.check, "End with 6 when a document needs an upgrade");
  verb->add_flag("--json", status.json, "Print JSON");
  verb->footer(kStatusExamples);
}

void AddUpgrade(CLI::App& app, UpgradeArguments& upgrade) {
  CLI::App* const verb = app.add_subcommand("upgrade", "Bring documents up to the current data model");
  AddSources(*verb, upgrade.sources);

  const auto where = "Where the results go (one of -o, --output-dir, --in-place)";
  auto* const output =
      verb->add_option("-o,--output", upgrade.output, "Write the result to this file ('-': standard output)");
  auto* const folder = verb->add_option("--output-dir", upgrade.outputDirectory,
                                        "Write the results to this folder; what was found in a folder "
                                        "keeps its place beneath it");
  auto* const inPlace = verb->add_flag("--in-place", upgrade.inPlace, "Replace the documents by the results");
  auto* const dryRun = verb->add_flag("--dry-run", upgrade.dryRun, "Do everything but write the results");
  auto* const backup = verb->add_option("--backup", upgrade.backupSuffix,
                                        "Keep each old document under its name and this suffix");
  auto* const force = verb->add_flag("--force", upgrade.force, "Replace output files that exist already");
  auto* const keep = verb->add_flag("--keep-result", upgrade.keepResult,
                                    "When a document was changed meanwhile, keep the result beside it");
  for (CLI::Option* const option : {output, folder, inPlace, dryRun, backup, force, keep})
    option->group(where);
  auto* const strict =
      verb->add_flag("--strict", upgrade.strict, "Write no result in which something needs a person");
  auto* const accept = verb->add_flag("--accept-failures", upgrade.acceptFailures,
                                      "With --in-place and no --backup: replace also by such results");
  for (CLI::Option* const option : {strict, accept}) option->group(where);
  output->type_name("FILE")->check(NotEmpty);
  folder->type_name("DIR")->check(NotEmpty);
  backup->type_name("SUFFIX");

  const auto which = "Which upgrades are run (default: all pending ones)";
  auto* const only =
      verb->add_option("--only", upgrade.only, "Only these, separated by commas, of those pending");
  only->delimiter(',')->allow_extra_args(false)->type_name("ID[,ID...]")->group(which);
  verb->add_option("--until", upgrade.until, "Those pending up to and with this one, oldest first")
      ->type_name("ID")
      ->check(NotEmpty)
      ->group(which);

  verb->add_flag("--retry", upgrade.retry,
                 "Run again what left features behind, on those features, now that they are corrected")
      ->group(which);

  const auto told = "What is told";
  verb->add_option("--report", upgrade.report,
                   "Write what becomes of each document, with every change, as lines of JSON; with the same "
                   "report, the same command goes on where it was stopped")
      ->type_name("FILE")
      ->check(FileName)
      ->group(told);
  verb->add_option("--report-detail", upgrade.reportDetail,
                   "How much of the changes: full (default), changes (without all that created and removed "
                   "features hold) or summary (numbers)")
      ->type_name("DETAIL")
      ->check(CLI::IsMember({"full", "changes", "summary"}))
      ->group(told);
  verb->add_option("--trace", upgrade.trace, "Write a line for every call of the host ('-': standard error)")
      ->type_name("FILE")
      ->check(NotEmpty)
      ->group(told);
  verb->add_option("--language", upgrade.language, "The language of names that upgrades make (default: en)")
      ->type_name("LANG")
      ->group(told);
  verb->add_flag("--fail-on-drop", upgrade.failOnDrop,
                 "End with 1 when values of the old document stand nowhere in the result")
      ->group(told);
  verb->add_flag("-q,--quiet", upgrade.quiet, "Print errors only")->group(told);
  AddMany(*verb, upgrade.many);
  verb->add_option("--again", upgrade.again,
                   "Of those that stand in the report, do again: failed (without a result), incomplete (also "
                   "those that need a person) or all")
      ->type_name("WHICH")
      ->check(CLI::IsMember({"failed", "incomplete", "all"}))
      ->group(kMany);
  verb->add_option("--shard", upgrade.shardText,
                   "Only part I of N about equally large ones; the parts do not overlap")
      ->type_name("I/N")
      ->group(kMany);

  const auto limits = "When a document is given up; its file stays as it is (0: never)";
  verb->add_option("--timeout", upgrade.limits.seconds,
                   "After this many seconds (default: 120, and 2 for each MB of the document)")
      ->type_name("SECONDS")
      ->check(NotEmpty)
      ->group(limits);
  verb->add_option("--limit-features", upgrade.limits.features,
                   "When upgrades made this many features (default: 1000000, and 10 for each feature)")
      ->type_name("N")
      ->check(WholeNumber)
      ->group(limits);
  verb->add_option("--limit-memory", upgrade.limits.megabytes,
                   "When it needs more memory than this many MB (default: what is available)")
      ->type_name("MB")
      ->check(WholeNumber)
      ->group(limits);
  verb->add_option(
          "--limit-unpacked", upgrade.limits.unpacked,
          "When it is compressed and unpacks to more than this many MB (default: 256, and 100 for each "
          "MB of its file)")
      ->type_name("MB")
      ->check(WholeNumber)
      ->group(limits);
  verb->footer(kUpgradeExamples);
}

void AddIdentifiers(CLI::App& app, IdentifiersArguments& identifiers) {
  CLI::App* const verb = app.add_subcommand("identifiers", "List or explain the upgrades, oldest first");
  verb->add_option("ID", identifiers.identifiers, "Explain these only")->type_name("");
  verb->add_flag("--json", identifiers.json, "Print JSON");
  verb->footer(kIdentifiersExamples);
}

void AddShow(CLI::App& app, ShowArguments& show) {
  CLI::App* const verb = app.add_subcommand("show", "Show the features of a document as a tree");
  verb->add_option("FILE", show.file, "The document")->required()->type_name("")->check(NotEmpty);
  verb->add_flag("-a,--attributes", show.attributes, "With their attributes");
  verb->add_option("--type", show.lateType, "Only features of this late type")
      ->type_name("LATETYPE")
      ->check(NotEmpty);
  verb->add_option("--id", show.id, "Only this feature and what stands beneath it")->type_name("N");
  verb->add_option("--depth", show.depth, "Only so many levels")->type_name("N")->check(AboveZero);
  verb->footer(kShowExamples);
}

void AddCheck(CLI::App& app, CheckArguments& check) {
  CLI::App* const verb =
      app.add_subcommand("check", "Tell whether documents conform to the current data model");
  AddSources(*verb, check.sources);
  AddMany(*verb, check.many);
  verb->add_flag("--all", check.all, "List every feature, also where many have the same");
  verb->add_flag("--json", check.json, "Print JSON");
  verb->footer(kCheckExamples);
}

void AddDiff(CLI::App& app, DiffArguments& diff) {
  CLI::App* const verb = app.add_subcommand("diff", "Tell what differs between two documents");
  verb->add_option("BEFORE", diff.before, "The one document")->required()->type_name("")->check(NotEmpty);
  verb->add_option("AFTER", diff.after, "The other document")->required()->type_name("")->check(NotEmpty);
  verb->add_flag("--json", diff.json, "Print JSON");
  verb->footer(kDiffExamples);
}

void AddClean(CLI::App& app, CleanArguments& clean) {
  CLI::App* const verb = app.add_subcommand("clean", "Remove the temporary files that killed runs left");
  verb->add_option("FOLDER", clean.folders, "Folders, with all beneath them")
      ->required()
      ->type_name("")
      ->check(NotEmpty);
  verb->add_flag("--dry-run", clean.dryRun, "Only list them");
  verb->add_flag("--json", clean.json, "Print JSON");
  verb->footer(kCleanExamples);
}

void AddMerge(CLI::App& app, MergeArguments& merge) {
  CLI::App* const verb =
      app.add_subcommand("merge", "Make one report and one exit code of the reports of a run's shards");
  verb->add_option("REPORT", merge.reports, "The reports")->required()->type_name("")->check(NotEmpty);
  verb->add_option("--report", merge.report, "Write all their records to this report")
      ->type_name("FILE")
      ->check(FileName);
  verb->add_flag("--force", merge.force, "Replace it if it exists already");
  verb->footer(kMergeExamples);
}

Shard ShardOf(const std::string& text) {
  Shard shard;
  const std::size_t slash = text.find('/');
  const std::string parts[] = {text.substr(0, slash),
                               slash == std::string::npos ? std::string() : text.substr(slash + 1)};
  for (const std::string& part : parts) {
    constexpr std::size_t kMostDigits = 6;
    if (!AboveZero(part).empty() || part.size() > kMostDigits)
      throw UsageError("--shard must be a part and the number of parts, such as 1/4");
  }
  shard.number = std::stoul(parts[0]);
  shard.of = std::stoul(parts[1]);
  if (shard.number > shard.of) throw UsageError(fmt::format("--shard {}: there is no such part", text));
  return shard;
}

void Check(DiffArguments& diff) {
  if (diff.before == kStandardStream && diff.after == kStandardStream)
    throw UsageError("standard input can be read once");
  OpenStream(diff.before);
  OpenStream(diff.after);
}

void Check(UpgradeArguments& upgrade, const CLI::App& verb) {
  if (verb.count("--shard") > 0) upgrade.shard = ShardOf(upgrade.shardText);
  if (!upgrade.again.empty() && upgrade.report.empty()) throw UsageError("--again goes with --report");
  if (upgrade.quiet && upgrade.many.verbose) throw UsageError("give one of --quiet and --verbose");
  const bool readsStream = std::ranges::count(upgrade.sources.given, kStandardStream) != 0;
  if (readsStream && (upgrade.inPlace || !upgrade.outputDirectory.empty()))
    throw UsageError(
        "standard input has no name that its result could bear; give -o FILE, or -o - for standard output");
  Check(upgrade.sources);
  CheckNull(upgrade.sources);
  const int places = (upgrade.output.empty() ? 0 : 1) + (upgrade.outputDirectory.empty() ? 0 : 1) +
                     (upgrade.inPlace ? 1 : 0);
  if (places == 0 && !upgrade.dryRun) {
    throw UsageError(
        "say where the result goes: -o FILE, --output-dir DIR or --in-place; or ask for --dry-run");
  }
  if (places > 1) throw UsageError("give one of -o, --output-dir and --in-place");
  if (!upgrade.only.empty() && !upgrade.until.empty()) throw UsageError("give one of --only and --until");
  if (upgrade.strict && upgrade.acceptFailures)
    throw UsageError("give one of --strict and --accept-failures");
  if (upgrade.acceptFailures && !upgrade.inPlace) throw UsageError("--accept-failures goes with --in-place");
  if (verb.count("--backup") > 0 && !upgrade.inPlace) throw UsageError("--backup goes with --in-place");
  if (verb.count("--backup") > 0 &&
      (upgrade.backupSuffix.empty() || upgrade.backupSuffix.find('/') != std::string::npos)) {
    throw UsageError("the suffix of --backup must be a part of a file name, such as .old");
  }
  if (const auto& seconds = upgrade.limits.seconds;
      seconds && !(*seconds >= 0 && *seconds <= kLongestTimeout))
    throw UsageError("--timeout must be a number of seconds, or 0 for no limit");
}

// What is wrong when the parser met words that it did not expect.
std::string Unexpected(const CLI::App& app, const std::vector<std::string>& words, const char* what) {
  const auto isWord = [](const std::string& word) { return !word.starts_with('-'); };
  const auto first = std::ranges::find_if(words, isWord);
  if (!app.get_subcommands().empty() || first == words.end()) return what;
  return fmt::format(
      "there is no command {}; say status, check, upgrade, merge, diff, identifiers, show or clean",
      Quoted(*first));
}

}  // namespace

std::optional<ExitCode> ParseArguments(int count, const char* const* texts, Arguments& arguments) {
  CLI::App app("Brings analysis documents written by earlier releases up to the current data model.",
               "hvxupgrade");
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.set_version_flag("--version", "hvxupgrade " HVXUPGRADE_VERSION);
  app.footer(fmt::format("{}\n{}", kExamples, kExitCodes));
  app.add_option("--library", arguments.places.libraries,
                 "Use this upgrade library (may be given several times)")
      ->type_name("FILE")
      ->allow_extra_args(false);
  app.add_option("--data", arguments.places.data, "Use this data folder (message and feature catalogs)")
      ->type_name("DIR");

  StatusArguments status;
  UpgradeArguments upgrade;
  IdentifiersArguments identifiers;
  ShowArguments show;
  AddStatus(app, status);
  AddUpgrade(app, upgrade);
  AddIdentifiers(app, identifiers);
  AddShow(app, show);
  CheckArguments check;
  DiffArguments diff;
  AddCheck(app, check);
  AddDiff(app, diff);
  CleanArguments clean;
  AddClean(app, clean);
  MergeArguments merge;
  AddMerge(app, merge);

  const CLI::App* const upgradeVerb = app.get_subcommand("upgrade");
  try {
    app.parse(count, texts);
    if (app.get_subcommands().empty())
      throw UsageError("say what to do: status, check, upgrade, merge, diff, identifiers, show or clean");
    if (app.got_subcommand("status")) {
      Check(status);
      arguments.verb = std::move(status);
    } else if (app.got_subcommand("upgrade")) {
      Check(upgrade, *upgradeVerb);
      arguments.verb = std::move(upgrade);
    } else if (app.got_subcommand("identifiers")) {
      arguments.verb = std::move(identifiers);
    } else if (app.got_subcommand("check")) {
      Check(check.sources);
      CheckNull(check.sources);
      arguments.verb = std::move(check);
    } else if (app.got_subcommand("diff")) {
      Check(diff);
      arguments.verb = std::move(diff);
    } else if (app.got_subcommand("clean")) {
      arguments.verb = std::move(clean);
    } else if (app.got_subcommand("merge")) {
      arguments.verb = std::move(merge);
    } else {
      OpenStream(show.file);
      arguments.verb = std::move(show);
    }
    return std::nullopt;
  } catch (const CLI::ExtrasError& error) {
    Complain(Unexpected(app, app.remaining(), error.what()));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      std::ostringstream help;
      app.exit(error, help, help);
      Say(help.str());
      return ExitCode::kDone;
    }
    Complain(error.what());
  } catch (const UsageError& error) {
    Complain(error.what());
  }
  const auto verbs = app.get_subcommands();
  Put(stderr, fmt::format("Try: hvxupgrade {}{}--help\n", verbs.empty() ? "" : verbs.front()->get_name(),
                          verbs.empty() ? "" : " "));
  return ExitCode::kUsage;
}

}  // namespace tool
