#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "file/ForwardLinks.h"
#include "file/LineValues.h"
#include "model/Document.h"

namespace standalone {

/// Makes features of the lines of a document: for its reader only.
class FeatureReader {
 public:
  /// The features go into `document`; links to those that are not read yet into `links`. Both must outlive
  /// it.
  FeatureReader(Document& document, ForwardLinks& links) : document_(document), links_(links) {}

  /// Makes a feature of the object that stands in the line of that number. Throws `Unsound`, and the
  /// parser's errors.
  void Read(ondemand::object object, std::size_t line);

 private:
  [[nodiscard]] FeatureId TakeNewId(ondemand::value value) const;
  [[nodiscard]] const LateType& TypeOf(std::string_view name);
  void TakeFather(Feature& feature, FeatureId to);
  void TakeContainer(Feature& feature, FeatureId to);
  void ReadAttributes(Feature& feature, ondemand::value value);
  [[nodiscard]] Value TakeValue(ondemand::value value, std::string_view key, Feature& owner, int depth,
                                FeatureId& forward);
  [[nodiscard]] Value TakeList(ondemand::value value, std::string_view key, Feature& owner, int depth);
  [[nodiscard]] static Value TakeNumber(ondemand::value value, std::string_view key);
  void ReadModes(Feature& feature, ondemand::value value);

  Document& document_;
  ForwardLinks& links_;
  std::size_t line_ = 0;
  NameCache names_;
  NameMarks marks_;
  std::vector<const LateType*> types_;  // by the number of their name
  std::vector<Attribute> attributes_;   // of the feature being read
  std::vector<std::size_t> forwardAttributes_;
  std::vector<Value> entries_;  // of the lists being read, the innermost last
  std::vector<std::pair<std::size_t, FeatureId>> forwardEntries_;
};

}  // namespace standalone
