#include "DocumentMutator.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <random>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace fuzzing {
namespace {

using Lines = std::vector<std::string>;

// A place in a line, between two positions.
struct Piece {
  std::size_t line;
  std::size_t begin;
  std::size_t end;
};

Lines Split(std::string_view document) {
  Lines lines;
  while (!document.empty()) {
    const std::size_t end = std::min(document.find('\n'), document.size());
    lines.emplace_back(document.substr(0, end));
    document.remove_prefix(std::min(end + 1, document.size()));
  }
  return lines;
}

// All that stands between `before` and the next of `ends`, in the features' lines.
std::vector<Piece> PiecesBehind(const Lines& lines, std::string_view before, std::string_view ends) {
  std::vector<Piece> pieces;
  for (std::size_t line = 1; line < lines.size(); ++line) {
    const std::string& text = lines[line];
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at + 1)) {
      const std::size_t begin = at + before.size();
      pieces.push_back({line, begin, std::min(text.find_first_of(ends, begin), text.size())});
    }
  }
  return pieces;
}

// The keys of attributes: what stands in quotes before a colon.
std::vector<Piece> Keys(const Lines& lines) {
  std::vector<Piece> keys = PiecesBehind(lines, "{\"", "\"");
  const std::vector<Piece> further = PiecesBehind(lines, ",\"", "\"");
  keys.insert(keys.end(), further.begin(), further.end());
  std::erase_if(keys,
                [&lines](const Piece& each) { return lines[each.line].compare(each.end, 2, "\":") != 0; });
  return keys;
}

class Mutation {
 public:
  Mutation(Lines& lines, std::uint32_t seed) : lines_(lines), random_(seed) {}

  void Apply() {
    switch (Below(10)) {
      case 0:
        return Replace(PiecesBehind(lines_, "\"ref\":", ",}]"));  // by where another link leads
      case 1:
        return Replace(PiecesBehind(lines_, "\"type\":\"", "\""));
      case 2:
        return Replace(Keys(lines_));
      case 3:
        return Replace(PiecesBehind(lines_, "\":", ",}]"));  // a value, or what begins one
      case 4:
        return PutOddValue();
      case 5:
        return TakeLineOut();
      case 6:
        return Swap();
      case 7:
        return Repeat();
      case 8:
        return TakeAttributeOut();
      default:
        return DropUpgrade();
    }
  }

 private:
  std::size_t Below(std::size_t count) { return random_() % count; }
  std::size_t SomeLine() { return 1 + Below(lines_.size() - 1); }

  void Put(const Piece& piece, std::string_view text) {
    lines_[piece.line].replace(piece.begin, piece.end - piece.begin, text);
  }

  void Replace(const std::vector<Piece>& pieces) {
    if (pieces.empty()) return;
    const Piece& from = pieces[Below(pieces.size())];
    Put(pieces[Below(pieces.size())], lines_[from.line].substr(from.begin, from.end - from.begin));
  }

  void PutOddValue() {
    static constexpr std::string_view kOdd[] = {"null", "-1",   "0",      "4294967296",  "1e308",   "\"\"",
                                                "[]",   "true", "[null]", "{\"ref\":1}", "\"odd\"", "0.1"};
    const std::vector<Piece> values = PiecesBehind(lines_, "\":", ",}]");
    if (!values.empty()) Put(values[Below(values.size())], kOdd[Below(std::size(kOdd))]);
  }

  void TakeLineOut() {
    if (lines_.size() > 2) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(SomeLine()));
  }
  void Swap() { std::swap(lines_[SomeLine()], lines_[SomeLine()]); }

  // A feature once more, under an id of its own.
  void Repeat() {
    std::string copy = lines_[SomeLine()];
    const std::string_view id = "{\"id\":";
    if (!copy.starts_with(id)) return;
    const std::size_t end = copy.find_first_not_of("0123456789", id.size());
    copy.replace(id.size(), std::min(end, copy.size()) - id.size(), std::to_string(1000 + Below(100000)));
    lines_.push_back(copy);
  }

  void TakeAttributeOut() {
    std::string& line = lines_[SomeLine()];
    const std::size_t begin = line.find(",\"", Below(line.size() + 1));
    const std::size_t end = begin == std::string::npos ? begin : line.find_first_of(",}", begin + 1);
    if (end != std::string::npos) line.erase(begin, end - begin);
  }

  void DropUpgrade() {
    std::string& header = lines_.front();
    const std::size_t begin = header.find("\"upgrades\":[");
    const std::size_t end = begin == std::string::npos ? begin : header.find(']', begin);
    if (end != std::string::npos) header.replace(begin, end - begin, "\"upgrades\":[");
  }

  Lines& lines_;
  std::minstd_rand random_;
};

void SetFeatureCount(Lines& lines) {
  std::string& header = lines.front();
  const std::string_view key = "\"features\":";
  const std::size_t at = header.find(key);
  if (at == std::string::npos) return;
  const std::size_t begin = at + key.size();
  const std::size_t end = std::min(header.find_first_not_of("0123456789", begin), header.size());
  header.replace(begin, end - begin, std::to_string(lines.size() - 1));
}

}  // namespace

std::string Mutated(std::string_view document, std::uint32_t seed) {
  Lines lines = Split(document);
  if (lines.size() < 2) return std::string(document);
  Mutation(lines, seed).Apply();
  SetFeatureCount(lines);
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

std::size_t MutateDocument(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed) {
  constexpr unsigned kBytesEvery = 16;
  if (seed % kBytesEvery == 0) return LLVMFuzzerMutate(data, size, maxSize);
  const std::string changed = Mutated({reinterpret_cast<const char*>(data), size}, seed / kBytesEvery);
  if (changed.empty() || changed.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data, changed.data(), changed.size());
  return changed.size();
}

}  // namespace fuzzing
