#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/Conformity.h"
#include "record/DocumentResult.h"
#include "upgrade/UpgradeRun.h"

/// \file
/// What a person must look at after an upgrade.

namespace tool {

/// One thing to look at: what the rules find in the result, or a failure that no finding explains.
struct AttentionItem {
  std::string_view kind;               ///< The word for programs: a kind of finding, "failed", "unaccounted".
  std::string_view words;              ///< The words for people.
  const standalone::Feature* feature;  ///< Null for a conversion of the whole document.
  std::string_view type;               ///< The feature's late type when it was looked at.
  std::string_view identifier;         ///< Empty when there is none.
  std::string key;                     ///< What is missing or unreadable; may be empty.
  std::string reason;
  std::string nextStep;
  HRESULT code = S_OK;                     ///< What the upgrade gave, where it failed in this run,
  standalone::Answerable answerable = {};  ///< and whose it is; without a library where it did not fail.
  bool isFoundByCheck = false;             ///< In the result, whoever looks for it and whenever.
};

/// All of it, of what is found in the result, of what it has lost, and of failures: first what was left
/// behind, in document order, then failures that left nothing behind which a rule could tell, then the rest.
[[nodiscard]] std::vector<AttentionItem> AttentionTo(const std::vector<standalone::Finding>& findings,
                                                     const std::vector<standalone::Finding>& losses,
                                                     const std::vector<standalone::UpgradeFailure>& failures);

/// Where a feature stands, for people: the names of what it stands beneath, from the case down, separated by
/// " / "; empty for none.
[[nodiscard]] std::string OwnersOf(const standalone::FeatureState& feature);

/// The items as JSON objects, separated by commas.
[[nodiscard]] std::string JsonOf(const std::string& document, const std::vector<AttentionItem>& items);
/// The items as lines for people, two for each; those beyond the first twenty are counted, unless `all` are
/// wanted.
[[nodiscard]] std::string TextOf(const std::vector<AttentionItem>& items, bool all);

/// The same of a document without a result, as one JSON object.
[[nodiscard]] std::string AttentionOf(const std::string& document, const DocumentResult& result);

}  // namespace tool
