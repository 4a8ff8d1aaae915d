#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "file/FeatureParser.h"
#include "file/ForwardLinks.h"
#include "model/Document.h"

namespace standalone {

/// Makes features of the lines of a document: for its reader only.
class FeatureReader : private FeatureParser<FeatureReader, Value> {
 public:
  /// The features go into `document`; links to those that are not read yet into `links`. Both must outlive
  /// it.
  FeatureReader(Document& document, ForwardLinks& links) : document_(document), links_(links) {}

  /// Makes a feature of the object that stands in the line of that number. Throws `Unsound`, and the
  /// parser's errors.
  void Read(ondemand::object object, std::size_t line);

 private:
  friend FeatureParser;

  // A list being read: where its entries, and those of them that are links forward, begin.
  struct Begun {
    std::size_t first;
    std::size_t firstForward;
  };

  void TakeId(FeatureId id);
  void TakeType(std::string_view name);
  void TakeName(std::string_view text) { feature_->name = document_.Keep(text); }
  void TakeAlias(std::string_view text) { feature_->externalName = document_.Keep(text); }
  void TakePhysicalType(std::string_view text) { feature_->physicalType = NameTable::Intern(text); }
  void TakeUpToDate(bool upToDate) { feature_->upToDate = upToDate; }
  void TakeFather(FeatureId to);
  void TakeContainer(FeatureId to);

  void BeginAttributes();
  bool AddAttribute(std::string_view key);
  void TakeAttribute(Value value);
  void EndAttributes();
  Attribute* FindAttribute(std::string_view key);
  void BeginModes() { marks_.Clear(); }
  bool MarkMode(const Attribute& attribute) { return marks_.Set(attribute.key); }

  Value OfText(std::string_view text) { return Value::String(document_.Keep(text)); }
  static Value OfInteger(std::int64_t number) { return Value::Integer(number); }
  static Value OfReal(double number) { return Value::Real(number); }
  static Value OfFlag(bool flag) { return Value::Boolean(flag); }
  static Value OfNothing() { return Value::Link(nullptr); }
  Value OfLink(FeatureId to);
  [[nodiscard]] Begun BeginList() const { return {entries_.size(), forwardEntries_.size()}; }
  void AddEntry(const Begun& list, const Value& entry);
  Value EndList(const Begun& list);

  Document& document_;
  ForwardLinks& links_;
  std::size_t line_ = 0;
  FeatureId id_ = 0;            // of the line at hand
  Feature* feature_ = nullptr;  // made of it
  NameCache names_;
  NameMarks marks_;
  std::vector<const LateType*> types_;  // by the number of their name
  std::vector<Attribute> attributes_;   // of the feature being read
  FeatureId forward_ = 0;  // of the last value: the feature that it links to, when that is not read yet
  std::size_t firstForward_ = 0;  // of the links forward of its attributes
  std::vector<std::size_t> forwardAttributes_;
  std::vector<Value> entries_;  // of the lists being read, the innermost last
  std::vector<std::pair<std::size_t, FeatureId>> forwardEntries_;
};

}  // namespace standalone
