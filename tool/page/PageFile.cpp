#include "page/PageFile.h"

#include <fmt/format.h>
#include <nettle/base64.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <optional>

#include "file/AtomicFile.h"
#include "file/DocumentError.h"
#include "file/FileDigest.h"
#include "file/Packer.h"
#include "file/TemporaryName.h"
#include "page/Assets.h"
#include "record/Destination.h"
#include "report/JsonOutput.h"
#include "settings/Sources.h"
#include "terminal/Terminal.h"

namespace tool::page {
namespace {

namespace fs = std::filesystem;
using standalone::DocumentError;

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

// Beside the page, in a nameless file: what the page shows first stands before them, and is known last.
class PageFile::Blocks {
 public:
  explicit Blocks(std::string file) : file_(std::move(file)) {
    const fs::path place = file_ == kStandardStream ? fs::temp_directory_path() / "page" : fs::path(file_);
    std::string name;
    descriptor_ = standalone::MakeTemporary(place, name);
    if (descriptor_ < 0) Fail();
    unlink(name.c_str());
  }
  ~Blocks() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  int Add(std::size_t document, std::string_view json) {
    if (IsFull()) return -1;
    JsonObject details = block_.size() == 0 ? JsonObject(block_) : JsonObject(block_, JsonObject::GoOn());
    details.Key(std::to_string(document)).append(json);
    const int number = count_;
    if (block_.size() >= kBlockBytes) End();
    return number;
  }

  [[nodiscard]] bool IsFull() const { return size_ >= kMostBytes; }

  // `write` gets all of them.
  void Finish(const std::function<void(std::string_view)>& write) {
    if (block_.size() != 0) End();
    std::array<char, std::size_t{1} << 16U> piece{};
    for (off_t from = 0;;) {
      const ssize_t got = pread(descriptor_, piece.data(), piece.size(), from);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) Fail();
      if (got == 0) return;
      write({piece.data(), static_cast<std::size_t>(got)});
      from += got;
    }
  }

 private:
  void End() {
    block_.push_back('}');
    const std::string text =
        DataBlock(fmt::format("block-{}", count_), Packed({block_.data(), block_.size()}));
    for (std::string_view left = text; !left.empty();) {
      const ssize_t written = write(descriptor_, left.data(), left.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) Fail();
      left.remove_prefix(static_cast<std::size_t>(written));
    }
    size_ += text.size();
    ++count_;
    block_.clear();
  }

  [[noreturn]] void Fail() const {
    throw DocumentError(DocumentError::Kind::kUnwritable, file_, 0,
                        fmt::format("the page cannot be written ({})", std::strerror(errno)),
                        "Check the folder, its permissions and the room on its disk");
  }

  std::string file_;
  int descriptor_ = -1;
  std::size_t size_ = 0;
  int count_ = 0;
  fmt::memory_buffer block_;
};

PageFile::PageFile(const std::string& file, bool overwrite)
    : file_(file), overwrite_(overwrite), blocks_(std::make_unique<Blocks>(file)) {
  CheckPlace(file, overwrite);
}

PageFile::~PageFile() = default;

int PageFile::AddDetail(std::size_t document, std::string_view json) {
  return blocks_->Add(document, json);
}

bool PageFile::IsFull() const {
  return blocks_->IsFull();
}

void PageFile::Finish(std::string_view title, std::string_view page) {
  std::optional<standalone::AtomicFile> file;
  if (file_ != kStandardStream) {
    standalone::WriteOptions options;
    options.overwrite = overwrite_ || IsPage(file_);
    file.emplace(file_, options);
  }
  const auto write = [&file](std::string_view bytes) { file ? file->Write(bytes) : Say(bytes); };
  write(Head(title));
  write(DataBlock("page", Packed(page)));
  write(fmt::format("<script>{}</script>\n", kScript));
  blocks_->Finish(write);
  write("</body>\n</html>\n");
  if (file) file->Commit();
}

void CheckPlace(const std::string& file, bool overwrite) {
  if (file != kStandardStream) RefuseTaken(file, overwrite || IsPage(file));
}

}  // namespace tool::page
