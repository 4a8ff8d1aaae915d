#pragma once

#include <simdjson.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tool::page {

/// The fields of a JSON object, which may be far too large to be taken apart as a whole. What it gives refers
/// to the text.
class JsonParts {
 public:
  /// `json` must be the beginning or a part of a text behind which `simdjson::SIMDJSON_PADDING` bytes may be
  /// read. Throws `simdjson::simdjson_error` for what is no object.
  explicit JsonParts(std::string_view json);

  /// The text of the field's value; empty when there is none.
  [[nodiscard]] std::string_view operator[](std::string_view key) const;

 private:
  std::map<std::string, std::string_view, std::less<>> parts_;
};

/// Calls `take` for each entry of a list, a text as `JsonParts` gives it; an empty text has none. What `take`
/// gets is gone afterwards. Throws `simdjson::simdjson_error` for what is no list.
void ForEachEntry(std::string_view list, const std::function<void(simdjson::dom::element entry)>& take);

}  // namespace tool::page
