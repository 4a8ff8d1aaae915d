#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "settings/ExitCode.h"
#include "settings/Installation.h"
#include "settings/Limits.h"
#include "settings/Sources.h"

namespace tool {

struct StatusArguments {
  Sources sources;
  std::string list;  ///< Only the names of documents in this state; empty for all that is known.
  bool check = false;
  bool json = false;
  bool verbose = false;  ///< Tells of each document all upgrades by name.
};

/// A part of a run's documents: one of several shards of about the same size.
struct Shard {
  std::size_t number = 1;  ///< From 1 on.
  std::size_t of = 1;
};

/// How to go about many documents.
struct ManyDocuments {
  std::optional<std::size_t> workers;      ///< None: as many as there are processors.
  std::optional<std::uint64_t> megabytes;  ///< For all workers. None: what is available; 0: no limit.
  std::string progress = "auto";           ///< Or "plain", "none".
  bool verbose = false;                    ///< Tells all of each document.
};

struct UpgradeArguments {
  Sources sources;
  std::string output;  // at most one of these three
  std::string outputDirectory;
  bool inPlace = false;
  std::string backupSuffix;
  bool dryRun = false;
  bool force = false;
  bool strict = false;
  bool acceptFailures = false;
  bool failOnDrop = false;
  bool sheet = true;
  bool retry = false;
  bool keepResult = false;
  std::vector<std::string> only;  // at most one of these two
  std::string until;
  std::string report;
  std::string reportDetail = "full";  // or "changes", "summary"
  std::string html;                   ///< Where to write a page; empty for none.
  std::string again;                  // "failed", "incomplete", "all"; empty for nothing
  std::string language = "en";
  std::string trace;
  bool quiet = false;
  ManyDocuments many;
  std::string shardText;
  std::optional<Shard> shard;  // what the text says
  std::string timeoutText;     // as it was given; the limits hold what it says
  Limits limits;               ///< Of each document.

  [[nodiscard]] bool ReportsToStream() const { return report == kStandardStream; }
  /// For people.
  [[nodiscard]] std::string ReportName() const { return ReportsToStream() ? "standard output" : report; }
};

struct IdentifiersArguments {
  std::vector<std::string> identifiers;
  bool json = false;
};

struct ShowArguments {
  std::string file;
  bool attributes = false;
  std::string lateType;
  std::optional<std::int64_t> id;
  std::optional<std::size_t> depth;
  bool json = false;
};

struct CheckArguments {
  Sources sources;
  ManyDocuments many;
  bool all = false;
  bool json = false;
  std::string html;  ///< Where to write a page; empty for none.

  [[nodiscard]] bool WantsEntries() const { return json || !html.empty(); }
};

struct DiffArguments {
  std::string before;
  std::string after;
  bool json = false;
  std::string html;  ///< As above.
};

struct SheetArguments {
  std::string file;
  std::string current;   ///< What an upgrade made of it, to compare; empty for none.
  std::string caseName;  ///< Only what belongs to it; empty for all.
  std::string stepName;  ///< The same.
  std::string units;     ///< "si", "mm-t-s"; empty for SI.
  bool all = false;
  bool json = false;  // at most one of these two
  bool csv = false;
};

struct CleanArguments {
  std::vector<std::string> folders;
  bool dryRun = false;
  bool json = false;
};

struct MergeArguments {
  std::vector<std::string> reports;
  std::string report;  ///< The one to make of them; empty for none.
  bool force = false;
};

struct ReportArguments {
  std::vector<std::string> reports;    ///< "-" for standard input.
  std::string format = "text";         ///< Or "json", "csv", "html".
  std::string output;                  ///< Empty, or "-", for standard output.
  std::vector<std::string> documents;  ///< Only these; all when there are none.
  bool force = false;
};

/// What the user asked for.
struct Arguments {
  std::vector<std::string> commandLine;  ///< All of it, with the program, as given.
  Places places;
  std::variant<std::monostate, StatusArguments, UpgradeArguments, IdentifiersArguments, ShowArguments,
               CheckArguments, DiffArguments, SheetArguments, CleanArguments, MergeArguments, ReportArguments>
      verb;
};

/// Reads the command line into `arguments`. When there is nothing left to do (help was asked for and printed)
/// or nothing can be done (wrong usage, which was explained on standard error), gives the code to end with.
[[nodiscard]] std::optional<ExitCode> ParseArguments(int count, const char* const* texts,
                                                     Arguments& arguments);

}  // namespace tool
