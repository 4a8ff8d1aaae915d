#include "page/PageFile.h"

#include <fmt/format.h>
#include <nettle/base64.h>

#include <array>
#include <fstream>

#include "file/AtomicFile.h"
#include "file/FileDigest.h"
#include "file/Packer.h"
#include "page/Assets.h"
#include "record/Destination.h"
#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool::page {
namespace {

// Documents share a block up to this size: alike ones compress well together, and unpacking one is not felt.
constexpr std::size_t kBlockBytes = std::size_t{1} << 19;
// Beyond, a browser takes its time to open the page.
constexpr std::size_t kMostBytes = std::size_t{48} << 20;
constexpr std::string_view kMark = "<meta name=\"generator\" content=\"hvxupgrade\">";

std::string Base64(std::string_view bytes) {
  std::string text(BASE64_ENCODE_RAW_LENGTH(bytes.size()), '\0');
  nettle_base64_encode_raw(text.data(), bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
  return text;
}

std::string Packed(std::string_view json) {
  std::string packed;
  const auto packer = standalone::Packer::Make(standalone::Compression::kGzip,
                                               [&packed](std::string_view piece) { packed += piece; });
  packer->Add(json);
  packer->Finish();
  return Base64(packed);
}

// The only ones that a browser lets into effect.
std::string SourceHash(std::string_view source) {
  standalone::Sha256 sum;
  sum.Add(source);
  const standalone::Sha256Sum digest = sum.Take();
  return fmt::format("'sha256-{}'", Base64({reinterpret_cast<const char*>(digest.data()), digest.size()}));
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : Printable(text)) {
    if (c == '&' || c == '<' || c == '>' || c == '"') {
      escaped += fmt::format("&#{};", static_cast<int>(c));
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Head(std::string_view title) {
  return fmt::format(
      "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n{}\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src {}; style-src "
      "{}; "
      "img-src data:; base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"color-scheme\" content=\"light dark\">\n<title>{}</title>\n<style>{}</style>\n</head>\n"
      "<body>\n{}\n",
      kMark, SourceHash(kScript), SourceHash(kStyle), Escaped(title), kStyle, kBody);
}

std::string DataBlock(std::string_view name, std::string_view data) {
  return fmt::format("<script type=\"text/plain\" id=\"{}\">{}</script>\n", name, data);
}

bool IsPage(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::array<char, 256> start{};
  stream.read(start.data(), start.size());
  return std::string_view(start.data(), static_cast<std::size_t>(stream.gcount())).find(kMark) !=
         std::string_view::npos;
}

}  // namespace

int PageFile::AddDetail(std::size_t document, std::string_view json) {
  JsonObject details = block_.size() == 0 ? JsonObject(block_) : JsonObject(block_, JsonObject::GoOn());
  details.Key(std::to_string(document)).append(json);
  const int number = count_;
  if (block_.size() >= kBlockBytes) EndBlock();
  return number;
}

bool PageFile::IsFull() const {
  return blocks_.size() >= kMostBytes;
}

void PageFile::EndBlock() {
  block_.push_back('}');
  blocks_ += DataBlock(fmt::format("block-{}", count_), Packed({block_.data(), block_.size()}));
  ++count_;
  block_.clear();
}

void PageFile::Finish(std::string_view title, std::string_view page, const Writer& write) {
  if (block_.size() != 0) EndBlock();
  write(Head(title));
  write(DataBlock("page", Packed(page)));
  write(fmt::format("<script>{}</script>\n", kScript));
  write(blocks_);
  write("</body>\n</html>\n");
}

void CheckPlace(const std::string& file, bool overwrite) {
  RefuseTaken(file, overwrite || IsPage(file));
}

void PutPage(const std::string& file, bool overwrite, const std::function<void(const Writer& write)>& make) {
  CheckPlace(file, overwrite);
  standalone::WriteOptions options;
  options.overwrite = overwrite || IsPage(file);
  standalone::AtomicFile output(file, options);
  make([&output](std::string_view bytes) { output.Write(bytes); });
  output.Commit();
}

}  // namespace tool::page
