#include "settings/ReportOptions.h"

#include <algorithm>

#include "settings/CommonOptions.h"
#include "settings/UsageError.h"

namespace tool {
namespace {

constexpr const char* kReportExamples = R"(Examples:
  hvxupgrade report run.jsonl
  hvxupgrade report run.jsonl --document clamp.hvxdoc
  hvxupgrade report run.*.jsonl --format csv -o run.csv
  hvxupgrade report run.jsonl --format json | jq -r '.reports[].documents[] | select(.thingsForPerson > 0) | .file'
  hvxupgrade upgrade archive --dry-run --report - | hvxupgrade report -)";

}  // namespace

void AddReport(CLI::App& app, ReportArguments& report) {
  CLI::App* const verb =
      app.add_subcommand("report", "Show what reports of upgrades hold, or make a page, CSV or JSON of them");
  verb->add_option("FILE", report.reports, "The reports ('-': standard input)")
      ->required()
      ->type_name("")
      ->check(NotEmpty);
  verb->add_option(
          "--format", report.format,
          "text (default: the verdict, what needs a person, totals, dropped values), html (a page for a "
          "browser), csv (a row for each document) or json (everything)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"text", "json", "csv", "html"}));
  verb->add_option("-o,--output", report.output, "Write to this file (default, and '-': standard output)")
      ->type_name("FILE")
      ->check(NotEmpty);
  verb->add_flag("--force", report.force, "Replace it if it exists already");
  verb->add_option("--document", report.documents,
                   "Only this document, by its name or the end of its path (may be given several times)")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->check(NotEmpty);
  verb->footer(kReportExamples);
}

void Check(const ReportArguments& report) {
  if (std::ranges::count(report.reports, kStandardStream) > 1)
    throw UsageError("standard input can be read once");
}

}  // namespace tool
