#include "JsonOutput.h"

#include "Terminal.h"

namespace tool {

fmt::memory_buffer& JsonObject::Key(std::string_view key) {
  if (!first_) out_.push_back(',');
  first_ = false;
  standalone::AppendJsonText(out_, key);
  out_.push_back(':');
  return out_;
}

void JsonObject::Text(std::string_view key, std::string_view text) {
  standalone::AppendJsonText(Key(key), AsUtf8(text));
}

void JsonObject::Number(std::string_view key, std::size_t number) {
  standalone::AppendJsonInteger(Key(key), static_cast<std::int64_t>(number));
}

void JsonObject::Texts(std::string_view key, std::span<const std::string> texts) {
  JsonList list(Key(key));
  for (const std::string& text : texts) standalone::AppendJsonText(list.Entry(), AsUtf8(text));
  list.Close();
}

fmt::memory_buffer& JsonList::Entry() {
  if (!first_) out_.push_back(',');
  first_ = false;
  return out_;
}

}  // namespace tool
