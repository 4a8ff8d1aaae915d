#include "file/LineFault.h"

#include <algorithm>
#include <new>

namespace standalone {
namespace {

// Tells why the line cannot be read; `isLast` when nothing follows it, not even its end.
[[noreturn]] void TellFault(std::string_view text, bool isLast) {
  simdjson::dom::parser parser;
  const auto error = parser.parse(text.data(), text.size(), true).error();
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  if (error == simdjson::UTF8_ERROR)
    Refuse("the line is not valid UTF-8", "Convert the file to UTF-8 or restore it from a backup");
  if (error != simdjson::SUCCESS && isLast)
    Refuse("the file ends within a line", "It was cut off; restore it from a backup");
  if (error == simdjson::DEPTH_ERROR) Refuse("values are nested too deeply");
  Refuse(error == simdjson::SUCCESS
             ? "the line is not valid JSON"
             : fmt::format("the line is not valid JSON ({})", simdjson::error_message(error)));
}

}  // namespace

void LocateFault(std::string_view rest, bool isBegun, std::size_t& line, const ReadRecord& readRecord) {
  ondemand::parser parser;
  simdjson::padded_string padded;
  for (; !rest.empty(); ++line) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view text = rest.substr(0, end);
    if (text.find_first_not_of(kBlanks) != std::string_view::npos) {
      if (isBegun) TellFault(text, end == rest.size());
      try {
        padded = simdjson::padded_string(text);
        ondemand::document record = parser.iterate(padded);
        readRecord(record);
        if (record.current_location().error() != simdjson::OUT_OF_BOUNDS) TellFault(text, end == rest.size());
      } catch (const simdjson::simdjson_error& error) {
        if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
        TellFault(text, end == rest.size());
      }
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  Refuse("the line is not valid JSON");
}

}  // namespace standalone
