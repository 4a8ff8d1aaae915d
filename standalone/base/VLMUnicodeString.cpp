#include "base/VLMUnicodeString.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

bool StartsCharacter(char byte) noexcept {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

int CountCharacters(std::string_view utf8) noexcept {
  return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), StartsCharacter));
}

// The byte at which character `index` begins; the length in bytes when the text ends before it.
std::size_t ByteOfCharacter(std::string_view utf8, int index) noexcept {
  std::size_t byte = 0;
  while (byte < utf8.size()) {
    if (StartsCharacter(utf8[byte]) && index-- == 0) return byte;
    ++byte;
  }
  return byte;
}

}  // namespace

VLMUnicodeString::VLMUnicodeString(const char* utf8) : VLMUnicodeString(std::string_view(utf8)) {}

VLMUnicodeString::VLMUnicodeString(std::string_view utf8) {
  if (utf8.empty()) return;
  text_ = new (::operator new(sizeof(Text) + utf8.size() + 1)) Text{1, utf8.size()};
  *std::copy(utf8.begin(), utf8.end(), text_->Characters()) = '\0';
}

void VLMUnicodeString::Assign(std::string_view utf8) {
  *this = VLMUnicodeString(utf8);
}

int VLMUnicodeString::SearchSubString(const VLMUnicodeString& text, int start, VLMSearchMode mode) const {
  const std::string_view whole = View();
  const std::string_view wanted = text.View();
  start = std::max(start, 0);
  if (wanted.empty() || (start > 0 && start > GetLengthInChar())) return -1;

  std::size_t found = std::string_view::npos;
  if (mode == VLMSearchMode::kForward) {
    found = whole.find(wanted, ByteOfCharacter(whole, start));
  } else {
    const std::string_view searched = whole.substr(0, ByteOfCharacter(whole, GetLengthInChar() - start));
    found = searched.rfind(wanted);
  }
  return found == std::string_view::npos ? -1 : CountCharacters(whole.substr(0, found));
}

void VLMUnicodeString::ReplaceSubString(const VLMUnicodeString& oldText, const VLMUnicodeString& newText) {
  const std::size_t found = oldText.IsNull() ? std::string_view::npos : View().find(oldText.View());
  if (found == std::string_view::npos) return;
  std::string result(View());
  result.replace(found, oldText.View().size(), newText.View());
  Assign(result);
}

void VLMUnicodeString::ReplaceSubString(int position, int length, const VLMUnicodeString& newText) {
  const int size = GetLengthInChar();
  if (position < 0 || position >= size || length < 0) return;
  const std::size_t first = ByteOfCharacter(View(), position);
  const std::size_t last = ByteOfCharacter(View(), position + std::min(length, size - position));
  std::string result(View());
  result.replace(first, last - first, newText.View());
  Assign(result);
}

void VLMUnicodeString::ReplaceAll(const VLMUnicodeString& oldText, const VLMUnicodeString& newText) {
  const std::string_view whole = View();
  const std::string_view wanted = oldText.View();
  if (wanted.empty() || whole.find(wanted) == std::string_view::npos) return;
  std::string result;
  std::size_t from = 0;
  for (std::size_t found = whole.find(wanted); found != std::string_view::npos;
       found = whole.find(wanted, from)) {
    result.append(whole, from, found - from).append(newText.View());
    from = found + wanted.size();
  }
  result.append(whole, from);
  Assign(result);
}

int VLMUnicodeString::GetLengthInChar() const noexcept {
  return CountCharacters(View());
}

void VLMUnicodeString::Resize(int length) {
  const std::size_t end = ByteOfCharacter(View(), std::max(length, 0));
  if (end < View().size()) Assign(View().substr(0, end));
}

void VLMUnicodeString::Append(const VLMUnicodeString& text) {
  Assign(std::string(View()).append(text.View()));
}
