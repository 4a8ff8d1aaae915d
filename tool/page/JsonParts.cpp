#include "page/JsonParts.h"

namespace tool::page {
namespace {

namespace ondemand = simdjson::ondemand;

std::string_view TextOf(ondemand::value value) {
  switch (value.type().value()) {
    case ondemand::json_type::object:
      return value.get_object().value().raw_json().value();
    case ondemand::json_type::array:
      return value.get_array().value().raw_json().value();
    default:
      return value.raw_json_token();
  }
}

simdjson::padded_string_view Padded(std::string_view json) {
  return simdjson::padded_string_view(json.data(), json.size(), json.size() + simdjson::SIMDJSON_PADDING);
}

}  // namespace

JsonParts::JsonParts(std::string_view json) {
  ondemand::parser parser;
  ondemand::document document = parser.iterate(Padded(json)).value();
  for (auto each : document.get_object().value()) {
    std::string key(each.unescaped_key().value());
    parts_.emplace(std::move(key), TextOf(each.value().value()));
  }
}

std::string_view JsonParts::operator[](std::string_view key) const {
  const auto found = parts_.find(key);
  return found == parts_.end() ? std::string_view() : found->second;
}

void ForEachEntry(std::string_view list, const std::function<void(simdjson::dom::element entry)>& take) {
  if (list.empty()) return;
  ondemand::parser parser;
  simdjson::dom::parser entries;
  ondemand::document document = parser.iterate(Padded(list)).value();
  for (auto each : document.get_array().value()) {
    ondemand::value value = each.value();
    take(entries.parse(simdjson::padded_string(TextOf(value))).value());
  }
}

}  // namespace tool::page
