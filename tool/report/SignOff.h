#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "report/Attention.h"
#include "sheet/Comparison.h"

namespace tool {

/// Whether an upgraded document still describes the same analysis: its sheet before the upgrade, compared
/// with the one after.
class SignOff {
 public:
  /// Reads the sheet of the document as it is. The document must stay.
  explicit SignOff(standalone::Document& document) : before_(standalone::sheet::ReadSheet(document)) {}

  /// Reads it again, now that the upgrades have run, and compares. What no upgrade accounts for goes into
  /// `attention`: with the item that a feature has already, else as one of its own.
  void Finish(standalone::Document& document, const std::vector<std::string>& identifiers,
              std::vector<AttentionItem>& attention);

  [[nodiscard]] const standalone::sheet::SheetTotals& Totals() const { return totals_; }
  /// What the upgraded document says; after `Finish`.
  [[nodiscard]] const standalone::sheet::Sheet& After() const { return *after_; }
  /// A reason for which upgrades changed the analysis, and how many differences it accounts for.
  struct Purpose {
    std::string_view identifier;
    std::string_view sentence;
    std::size_t differences = 0;
  };
  /// In the order of the first difference of each.
  [[nodiscard]] const std::vector<Purpose>& Purposes() const { return purposes_; }
  /// Tells all differences; after `Finish`.
  void Tell(const std::function<void(standalone::sheet::Difference& difference)>& tell) const;

 private:
  standalone::sheet::Sheet before_;
  std::optional<standalone::sheet::Sheet> after_;
  std::vector<std::string> identifiers_;
  standalone::sheet::SheetTotals totals_;
  std::vector<Purpose> purposes_;
};

}  // namespace tool
