#include "settings/Arguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <sstream>

#include "settings/CommonOptions.h"
#include "settings/HelpText.h"
#include "settings/ReportOptions.h"
#include "settings/Unexpected.h"
#include "settings/UpgradeOptions.h"
#include "settings/UsageError.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr const char* kExitCodes =
    "Exit codes:\n"
    "  0  done, or nothing to do\n"
    "  1  finished, but some feature failed or some upgrade was stopped; check: something needs a person; "
    "diff: the documents differ; sheet: a difference is unaccounted for\n"
    "  2  wrong usage\n"
    "  3  some input is unreadable or invalid\n"
    "  4  some document needs what is not here: it is newer than this program, has been through upgrades "
    "that "
    "nothing here knows, or still needs upgrades and was upgraded by a library that is not loaded\n"
    "  5  some output could not be written, or a document was changed meanwhile by another program; existing "
    "files are as they were\n"
    "  6  an upgrade is needed (check and status --check only)\n"
    "  130  interrupted\n"
    "Of several, the most serious: 130, 2, 5, 3, 4, 1, 6, 0.";

constexpr const char* kExamples = R"(Examples:
  hvxupgrade status bracket.hvxdoc                     what the document still needs
  hvxupgrade upgrade bracket.hvxdoc -o current.hvxdoc  write the current document beside the old one
  hvxupgrade check current.hvxdoc                      whether anything is still stored the old way
  hvxupgrade diff bracket.hvxdoc current.hvxdoc        what differs, feature by feature
  hvxupgrade sheet bracket.hvxdoc                      the analysis in engineering terms
  hvxupgrade sheet bracket.hvxdoc current.hvxdoc       whether it is still the same analysis
  hvxupgrade report run.jsonl                          what became of a run, from its --report
  hvxupgrade identifiers UpgradeJobMemoryUnit          what one upgrade does, and to which features
  hvxupgrade show bracket.hvxdoc --type HVXJobLT --attributes
)";

constexpr const char* kStatusExamples = R"(Examples:
  hvxupgrade status bracket.hvxdoc pipe.hvxdoc
  hvxupgrade status --check archive --exclude drafts && echo all current
  hvxupgrade status --list pending -0 archive | hvxupgrade upgrade --files-from - -0 --in-place --backup .old
  hvxupgrade status --json bracket.hvxdoc | jq -r '.documents[].pendingUpgrades[]')";

constexpr const char* kIdentifiersExamples = R"(Examples:
  hvxupgrade identifiers
  hvxupgrade identifiers ReExplicitateFeature AddConnectionContainer
  hvxupgrade identifiers --json | jq -r '.upgrades[] | select(.documentWide) | .upgrade')";

constexpr const char* kShowExamples = R"(Examples:
  hvxupgrade show bracket.hvxdoc --depth 2
  hvxupgrade show bracket.hvxdoc --type HVXPressure --attributes
  hvxupgrade show bracket.hvxdoc --id 17
  hvxupgrade show --json bracket.hvxdoc | jq '.features[] | select(.upToDate == false) | .id')";

constexpr const char* kCheckExamples = R"(Examples:
  hvxupgrade check current.hvxdoc
  hvxupgrade check --json *.hvxdoc | jq -r '.documents[].findings[] | select(.kind == "leftBehind") | .alias')";

constexpr const char* kDiffExamples = R"(Examples:
  hvxupgrade diff bracket.hvxdoc current.hvxdoc
  hvxupgrade diff --json a.hvxdoc b.hvxdoc | jq '.changed[] | select(.type == "HVXPressure")')";

constexpr const char* kSheetExamples = R"(Examples:
  hvxupgrade sheet bracket.hvxdoc --units mm-t-s
  hvxupgrade sheet bracket.hvxdoc --case "Bearing Study" --csv > bearing.csv
  hvxupgrade sheet bracket.hvxdoc current.hvxdoc
  hvxupgrade sheet --json bracket.hvxdoc current.hvxdoc | jq '.differences[] | select(.meaning == "unaccounted")')";

constexpr const char* kMergeExamples = R"(Examples:
  hvxupgrade merge run.1.jsonl run.2.jsonl
  hvxupgrade merge run.*.jsonl --report run.jsonl)";

