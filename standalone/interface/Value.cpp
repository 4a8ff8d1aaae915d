#include "hvxupgrade/Value.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <cmath>

#include "file/DocumentFormat.h"
#include "file/DocumentReader.h"
#include "file/JsonText.h"
#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {
namespace {

void RequireUtf8(std::string_view text, std::string_view what) {
  if (!simdjson::validate_utf8(text.data(), text.size())) RefuseUse(fmt::format("the {} is not UTF-8", what));
}

void RequireDepth(int depth) {
  if (depth == standalone::format::kMaxListDepth)
    RefuseUse(fmt::format("no document nests lists more than {} deep", standalone::format::kMaxListDepth));
}

void Append(fmt::memory_buffer& out, const Value& value, int depth) {
  switch (value.GetKind()) {
    case Value::Kind::kString:
      RequireUtf8(value.AsString(), "text");
      standalone::AppendJsonText(out, value.AsString());
      break;
    case Value::Kind::kInteger:
      standalone::AppendJsonInteger(out, value.AsInteger());
      break;
    case Value::Kind::kReal:
      if (!std::isfinite(value.AsReal())) RefuseUse("JSON has no real that is not finite");
      standalone::AppendJsonReal(out, value.AsReal());
      break;
    case Value::Kind::kBoolean:
      standalone::AppendRaw(out, value.AsBoolean() ? "true" : "false");
      break;
    case Value::Kind::kLink:
      if (value.AsLink().target == Link::kNothing) {
        standalone::AppendRaw(out, "null");
      } else {
        fmt::format_to(std::back_inserter(out), R"({{"ref":{}}})", value.AsLink().target);
      }
      break;
    case Value::Kind::kList: {
      RequireDepth(depth);
      out.push_back('[');
      std::string_view separator;
      for (const Value& entry : value.AsList()) {
        standalone::AppendRaw(out, separator);
        Append(out, entry, depth + 1);
        separator = ",";
      }
      out.push_back(']');
    }
  }
}

standalone::Value KeepLink(FeatureId to, const standalone::Document& document) {
  if (to == Link::kNothing) return standalone::Value::Link(nullptr);
  standalone::Feature* const target = document.Find(to);
  if (target == nullptr || target->removed) RefuseUse(fmt::format("there is no feature {} to link to", to));
  return standalone::Value::Link(target);
}

standalone::Value KeepAt(const Value& value, standalone::Document& document, int depth) {
  switch (value.GetKind()) {
    case Value::Kind::kString:
      RequireText(value.AsString(), "text");
      return standalone::Value::String(document.Keep(value.AsString()));
    case Value::Kind::kInteger:
      return standalone::Value::Integer(value.AsInteger());
    case Value::Kind::kReal:
      if (!std::isfinite(value.AsReal())) RefuseUse("no document holds a real that is not finite");
      return standalone::Value::Real(value.AsReal());
    case Value::Kind::kBoolean:
      return standalone::Value::Boolean(value.AsBoolean());
    case Value::Kind::kLink:
      return KeepLink(value.AsLink().target, document);
    case Value::Kind::kList:
      break;
  }
  RequireDepth(depth);
  std::vector<standalone::Value> entries;
  entries.reserve(value.AsList().size());
  for (const Value& entry : value.AsList()) entries.push_back(KeepAt(entry, document, depth + 1));
  return standalone::Value::List(document.Keep(std::span<const standalone::Value>(entries)));
}

}  // namespace

// Here, so that there is one type information for programs and the library.
WrongKind::~WrongKind() = default;

Value::Kind Value::GetKind() const {
  static constexpr Kind kKinds[] = {Kind::kLink, Kind::kString,  Kind::kInteger,
                                    Kind::kReal, Kind::kBoolean, Kind::kList};  // as `held_` has them
  return kKinds[held_.index()];
}

double Value::AsNumber() const {
  const std::int64_t* const integer = std::get_if<std::int64_t>(&held_);
  return integer != nullptr ? static_cast<double>(*integer) : As<double>("a number");
}

void Value::Refuse(const char* wanted) const {
  static constexpr const char* kWords[] = {"a link", "a text",    "an integer",
                                           "a real", "a boolean", "a list"};  // as `held_` has them
  throw WrongKind(fmt::format("the value is {}, not {}", kWords[held_.index()], wanted));
}

std::string Value::Json() const {
  fmt::memory_buffer out;
  Append(out, *this, 0);
  return fmt::to_string(out);
}

Value ValueOf(const standalone::Value& value) {
  switch (value.Kind()) {
    case standalone::ValueKind::kString:
      return value.AsString();
    case standalone::ValueKind::kInteger:
      return value.AsInteger();
    case standalone::ValueKind::kReal:
      return value.AsReal();
    case standalone::ValueKind::kBoolean:
      return value.AsBoolean();
    case standalone::ValueKind::kLink:
      return value.Target() == nullptr ? Link{} : Link{value.Target()->id};
    case standalone::ValueKind::kList:
      break;
  }
  List entries;
  entries.reserve(value.Entries().size());
  for (const standalone::Value& entry : value.Entries()) entries.push_back(ValueOf(entry));
  return entries;
}

standalone::Value Keep(const Value& value, standalone::Document& document) {
  return KeepAt(value, document, 0);
}

void RequireText(std::string_view text, std::string_view what) {
  if (text.size() > standalone::ReadOptions().maxLineBytes)
    RefuseUse(fmt::format("the {} is longer than a line of a document may be", what));
  RequireUtf8(text, what);
}

}  // namespace hvxupgrade
