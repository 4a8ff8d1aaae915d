#include "settings/UpgradeOptions.h"

#include <fmt/format.h>

#include <algorithm>

#include "settings/CommonOptions.h"
#include "settings/Duration.h"
#include "settings/UsageError.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr const char* kUpgradeExamples = R"(Examples:
  hvxupgrade upgrade bracket.hvxdoc -o current.hvxdoc
  hvxupgrade upgrade bracket.hvxdoc --dry-run --report changes.jsonl
  hvxupgrade upgrade archive --output-dir current --report run.jsonl
  find archive -name '*.hvxdoc' -mtime -30 -print0 | hvxupgrade upgrade --files-from - -0 --in-place --backup .old
  hvxupgrade upgrade bracket.hvxdoc --in-place --backup .old
  hvxupgrade upgrade bracket.hvxdoc -o half.hvxdoc --until UpgradeJobRestartData)";

Shard ShardOf(const std::string& text) {
  Shard shard;
  const std::size_t slash = text.find('/');
  const std::string parts[] = {text.substr(0, slash),
                               slash == std::string::npos ? std::string() : text.substr(slash + 1)};
  for (const std::string& part : parts) {
    constexpr std::size_t kMostDigits = 6;
    if (!AboveZero(part).empty() || part.size() > kMostDigits)
      throw UsageError("--shard must be a shard and the number of shards, such as 1/4");
  }
  shard.number = std::stoul(parts[0]);
  shard.of = std::stoul(parts[1]);
  if (shard.number > shard.of) throw UsageError(fmt::format("--shard {}: there is no such shard", text));
  return shard;
}

}  // namespace

void AddUpgrade(CLI::App& app, UpgradeArguments& upgrade) {
  CLI::App* const verb = app.add_subcommand("upgrade", "Bring documents up to the current data model");
  AddSources(*verb, upgrade.sources);

  const auto where = "Where the results go (one of -o, --output-dir, --in-place)";
  auto* const output =
      verb->add_option("-o,--output", upgrade.output, "Write the result to this file ('-': standard output)");
  auto* const folder = verb->add_option(
      "--output-dir", upgrade.outputDirectory,
      "Write the results to this folder; what was found in a folder keeps its path beneath it");
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

  verb->add_flag(
          "--retry", upgrade.retry,
          "Run again the upgrades that left features behind, on those features, once they are corrected; of "
          "upgrades of other libraries those that --only names, on all their features")
      ->group(which);

  const auto told = "What is reported";
  verb->add_option(
          "--report", upgrade.report,
          "Write the result of each document, with every change, as lines of JSON; with the same report, the "
          "same command resumes a run that was stopped ('-': standard output, from the beginning)")
      ->type_name("FILE")
      ->check(NotEmpty)
      ->group(told);
  verb->add_option("--report-detail", upgrade.reportDetail,
                   "How much of the changes: full (default), changes (without the contents of created and "
                   "removed features) or summary (numbers)")
      ->type_name("DETAIL")
      ->check(CLI::IsMember({"full", "changes", "summary"}))
      ->group(told);
  AddHtml(*verb, upgrade.html).group(told);
  verb->add_option("--trace", upgrade.trace, "Write a line for every call of the host ('-': standard error)")
      ->type_name("FILE")
      ->check(NotEmpty)
      ->group(told);
  verb->add_option("--language", upgrade.language, "The language of names that upgrades create (default: en)")
      ->type_name("LANG")
      ->group(told);
  verb->add_flag("--fail-on-drop", upgrade.failOnDrop,
                 "End with 1 when values of the old document are nowhere in the result")
      ->group(told);
  verb->add_flag_callback(
          "--no-sheet", [&upgrade] { upgrade.sheet = false; },
          "Do not compare what the analysis says before and after (see 'hvxupgrade sheet')")
      ->group(told);
  verb->add_flag("-q,--quiet", upgrade.quiet, "Print errors only")->group(told);
  AddMany(*verb, upgrade.many);
  verb->add_option("--again", upgrade.again,
                   "Of those in the report, do again: failed (without a result), incomplete (also those that "
                   "need a person) or all")
      ->type_name("WHICH")
      ->check(CLI::IsMember({"failed", "incomplete", "all"}))
      ->group(kMany);
  verb->add_option("--shard", upgrade.shardText,
                   "Only shard I of N, all about equally large; shards do not overlap")
      ->type_name("I/N")
      ->group(kMany);

  const auto limits = "When the upgrade of a document is stopped; its file stays as it is (0: never)";
  verb->add_option(
          "--timeout", upgrade.timeoutText,
          "After this time, in seconds, or such as 90s, 10m, 2h (default: 120s, and 2s for each MB of "
          "the document)")
      ->type_name("TIME")
      ->group(limits);
  verb->add_option("--limit-features", upgrade.limits.features,
                   "When upgrades created this many features (default: 1000000, and 10 for each feature)")
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

void Check(UpgradeArguments& upgrade, const CLI::App& verb) {
  if (verb.count("--shard") > 0) upgrade.shard = ShardOf(upgrade.shardText);
  if (!upgrade.again.empty() && upgrade.report.empty()) throw UsageError("--again requires --report");
  if (!upgrade.again.empty() && upgrade.ReportsToStream())
    throw UsageError(
        "--again requires a report that is a file: there is nothing on standard output to resume");
  if (upgrade.ReportsToStream() && upgrade.output == kStandardStream)
    throw UsageError("standard output can be written only once: give a file to one of -o and --report");
  if (!upgrade.html.empty() && upgrade.ReportsToStream())
    throw UsageError("--html is written from the report: give a file to --report, or none");
  if (upgrade.quiet && upgrade.many.verbose) throw UsageError("give only one of --quiet and --verbose");
  const bool readsStream = std::ranges::count(upgrade.sources.given, kStandardStream) != 0;
  if (readsStream && (upgrade.inPlace || !upgrade.outputDirectory.empty()))
    throw UsageError("standard input has no name for its result; give -o FILE, or -o - for standard output");
  Check(upgrade.sources);
  CheckNull(upgrade.sources);
  const int places = (upgrade.output.empty() ? 0 : 1) + (upgrade.outputDirectory.empty() ? 0 : 1) +
                     (upgrade.inPlace ? 1 : 0);
  if (places == 0 && !upgrade.dryRun) {
    throw UsageError(
        "give a place for the result: -o FILE, --output-dir DIR or --in-place; or give --dry-run");
  }
  if (places > 1) throw UsageError("give only one of -o, --output-dir and --in-place");
  if (!upgrade.only.empty() && !upgrade.until.empty())
    throw UsageError("give only one of --only and --until");
  if (upgrade.strict && upgrade.acceptFailures)
    throw UsageError("give only one of --strict and --accept-failures");
  if (upgrade.acceptFailures && !upgrade.inPlace) throw UsageError("--accept-failures requires --in-place");
  if (verb.count("--backup") > 0 && !upgrade.inPlace) throw UsageError("--backup requires --in-place");
  if (verb.count("--backup") > 0 &&
      (upgrade.backupSuffix.empty() || upgrade.backupSuffix.find('/') != std::string::npos)) {
    throw UsageError("the suffix of --backup must be a part of a file name, such as .old");
  }
  if (verb.count("--timeout") > 0) {
    upgrade.limits.seconds = SecondsOf(upgrade.timeoutText);
    if (!upgrade.limits.seconds)
      throw UsageError(
          fmt::format("--timeout {}: must be a time such as 90 (seconds), 90s, 10m or 2h, or 0 for no limit",
                      Quoted(upgrade.timeoutText)));
  }
}

}  // namespace tool
