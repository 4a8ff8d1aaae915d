#pragma once

#include <cstdint>
#include <string_view>

#include "file/LineValues.h"

/// \file
/// What the line of a feature may hold, whatever is made of it: for the reader's sources only.

namespace standalone {

/// Takes the object of a feature's line apart, and refuses what the line itself shows to be unsound. `Maker`,
/// which derives from this, makes something of it. Its operations are called in the order of the line:
///
/// - `TakeId(FeatureId)`, `TakeType(text)`: first, and always both
/// - `TakeName(text)`, `TakeAlias(text)`, `TakePhysicalType(text)`, `TakeUpToDate(bool)`
/// - `TakeFather(FeatureId)`, `TakeContainer(FeatureId)`
/// - `BeginAttributes()`, `EndAttributes()`; between them, for each, `bool AddAttribute(text key)`, false
///   when the key was met before, and `TakeAttribute(Made)`, the value of the key that was added last
/// - `Attribute* FindAttribute(text key)`, with a `mode`; null for none. `BeginModes()`, and
///   `bool MarkMode(Attribute&)`, false when it was marked before
/// - `Made OfText(text)`, `OfInteger`, `OfReal`, `OfFlag`, `OfNothing()`, `OfLink(FeatureId)`
/// - `auto BeginList()`, `AddEntry(list, Made)`, `Made EndList(list)`
///
/// Texts are valid until the parser goes on to another block.
template <class Maker, class Made>
class FeatureParser {
 protected:
  /// Throws `Unsound`, and the parser's errors.
  void Parse(ondemand::object object) {
    static constexpr KnownKey kKeys[] = {
        format::kId,        format::kType,     format::kName,         format::kAlias,      format::kFather,
        format::kContainer, format::kUpToDate, format::kPhysicalType, format::kAttributes, format::kModes};
    Keys keys(kKeys);
    bool hasId = false;
    bool isBegun = false;
    for (auto field : object) {
      const std::size_t index = keys.Meet(field);
      const std::string_view key = kKeys[index].Text();
      if (index >= 2 && !isBegun) RefuseBeginning();
      switch (index) {
        case 0:
          Self().TakeId(TakeOwnId(field.value()));
          hasId = true;
          break;
        case 1:
          if (!hasId) RefuseBeginning();
          Self().TakeType(TakeTypeName(field.value()));
          isBegun = true;
          break;
        case 2:
          Self().TakeName(TakeText(field.value(), key));
          break;
        case 3:
          Self().TakeAlias(TakeText(field.value(), key));
          break;
        case 4:
          Self().TakeFather(TakeRef(field.value(), key));
          break;
        case 5:
          Self().TakeContainer(TakeRef(field.value(), key));
          break;
        case 6:
          Expect(field.value(), ondemand::json_type::boolean, key);
          Self().TakeUpToDate(field.value().get_bool());
          break;
        case 7:
          Self().TakePhysicalType(TakeText(field.value(), key));
          break;
        case 8:
          ParseAttributes(field.value());
          break;
        default:
          ParseModes(field.value());
      }
    }
    if (!isBegun) RefuseBeginning();
  }

 private:
  Maker& Self() { return static_cast<Maker&>(*this); }

  [[noreturn]] static void RefuseBeginning() { Refuse("a feature must begin with \"id\" and \"type\""); }

  static FeatureId TakeOwnId(ondemand::value value) {
    const FeatureId id = TakeInteger(value, format::kId);
    if (id < 1 || id > format::kMaxId)
      Refuse(fmt::format("\"id\" is {}; ids go from 1 to {}", id, format::kMaxId));
    return id;
  }

  static std::string_view TakeTypeName(ondemand::value value) {
    const std::string_view name = TakeText(value, format::kType);
    if (name.empty()) Refuse("\"type\" is empty");
    return name;
  }

  void ParseAttributes(ondemand::value value) {
    Self().BeginAttributes();
    for (auto field : TakeObject(value, format::kAttributes)) {
      const std::string_view key = TakeKey(field);
      if (key.empty()) Refuse("an attribute has an empty key");
      if (!Self().AddAttribute(key)) Refuse(fmt::format("attribute \"{}\" occurs twice", key));
      Self().TakeAttribute(TakeValue(field.value(), key, 0));
    }
    Self().EndAttributes();
  }

  Made TakeValue(ondemand::value value, std::string_view key, int depth) {
    switch (value.type()) {
      case ondemand::json_type::string:
        return Self().OfText(TakeText(value, key));
      case ondemand::json_type::number:
        return TakeNumber(value, key);
      case ondemand::json_type::boolean:
        return Self().OfFlag(value.get_bool());
      case ondemand::json_type::null:
        if (!value.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
        return Self().OfNothing();
      case ondemand::json_type::object:
        return Self().OfLink(TakeRef(value, key));
      case ondemand::json_type::array:
        return TakeList(value, key, depth);
    }
    Refuse(fmt::format("attribute \"{}\" holds no value", key));
  }

  Made TakeList(ondemand::value value, std::string_view key, int depth) {
    if (depth == format::kMaxListDepth)
      Refuse(fmt::format("attribute \"{}\" nests lists more than {} deep", key, format::kMaxListDepth));
    auto list = Self().BeginList();
    for (auto entry : value.get_array()) Self().AddEntry(list, TakeValue(entry.value(), key, depth + 1));
    return Self().EndList(list);
  }

  Made TakeNumber(ondemand::value value, std::string_view key) {
    ondemand::number number;
    if (value.get_number().get(number) != simdjson::SUCCESS || number.is_uint64()) {
      Refuse(fmt::format("the number of attribute \"{}\" is out of range or malformed", key),
             "Give an integer within 64 bits, signed, or a finite real");
    }
    return number.is_int64() ? Self().OfInteger(number.get_int64()) : Self().OfReal(number.get_double());
  }

  void ParseModes(ondemand::value value) {
    Self().BeginModes();
    for (auto field : TakeObject(value, format::kModes)) {
      const std::string_view key = TakeKey(field);
      auto* const found = Self().FindAttribute(key);
      if (found == nullptr) Refuse(fmt::format("\"modes\" names \"{}\", which is no attribute", key));
      if (!Self().MarkMode(*found))
        Refuse(fmt::format("\"modes\" names \"{}\" twice", key), "Leave one of the two");
      const std::int64_t mode = TakeInteger(field.value(), key);
      if (mode != static_cast<std::int32_t>(mode))
        Refuse(fmt::format("the mode of \"{}\" exceeds 32 bits", key));
      found->mode = static_cast<std::int32_t>(mode);
    }
  }
};

}  // namespace standalone
