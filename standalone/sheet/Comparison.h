#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sheet/Sheet.h"

namespace standalone::sheet {

/// What a difference means for the analysis.
enum class Meaning : std::uint8_t {
  kSame,         ///< The same analysis, expressed differently: a unit, a name, a table instead of a value.
  kOnPurpose,    ///< Another analysis, as the upgrade is there to make it.
  kUnaccounted,  ///< No upgrade is there to do this.
};

/// The word for programs: "same", "onPurpose", "unaccounted".
[[nodiscard]] std::string_view NameOf(Meaning meaning);

/// One thing that two sheets say differently.
struct Difference {
  const Subject* before = nullptr;     ///< Null for a subject that only the new sheet has.
  const Subject* after = nullptr;      ///< Null for one that only the old sheet has.
  const Quantity* quantity = nullptr;  ///< Null where the subject as a whole is lost or new.
  std::vector<Fact> lost = {};         ///< What only the old sheet says.
  std::vector<Fact> gained = {};       ///< What only the new one says.
  Meaning meaning = Meaning::kUnaccounted;
  std::string_view identifier =
      {};  ///< The upgrade that meant it, or that was to and left it out; empty for none.
  std::string_view sentence =
      {};  ///< What that upgrade does, without the full stop; empty where it left it out.

  [[nodiscard]] const Subject& About() const { return after != nullptr ? *after : *before; }
};

/// What two sheets say differently. It refers to both, which must stay.
struct SheetComparison {
  std::vector<Difference> differences;  ///< By subject, in the order of the new sheet; lost subjects last.
  std::size_t equal = 0;                ///< How many facts both say.

  [[nodiscard]] std::size_t Count(Meaning meaning) const;
};

/// How many facts both say, and how many differences there are of each meaning.
struct SheetTotals {
  std::size_t equal = 0;
  std::size_t same = 0;
  std::size_t onPurpose = 0;
  std::size_t unaccounted = 0;
};

/// Compares an analysis before and after an upgrade. `mayHaveRun` are the upgrades that can have made a
/// difference: those that only the new document records, and others that were run again. Each difference is
/// told once, in the order of `SheetComparison`, and kept by nobody: there can be as many as features.
SheetTotals Compare(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun,
                    const std::function<void(Difference& difference)>& tell);

/// The same, with all differences kept.
[[nodiscard]] SheetComparison Compare(const Sheet& before, const Sheet& after,
                                      std::span<const std::string> mayHaveRun);

}  // namespace standalone::sheet
