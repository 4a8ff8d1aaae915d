#include "BarePass.h"

#include <simdjson.h>

#include "file/AtomicFile.h"
#include "file/DocumentReader.h"
#include "file/JsonText.h"
#include "file/LineBlocks.h"

namespace bench {
namespace {

namespace ondemand = simdjson::ondemand;
using namespace standalone;

void Copy(ondemand::value value, fmt::memory_buffer& out);

void CopyFields(ondemand::object object, fmt::memory_buffer& out) {
  char separator = '{';
  for (auto field : object) {
    out.push_back(separator);
    AppendJsonText(out, std::string_view(field.unescaped_key()));
    out.push_back(':');
    Copy(field.value(), out);
    separator = ',';
  }
  if (separator == '{') out.push_back('{');
  out.push_back('}');
}

void Copy(ondemand::value value, fmt::memory_buffer& out) {
  switch (value.type()) {
    case ondemand::json_type::object:
      return CopyFields(value.get_object(), out);
    case ondemand::json_type::array: {
      char separator = '[';
      for (auto entry : value.get_array()) {
        out.push_back(separator);
        Copy(entry.value(), out);
        separator = ',';
      }
      if (separator == '[') out.push_back('[');
      return out.push_back(']');
    }
    case ondemand::json_type::string:
      return AppendJsonText(out, std::string_view(value.get_string()));
    case ondemand::json_type::number: {
      const ondemand::number number = value.get_number();
      return number.is_double() ? AppendJsonReal(out, number.get_double())
                                : AppendJsonInteger(out, number.get_int64());
    }
    case ondemand::json_type::boolean:
      return AppendRaw(out, value.get_bool() ? "true" : "false");
    case ondemand::json_type::null:
      return AppendRaw(out, "null");
  }
}

}  // namespace

void BarePass(const std::filesystem::path& input, const std::filesystem::path& output) {
  const ReadOptions reading;
  LineBlocks blocks(input.string(), reading);
  WriteOptions options;
  options.overwrite = true;
  AtomicFile file(output, options);
  ondemand::parser parser;
  fmt::memory_buffer text;
  while (blocks.Next(0)) {
    const std::string_view block = blocks.Block();
    ondemand::document_stream lines =
        parser.iterate_many(block.data(), block.size(), blocks.ParserCapacity());
    for (auto line = lines.begin(); line != lines.end(); ++line) {
      ondemand::document_reference record = *line;
      CopyFields(record.get_object(), text);
      text.push_back('\n');
    }
    file.Write({text.data(), text.size()});
    text.clear();
  }
  file.Commit();
}

}  // namespace bench
