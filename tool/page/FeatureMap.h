#pragma once

#include <simdjson.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "page/Detail.h"

namespace tool::page {

/// The features that a record names: those in which something happened, and others that it refers to. There
/// can be millions, so it refers to the record, which must stay, for what it says of each.
class FeatureMap {
 public:
  /// All features of a list, a text as `JsonParts` gives it; `mark` as in `Tree::Node`.
  void AddAll(std::string_view list, char mark);

  /// "Pad.1 (Solid)", or "Solid #30" of one without a name.
  [[nodiscard]] std::string LabelOf(std::int64_t id) const;
  /// Its late type; empty for a feature that the record does not name.
  [[nodiscard]] std::string TypeOf(std::int64_t id) const;

  /// Those in which something happened, beneath all that they stand beneath. Of more than `most` the first.
  [[nodiscard]] Tree MakeTree(std::size_t most) const;

 private:
  struct Known {
    std::string_view entry;
    std::int64_t father = -1;
    std::uint32_t type = 0;  // in `types_`
    char mark = ' ';
  };

  [[nodiscard]] static std::string NameIn(std::string_view entry);

  std::unordered_map<std::int64_t, Known> features_;
  std::vector<std::string> types_;
  std::unordered_map<std::string, std::uint32_t> typePlaces_;
};

}  // namespace tool::page
