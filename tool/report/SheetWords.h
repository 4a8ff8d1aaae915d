#pragma once

#include <span>
#include <string>
#include <string_view>

#include "sheet/Sheet.h"

/// \file
/// What stands on a sheet, in words for people. All of it is printable.

namespace tool {

/// How many significant digits numbers have, unless more are needed to tell two apart.
inline constexpr int kUsualDigits = 6;

/// How values are shown.
struct Style {
  standalone::sheet::UnitSystem units = standalone::sheet::UnitSystem::kSi;
  bool all = false;           ///< Also of long lists all entries.
  int digits = kUsualDigits;  ///< Significant ones.
};

/// The units that are used: "m, kg, s, K; N, Pa".
[[nodiscard]] std::string_view NameOf(standalone::sheet::UnitSystem units);

/// A name or text of the document as it is, where it could be nothing else, else in quotes.
[[nodiscard]] std::string Shown(std::string_view text);

/// A feature as `Shown`, with the product in which it is meant: "Lug Face (Bracket.1)".
[[nodiscard]] std::string ShownFeature(const standalone::Feature& feature,
                                       const standalone::Feature* context);

/// The value with its unit: "3 MPa", "yes", "Lug Face (Bracket.1)"; "nothing" of an empty link, "not set", or
/// what cannot be read. That it is a default is not said.
[[nodiscard]] std::string WordsFor(const standalone::sheet::Fact& fact, const Style& style);

/// All that the facts of one quantity say: "3 MPa (default)", "1 to 3: 0 mm, 5: 0.1 rad", "Lug Face, Tip".
/// Empty when there is none.
[[nodiscard]] std::string WordsFor(std::span<const standalone::sheet::Fact> facts, const Style& style);

/// A subject's name as `Shown`; of one without a name, its id: "#410".
[[nodiscard]] std::string ShownName(const standalone::sheet::Subject& subject);
/// "contact pair Contact Pair-1".
[[nodiscard]] std::string LabelOf(const standalone::sheet::Subject& subject);

/// "Restraints", "Output requests".
[[nodiscard]] std::string_view TitleOf(standalone::sheet::Chapter chapter);
/// The word for programs: "restraint", "output".
[[nodiscard]] std::string_view NameOf(standalone::sheet::Chapter chapter);

}  // namespace tool