constexpr const char* kCleanExamples = R"(Examples:
  hvxupgrade clean --dry-run .
  hvxupgrade clean --json results | jq .totals.bytes)";

constexpr const char* kHelpExamples = R"(Examples:
  hvxupgrade help
  hvxupgrade help upgrade)";

void Check(StatusArguments& status) {
  Check(status.sources);
  if (status.sources.listHasNul && status.sources.list.empty() && status.list.empty())
    throw UsageError("--null requires --files-from or --list");
  if (status.json && !status.list.empty()) throw UsageError("give only one of --json and --list");
}

void AddStatus(CLI::App& app, StatusArguments& status) {
  CLI::App* const verb =
      app.add_subcommand("status", "Show which upgrades documents have been through and need");
  AddSources(*verb, status.sources);
  verb->add_option("--list", status.list,
                   "Print only the names of documents that are pending, current, newer, notLoaded (upgraded "
                   "by a library that is not loaded) or broken; with --null, each ended by NUL")
      ->type_name("STATE")
      ->check(CLI::IsMember({"pending", "current", "newer", "notLoaded", "broken"}));
  verb->add_flag("--check", status.check, "End with 6 when a document needs an upgrade");
  verb->add_flag("--json", status.json, "Print JSON");
  verb->add_flag("-v,--verbose", status.verbose, "Show the upgrades of each document by name");
  verb->footer(kStatusExamples);
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
  verb->add_option("--id", show.id, "Only this feature and what is beneath it")->type_name("N");
  verb->add_option("--depth", show.depth, "Only this many levels")->type_name("N")->check(AboveZero);
  verb->add_flag("--json", show.json, "Print JSON, with the attributes");
  verb->footer(kShowExamples);
}

void AddCheck(CLI::App& app, CheckArguments& check) {
  CLI::App* const verb =
      app.add_subcommand("check", "Check whether documents conform to the current data model");
  AddSources(*verb, check.sources);
  AddMany(*verb, check.many);
  verb->add_flag("--all", check.all, "List every feature, also where many have the same finding");
  verb->add_flag("--json", check.json, "Print JSON");
  AddHtml(*verb, check.html);
  verb->footer(kCheckExamples);
}

void AddDiff(CLI::App& app, DiffArguments& diff) {
  CLI::App* const verb = app.add_subcommand("diff", "Show what differs between two documents");
  verb->add_option("BEFORE", diff.before, "The one document")->required()->type_name("")->check(NotEmpty);
  verb->add_option("AFTER", diff.after, "The other document")->required()->type_name("")->check(NotEmpty);
  verb->add_flag("--json", diff.json, "Print JSON");
  AddHtml(*verb, diff.html);
  verb->footer(kDiffExamples);
}

void AddSheet(CLI::App& app, SheetArguments& sheet) {
  CLI::App* const verb = app.add_subcommand(
      "sheet", "Show in engineering terms what a document analyses, or whether two analyse the same");
  verb->add_option("FILE", sheet.file, "The document")->required()->type_name("")->check(NotEmpty);
  verb->add_option("CURRENT", sheet.current, "The document after an upgrade, to compare")
      ->type_name("")
      ->check(NotEmpty);
  verb->add_option("--case", sheet.caseName, "Only what belongs to this analysis case")
      ->type_name("NAME")
      ->check(NotEmpty);
  verb->add_option("--step", sheet.stepName, "Only what belongs to this step")
      ->type_name("NAME")
      ->check(NotEmpty);
  verb->add_option("--units", sheet.units, "Units of numbers: si (default) or mm-t-s")
      ->type_name("SYSTEM")
      ->check(CLI::IsMember({"si", "mm-t-s"}));
  verb->add_flag("--all", sheet.all, "Show every value and every difference, also minor ones");
  verb->add_flag("--json", sheet.json, "Print JSON, in SI units");
  verb->add_flag("--csv", sheet.csv, "Print comma-separated values, a row for each");
  verb->footer(kSheetExamples);
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
      app.add_subcommand("merge", "Merge the reports of a run's shards into one report and one exit code");
  verb->add_option("REPORT", merge.reports, "The reports")->required()->type_name("")->check(NotEmpty);
  verb->add_option("--report", merge.report, "Write all their records to this report")
      ->type_name("FILE")
      ->check(FileName);
  verb->add_flag("--force", merge.force, "Replace it if it exists already");
  verb->footer(kMergeExamples);
}

