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

// A key may be as long as a line. What names it tells its front, and the end of the sentence.
std::string Shortened(std::string problem) {
  constexpr std::size_t kFront = 300;
  constexpr std::size_t kBack = 60;
  if (problem.size() <= kFront + kBack) return problem;
  const auto isWithinCharacter = [&problem](std::size_t at) {
    return (static_cast<unsigned char>(problem[at]) & 0xc0U) == 0x80;
  };
  std::size_t front = kFront;
  while (isWithinCharacter(front)) --front;
  std::size_t back = problem.size() - kBack;
  while (back < problem.size() && isWithinCharacter(back)) ++back;
  return problem.replace(front, back - front, "...");
}

}  // namespace

void Refuse(std::string problem, std::string_view advice) {
  throw Unsound{Shortened(std::move(problem)), std::string(advice)};
}

void Expect(ondemand::value value, ondemand::json_type wanted, std::string_view key) {
  const ondemand::json_type type = value.type();
  if (type != wanted)
    Refuse(fmt::format("\"{}\" must be {} but is {}", key, TypeName(wanted), TypeName(type)));
}

void RefuseInteger(ondemand::value value, std::string_view key) {
  Expect(value, ondemand::json_type::number, key);
  Refuse(fmt::format("\"{}\" must be a whole number within 64 bits", key));
}

void RefuseLink(std::string_view key) {
  Refuse(fmt::format("the link \"{}\" must have the one key \"ref\"", key));
}

void RefuseLinkTo(FeatureId id, std::string_view key) {
  Refuse(fmt::format("the link \"{}\" holds {}; ids count from 1", key, id));
}

}  // namespace standalone
