#include "file/LineValues.h"

#include "file/DocumentFormat.h"

namespace standalone {
namespace {

std::string_view TypeName(ondemand::json_type type) {
  switch (type) {
    case ondemand::json_type::array:
      return "a list";
    case ondemand::json_type::object:
      return "an object";
    case ondemand::json_type::number:
      return "a number";
    case ondemand::json_type::string:
      return "a text";
    case ondemand::json_type::boolean:
      return "true or false";
    case ondemand::json_type::null:
      return "null";
  }
  return "something else";
}

}  // namespace

void Refuse(std::string problem, std::string_view advice) {
  throw Unsound{std::move(problem), std::string(advice)};
}

void Expect(ondemand::value value, ondemand::json_type wanted, std::string_view key) {
  const ondemand::json_type type = value.type();
  if (type != wanted)
    Refuse(fmt::format("\"{}\" must be {} but is {}", key, TypeName(wanted), TypeName(type)));
}

std::int64_t TakeInteger(ondemand::value value, std::string_view key) {
  std::int64_t number = 0;
  if (value.get_int64().get(number) == simdjson::SUCCESS) return number;
  Expect(value, ondemand::json_type::number, key);
  Refuse(fmt::format("\"{}\" must be a whole number within 64 bits", key));
}

std::string_view TakeText(ondemand::value value, std::string_view key) {
  std::string_view text;
  if (value.get_string().get(text) == simdjson::SUCCESS) return text;
  Expect(value, ondemand::json_type::string, key);
  return value.get_string();  // a text that is broken: throws the parser's error
}

ondemand::object TakeObject(ondemand::value value, std::string_view key) {
  ondemand::object object;
  if (value.get_object().get(object) == simdjson::SUCCESS) return object;
  Expect(value, ondemand::json_type::object, key);
  return value.get_object();  // an object that is broken: throws the parser's error
}

FeatureId TakeRef(ondemand::value value, std::string_view key) {
  FeatureId id = 0;
  for (auto field : TakeObject(value, key)) {
    if (TakeKey(field) != format::kRef || id != 0) {
      Refuse(fmt::format("the link \"{}\" must have the one key \"ref\"", key));
    }
    id = TakeInteger(field.value(), format::kRef);
    if (id < 1) Refuse(fmt::format("the link \"{}\" holds {}; ids count from 1", key, id));
  }
  if (id == 0) Refuse(fmt::format("the link \"{}\" must have the one key \"ref\"", key));
  return id;
}

}  // namespace standalone