void Check(DiffArguments& diff) {
  if (diff.before == kStandardStream && diff.after == kStandardStream)
    throw UsageError("standard input can be read only once");
  OpenStream(diff.before);
  OpenStream(diff.after);
}

void Check(SheetArguments& sheet) {
  if (sheet.json && sheet.csv) throw UsageError("give only one of --json and --csv");
  if (sheet.json && !sheet.units.empty())
    throw UsageError("--json is in SI units: --units cannot be combined with it");
  if (sheet.all && (sheet.json || sheet.csv))
    throw UsageError("--json and --csv show everything: --all cannot be combined with them");
  if (sheet.file == kStandardStream && sheet.current == kStandardStream)
    throw UsageError("standard input can be read only once");
  OpenStream(sheet.file);
  OpenStream(sheet.current);
}

void AddHelp(CLI::App& app, std::string& command) {
  CLI::App* const verb = app.add_subcommand("help", "Print help, or that of a command");
  verb->add_option("COMMAND", command, "The command")->type_name("")->check(NotEmpty);
  verb->footer(kHelpExamples);
}

}  // namespace

std::optional<ExitCode> ParseArguments(int count, const char* const* texts, Arguments& arguments) {
  arguments.commandLine.assign(texts, texts + count);
  CLI::App app("Brings analysis documents written by earlier releases up to the current data model.",
               "hvxupgrade");
  app.formatter(std::make_shared<HelpText>(std::min(ColumnsOf(stdout), kLineWidth)));
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.set_version_flag("-V,--version", "hvxupgrade " HVXUPGRADE_VERSION);
  app.footer(fmt::format("{}\n{}", kExamples, kExitCodes));
  app.add_option("--library", arguments.places.libraries,
                 "Use this upgrade library, too (may be given several times)")
      ->type_name("FILE")
      ->allow_extra_args(false)
      ->check(NotEmpty);
  app.add_option(
         "--plugins", arguments.places.plugins,
         fmt::format("Use all upgrade libraries (*.so) in this folder, too (may be given several times; "
                     "{} names such folders, separated by ':')",
                     kPluginsVariable))
      ->type_name("DIR")
      ->allow_extra_args(false)
      ->check(NotEmpty);
  app.add_flag_callback(
      "--no-default-library", [&arguments] { arguments.places.defaultLibrary = false; },
      "Leave out the upgrade library that is installed with the program");
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
  SheetArguments sheet;
  AddSheet(app, sheet);
  CleanArguments clean;
  AddClean(app, clean);
  MergeArguments merge;
  AddMerge(app, merge);
  ReportArguments report;
  AddReport(app, report);
  std::string explained;
  AddHelp(app, explained);

  const CLI::App* const upgradeVerb = app.get_subcommand("upgrade");
  try {
    app.parse(count, texts);
    if (app.get_subcommands().empty()) throw UsageError(fmt::format("give a command: {}", kCommands));
    if (app.got_subcommand("help")) {
      if (!explained.empty() && !IsCommand(app, explained)) throw UsageError(NoCommand(app, explained));
      app.parse(explained + " --help");  // throws, as that does on the command line
    }
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
    } else if (app.got_subcommand("sheet")) {
      Check(sheet);
      arguments.verb = std::move(sheet);
    } else if (app.got_subcommand("clean")) {
      arguments.verb = std::move(clean);
    } else if (app.got_subcommand("merge")) {
      arguments.verb = std::move(merge);
    } else if (app.got_subcommand("report")) {
      Check(report);
      arguments.verb = std::move(report);
    } else {
      OpenStream(show.file);
      arguments.verb = std::move(show);
    }
    return std::nullopt;
  } catch (const CLI::ExtrasError& error) {
    Complain(Unexpected(app, error.what()));
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
