#pragma once

#include <simdjson.h>

#include <functional>
#include <map>
#include <string_view>

namespace tool::page {

/// The fields of a JSON object, which may be far too large to be taken apart as a whole: a record can have
/// gigabytes. What it gives refers to the text.
class JsonParts {
 public:
  /// Throws `simdjson::simdjson_error` for what is no object. What stands within the fields is not looked at.
  explicit JsonParts(std::string_view json);

  /// The text of the field's value; empty when there is none.
  [[nodiscard]] std::string_view operator[](std::string_view key) const;

 private:
  std::map<std::string_view, std::string_view> parts_;  // keys as they are written
};

/// Calls `take` for each entry of a list, a text as `JsonParts` gives it; an empty text has none. The element
/// that `take` gets is gone afterwards; its text stays, as a part of `list`. Throws
/// `simdjson::simdjson_error` for what is no list of JSON values.
void ForEachEntry(std::string_view list,
                  const std::function<void(simdjson::dom::element entry, std::string_view text)>& take);
void ForEachEntry(std::string_view list, const std::function<void(simdjson::dom::element entry)>& take);

}  // namespace tool::page
