#include "page/JsonParts.h"

#include <array>

namespace tool::page {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

[[noreturn]] void Refuse() {
  throw simdjson::simdjson_error(simdjson::TAPE_ERROR);
}

// Goes through a text of JSON without looking at more than where values begin and end.
class Scanner {
 public:
  explicit Scanner(std::string_view json) : json_(json) {}

  // Whether the next thing is `sign`, which is then passed.
  bool Pass(char sign) {
    at_ = std::min(json_.find_first_not_of(kBlanks, at_), json_.size());
    if (at_ == json_.size() || json_[at_] != sign) return false;
    ++at_;
    return true;
  }
  void Expect(char sign) {
    if (!Pass(sign)) Refuse();
  }

  std::string_view Value() {
    const std::size_t begin = json_.find_first_not_of(kBlanks, at_);
    if (begin == std::string_view::npos) Refuse();
    at_ = begin;
    if (json_[at_] == '"') {
      PassString();
    } else if (json_[at_] == '{' || json_[at_] == '[') {
      PassNested();
    } else {
      at_ = std::min(json_.find_first_of(",]} \t\r\n", at_), json_.size());
    }
    if (at_ == begin) Refuse();
    return json_.substr(begin, at_ - begin);
  }

 private:
  void PassString() {
    for (;;) {
      at_ = json_.find('"', at_ + 1);
      if (at_ == std::string_view::npos) Refuse();
      std::size_t backslashes = 0;
      while (json_[at_ - 1 - backslashes] == '\\') ++backslashes;
      if (backslashes % 2 == 0) break;
    }
    ++at_;
  }

  void PassNested() {
    std::size_t depth = 0;
    for (; at_ < json_.size(); ++at_) {
      switch (kSigns[static_cast<unsigned char>(json_[at_])]) {
        case Sign::kQuote:
          PassString();
          --at_;
          break;
        case Sign::kOpens:
          ++depth;
          break;
        case Sign::kCloses:
          if (--depth == 0) {
            ++at_;
            return;
          }
          break;
        case Sign::kOther:
          break;
      }
    }
    Refuse();
  }

  enum class Sign : std::uint8_t { kOther, kQuote, kOpens, kCloses };
  static constexpr std::array<Sign, 256> kSigns = [] {
    std::array<Sign, 256> signs{};
    signs['"'] = Sign::kQuote;
    signs['{'] = signs['['] = Sign::kOpens;
    signs['}'] = signs[']'] = Sign::kCloses;
    return signs;
  }();

  std::string_view json_;
  std::size_t at_ = 0;
};

}  // namespace

JsonParts::JsonParts(std::string_view json) {
  Scanner scanner(json);
  scanner.Expect('{');
  if (scanner.Pass('}')) return;
  do {
    const std::string_view key = scanner.Value();
    if (key.size() < 2) Refuse();
    scanner.Expect(':');
    parts_.emplace(key.substr(1, key.size() - 2), scanner.Value());
  } while (scanner.Pass(','));
  scanner.Expect('}');
}

std::string_view JsonParts::operator[](std::string_view key) const {
  const auto found = parts_.find(key);
  return found == parts_.end() ? std::string_view() : found->second;
}

void ForEachEntry(std::string_view list,
                  const std::function<void(simdjson::dom::element entry, std::string_view text)>& take) {
  if (list.empty()) return;
  Scanner scanner(list);
  simdjson::dom::parser parser;
  scanner.Expect('[');
  if (scanner.Pass(']')) return;
  do {
    const std::string_view entry = scanner.Value();
    take(parser.parse(entry.data(), entry.size()).value(), entry);
  } while (scanner.Pass(','));
  scanner.Expect(']');
}

void ForEachEntry(std::string_view list, const std::function<void(simdjson::dom::element entry)>& take) {
  ForEachEntry(list, [&take](simdjson::dom::element entry, std::string_view /*text*/) { take(entry); });
}

}  // namespace tool::page
