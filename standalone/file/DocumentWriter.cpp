#include "file/DocumentWriter.h"

#include <fmt/format.h>
#include <unistd.h>

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

void AppendTexts(fmt::memory_buffer& out, std::string_view key, const std::vector<std::string>& texts) {
  fmt::format_to(std::back_inserter(out), R"("{}":[)", key);
  std::string_view separator;
  for (const std::string& text : texts) {
    AppendRaw(out, separator);
    AppendJsonText(out, text);
    separator = ",";
  }
  out.push_back(']');
}

void AppendSource(fmt::memory_buffer& out, const UpgradeSource& source) {
  fmt::format_to(std::back_inserter(out), R"({{"{}":)", format::kLibraryName);
  AppendJsonText(out, source.library);
  if (!source.version.empty()) {
    fmt::format_to(std::back_inserter(out), R"(,"{}":)", format::kVersionKey);
    AppendJsonText(out, source.version);
  }
  out.push_back(',');
  AppendTexts(out, format::kUpgrades, source.upgrades);
  out.push_back('}');
}

// In the oldest version of the format that can hold it, so that older programs read what they can.
void AppendHeader(fmt::memory_buffer& out, const Document& document) {
  const std::vector<UpgradeSource>& sources = document.Sources().All();
  fmt::format_to(std::back_inserter(out), R"({{"{}":"{}","{}":{},)", format::kFormat, format::kFormatName,
                 format::kVersionKey, sources.empty() ? 1 : format::kVersionOfLibraries);
  AppendTexts(out, format::kUpgrades, document.Upgrades());
  if (!sources.empty()) {
    fmt::format_to(std::back_inserter(out), R"(,"{}":[)", format::kLibraries);
    std::string_view separator;
    for (const UpgradeSource& source : sources) {
      AppendRaw(out, separator);
      AppendSource(out, source);
      separator = ",";
    }
    out.push_back(']');
  }
  fmt::format_to(std::back_inserter(out), ",\"{}\":{}}}\n", format::kFeatures, document.FeatureCount());
}

void Prepare(Document& document, std::string_view name) {
  document.DropAllDeadLinks();
  if (document.NextId() - 1 <= format::kMaxId) return;
  throw DocumentError(
      DocumentError::Kind::kInvalid, name, 0,
      fmt::format("new features would have ids above {}, which no document may hold", format::kMaxId),
      "Give the features of the old document lower ids");
}

// Hands the document to `sink` as it is to be stored. Tells of progress, but not of the end.
void Store(const Document& document, const WriteOptions& options, const Packer::Sink& sink) {
  const auto packer = Packer::Make(options.compression, sink);
  fmt::memory_buffer text;
  FeatureTexts texts;
  AppendHeader(text, document);
  std::size_t written = 0;
  const auto flush = [&] {
    packer->Add({text.data(), text.size()});
    text.clear();
  };
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next, ++written) {
    texts.Append(text, *feature);
    text.push_back('\n');
    if (text.size() < kFlushBytes) continue;
    flush();
    if (options.onProgress) options.onProgress(written, document.FeatureCount());
  }
  flush();
  packer->Finish();
}

void TellEnd(std::size_t total, const WriteOptions& options) {
  if (options.onProgress) options.onProgress(total, total);
}

}  // namespace

void WriteDocument(Document& document, const std::filesystem::path& file, const WriteOptions& options) {
  Prepare(document, file.string());
  AtomicFile output(file, options);
  Store(document, options, [&output](std::string_view bytes) { output.Write(bytes); });
  if (options.digest != nullptr) *options.digest = output.Digest();
  TellEnd(document.FeatureCount(), options);
  output.Commit();
}

void StreamDocument(Document& document, int descriptor, std::string_view name, const WriteOptions& options) {
  Prepare(document, name);
  Store(document, options, [&](std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = write(descriptor, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) {
        throw DocumentError(DocumentError::Kind::kUnwritable, name, 0,
                            fmt::format("cannot be written ({})", std::strerror(errno)),
                            "What reads it ended too early, or its disk is full; what it got is not whole");
      }
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  });
  TellEnd(document.FeatureCount(), options);
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
                           fmt::format("Nothing was written; {}", options.changedAdvice));
  }
  if (options.digest != nullptr) *options.digest = output.Digest();
  TellEnd(written, options);
  output.Commit();
}

}  // namespace standalone
