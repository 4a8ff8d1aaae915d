#include "file/DocumentWriter.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "file/AtomicFile.h"
#include "file/DocumentError.h"
#include "file/DocumentFormat.h"
#include "file/FeatureText.h"
#include "file/JsonText.h"
#include "file/Packer.h"

namespace standalone {
namespace {

constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

void AppendHeader(fmt::memory_buffer& out, const Document& document) {
  fmt::format_to(std::back_inserter(out), R"({{"format":"{}","version":{},"upgrades":[)", format::kFormatName,
                 format::kVersion);
  std::string_view separator;
  for (const std::string& identifier : document.Upgrades()) {
    AppendRaw(out, separator);
    AppendJsonText(out, identifier);
    separator = ",";
  }
  fmt::format_to(std::back_inserter(out), "],\"features\":{}}}\n", document.FeatureCount());
}

}  // namespace

void WriteDocument(Document& document, const std::filesystem::path& file, const WriteOptions& options) {
  document.DropAllDeadLinks();
  if (document.NextId() - 1 > format::kMaxId) {
    throw DocumentError(
        DocumentError::Kind::kInvalid, file.string(), 0,
        fmt::format("new features would have ids above {}, which no document may hold", format::kMaxId),
        "Give the features of the old document lower ids");
  }
  AtomicFile output(file, options);
  const auto packer =
      Packer::Make(options.compression, [&output](std::string_view packed) { output.Write(packed); });
  fmt::memory_buffer text;
  AppendHeader(text, document);
  std::size_t written = 0;
  const auto flush = [&] {
    packer->Add({text.data(), text.size()});
    text.clear();
  };
  const auto tell = [&] {
    if (options.onProgress) options.onProgress(written, document.FeatureCount());
  };
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next, ++written) {
    AppendFeature(text, *feature);
    text.push_back('\n');
    if (text.size() < kFlushBytes) continue;
    flush();
    tell();
  }
  flush();
  packer->Finish();
  if (options.digest != nullptr) *options.digest = output.Digest();
  tell();
  output.Commit();
}

void CopyDocument(const std::filesystem::path& source, const std::filesystem::path& file,
                  const WriteOptions& options, const std::optional<FileIdentity>& read) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> input(std::fopen(source.c_str(), "rbe"),
                                                              &std::fclose);
  const auto unreadable = [&source] {
    return DocumentError(DocumentError::Kind::kUnreadable, source.string(), 0,
                         std::string("cannot be read (") + std::strerror(errno) + ")",
                         "Check the path and the permissions");
  };
  if (!input) throw unreadable();
  AtomicFile output(file, options);
  std::array<char, std::size_t{1} << 16> block{};
  const auto start = FileIdentity::Of(fileno(input.get()));
  const std::size_t total = start ? static_cast<std::size_t>(start->size) : 0;
  std::size_t written = 0;
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), input.get())) {
    output.Write({block.data(), got});
    written += got;
    if (options.onProgress && written < total) options.onProgress(written, total);
  }
  if (std::ferror(input.get()) != 0) throw unreadable();
  if (read && FileIdentity::Of(fileno(input.get())) != read) {
    throw ChangedMeanwhile(source.string(), "another program wrote to it, or put another file there", "",
                           "Nothing was written; run this again");
  }
  if (options.digest != nullptr) *options.digest = output.Digest();
  if (options.onProgress) options.onProgress(written, written);
  output.Commit();
}

}  // namespace standalone
