#pragma once

#include <simdjson.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

/// \file
/// Values of records, which are JSON, as texts for people. The texts are not made printable yet.

namespace tool::page {

/// What stands in the place of a value that is not there.
inline constexpr std::string_view kNotThere = "-";

/// What is said of a feature that a value links to, such as "Solid Pad.1".
using LabelOf = std::function<std::string(std::int64_t id)>;

/// The value as it is stored, links by what `label` says. Of long lists and texts the beginning and how much
/// there is.
[[nodiscard]] std::string TextOf(simdjson::dom::element value, const LabelOf& label);

/// How facts are shown.
struct FactStyle {
  bool allDigits = false;  ///< Of numbers, which are rounded otherwise.
  /// Names of features, by id, where these are others than the facts say; may be null.
  const std::unordered_map<std::int64_t, std::string>* names = nullptr;
};

/// What facts of a sheet say, all of one quantity: "3 Pa (default)", "1 to 3: 0 m, 5: 0.1 rad". Empty for
/// none.
[[nodiscard]] std::string TextOfFacts(const std::vector<simdjson::dom::element>& facts,
                                      const FactStyle& style = {});
/// The same of facts that have other numbers than they say.
[[nodiscard]] std::string TextOfFacts(
    const std::vector<std::pair<std::size_t, simdjson::dom::element>>& facts, const FactStyle& style = {});

/// The member of that name, where it is a text or a number; else an empty one or 0.
[[nodiscard]] std::string_view TextIn(simdjson::dom::element object, const char* key);
[[nodiscard]] std::int64_t IntegerIn(simdjson::dom::element object, const char* key);
[[nodiscard]] std::size_t CountIn(simdjson::dom::element object, const char* key);
/// The entries of the member of that name, where it is a list.
[[nodiscard]] std::vector<simdjson::dom::element> EntriesIn(simdjson::dom::element object, const char* key);
/// The id in a member {"ref": id}; -1 where there is none.
[[nodiscard]] std::int64_t LinkIn(simdjson::dom::element object, const char* key);

}  // namespace tool::page
