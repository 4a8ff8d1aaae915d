#include "document/SheetAccounting.h"

#include <limits>
#include <vector>

#include "check/Conformity.h"
#include "document/Reading.h"
#include "session/Messages.h"

namespace tool {
namespace {

using namespace standalone::sheet;
namespace fs = std::filesystem;

// Compares two documents by what upgrades can have run in between.
class Accounting {
 public:
  Accounting(const DocumentSheet& before, const DocumentSheet& after, const fs::path& messages)
      : before_(before), after_(after), messages_(messages) {
    for (const std::string& upgrade : after.sheet.Upgrades()) {
      if (!before.document->HasRecorded(upgrade)) mayHaveRun_.push_back(upgrade);
    }
  }

  // What an upgrade had left behind, `upgrade --retry` lets it change once more. Names and lists of variables
  // are of the language of the session that upgraded the document. Nothing tells either: it is what leaves
  // the least to be explained.
  [[nodiscard]] SheetComparison Best() {
    constexpr const char* kUsual = "en";
    Try(kUsual);
    if (IsDone()) return std::move(best_);
    for (const standalone::Finding& finding : standalone::CheckConformity(*before_.document.Get())) {
      if (finding.kind == standalone::FindingKind::kLeftBehind) mayHaveRun_.emplace_back(finding.identifier);
    }
    Try(kUsual);
    for (const std::string& language : standalone::Messages::LanguagesOf(messages_)) {
      if (!IsDone() && language != kUsual) Try(language);
    }
    return std::move(best_);
  }

 private:
  void Try(const std::string& language) {
    standalone::Messages::Use(messages_, language);
    SheetComparison comparison = Compare(before_.sheet, after_.sheet, mayHaveRun_);
    const std::size_t left = comparison.Count(Meaning::kUnaccounted);
    if (left >= left_) return;
    best_ = std::move(comparison);
    left_ = left;
  }
  [[nodiscard]] bool IsDone() const { return left_ == 0; }

  const DocumentSheet& before_;
  const DocumentSheet& after_;
  fs::path messages_;
  std::vector<std::string> mayHaveRun_;
  SheetComparison best_;
  std::size_t left_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace

DocumentSheet ReadDocumentSheet(const std::string& file) {
  return SheetFor(file, ReadWithProgress(file));
}

DocumentSheet SheetFor(const std::string& file, standalone::DocumentPtr document) {
  Sheet sheet = ReadSheet(*document.Get());
  return {file, std::move(document), std::move(sheet)};
}

SheetComparison AccountFor(const DocumentSheet& before, const DocumentSheet& after,
                           const fs::path& messages) {
  return Accounting(before, after, messages).Best();
}

}  // namespace tool
