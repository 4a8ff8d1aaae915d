#pragma once

#include <simdjson.h>

#include <string>
#include <unordered_map>

#include "page/Detail.h"

namespace tool::page {

/// The features that a record names: those in which something happened, and others that it refers to.
class FeatureMap {
 public:
  /// A feature as a record tells it; `mark` as in `Tree::Node`.
  void Add(simdjson::dom::element feature, char mark);

  /// "Pad.1 (Solid)", or "Solid #30" of one without a name.
  [[nodiscard]] std::string LabelOf(std::int64_t id) const;
  /// The name that users see; may be empty.
  [[nodiscard]] std::string NameOf(std::int64_t id) const;
  /// Its late type; empty for a feature that the record does not name.
  [[nodiscard]] std::string TypeOf(std::int64_t id) const;

  /// Those in which something happened, beneath all that they stand beneath. Of more than `most` the first.
  [[nodiscard]] Tree MakeTree(std::size_t most) const;

 private:
  struct Known {
    std::string type;
    std::string name;
    std::int64_t father = -1;
    char mark = ' ';
  };

  std::unordered_map<std::int64_t, Known> features_;
};

}  // namespace tool::page
