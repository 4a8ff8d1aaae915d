#include "CheckCommand.h"

#include <algorithm>
#include <set>

#include "FeatureOutput.h"
#include "Reading.h"
#include "Terminal.h"
#include "check/Conformity.h"

namespace tool {
namespace {

using standalone::Finding;

struct Checked {
  std::string file;
  standalone::DocumentPtr document;
  std::vector<Finding> findings;
  std::vector<std::string> unknown;  // recorded, but of a later release

  [[nodiscard]] std::string_view Verdict() const {
    if (!unknown.empty()) return "newer than this program";
    return findings.empty() ? "conforms" : "does not conform";
  }
  [[nodiscard]] ExitCode Code() const {
    if (!unknown.empty()) return ExitCode::kNewer;
    return findings.empty() ? ExitCode::kDone : ExitCode::kUpgradeNeeded;
  }
};

// What a later release calls current is not known here, so its documents are not looked at.
Checked Check(const std::string& file, const standalone::VersionManager& manager) {
  Checked checked{file, ReadWithProgress(file), {}, {}};
  checked.unknown = manager.Unknown(*checked.document.Get());
  if (checked.unknown.empty()) checked.findings = standalone::CheckConformity(*checked.document.Get());
  return checked;
}

void AppendText(fmt::memory_buffer& out, const Checked& checked) {
  auto to = std::back_inserter(out);
  const Colour colour = !checked.unknown.empty()   ? Colour::kRed
                        : checked.findings.empty() ? Colour::kGreen
                                                   : Colour::kYellow;
  fmt::format_to(to, "{}: {}", Printable(checked.file), Paint(stdout, colour, checked.Verdict()));
  if (!checked.findings.empty()) {
    std::set<const standalone::Feature*> features;
    for (const Finding& finding : checked.findings) features.insert(finding.feature);
    fmt::format_to(to, ", {} on {}", Count(checked.findings.size(), "finding"),
                   Count(features.size(), "feature"));
  }
  fmt::format_to(to, " ({})\n", Count(checked.document->FeatureCount(), "feature"));
  const standalone::Feature* last = nullptr;
  for (const Finding& finding : checked.findings) {
    if (finding.feature != last) {
      fmt::format_to(to, "  ");
      AppendLabel(out, *finding.feature);
      out.push_back('\n');
    }
    last = finding.feature;
    fmt::format_to(to, "    {} ({})\n", finding.rule->reason, finding.rule->identifier);
    if (!finding.damage.empty()) fmt::format_to(to, "      damaged: {}\n", finding.damage);
  }
}

void AppendJson(fmt::memory_buffer& out, const Checked& checked) {
  JsonObject entry(out);
  entry.Text("file", checked.file);
  entry.Text("verdict", checked.Verdict());
  entry.Number("features", checked.document->FeatureCount());
  entry.Texts("unknown", checked.unknown);
  JsonList findings(entry.Key("findings"));
  for (const Finding& finding : checked.findings) {
    JsonObject object(findings.Entry());
    AppendIdentity(object, *finding.feature);
    object.Text("identifier", finding.rule->identifier);
    object.Text("reason", finding.rule->reason);
    if (!finding.damage.empty()) object.Text("damage", finding.damage);
    object.Close();
  }
  findings.Close();
  entry.Close();
}

void Print(const fmt::memory_buffer& out) {
  Say({out.data(), out.size()});
  std::fflush(stdout);
}

}  // namespace

ExitCode RunCheck(const CheckArguments& arguments, const standalone::VersionManager& manager) {
  ExitCode code = ExitCode::kDone;
  fmt::memory_buffer out;
  JsonObject top(out);
  top.Text("check", "hvxupgrade");
  top.Number("version", kJsonVersion);
  JsonList documents(top.Key("documents"));
  for (const std::string& file : arguments.files) {
    try {
      const Checked checked = Check(file, manager);
      code = MoreSerious(code, checked.Code());
      if (arguments.json) {
        AppendJson(documents.Entry(), checked);
        continue;
      }
      fmt::memory_buffer text;
      AppendText(text, checked);
      Print(text);
    } catch (const standalone::DocumentError& error) {
      code = MoreSerious(code, ExitCodeOf(error));
      Complain(error.what());
      if (arguments.json) AppendUnreadable(documents.Entry(), file, error);
    }
  }
  if (!arguments.json) return code;
  documents.Close();
  top.Close();
  out.push_back('\n');
  Print(out);
  return code;
}

}  // namespace tool
