#include "hvxupgrade/Reader.h"

#include <algorithm>

#include "file/DocumentFormat.h"
#include "file/DocumentReader.h"
#include "file/RealPath.h"
#include "interface/Headers.h"
#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {

standalone::ReadOptions ReadingBy(const ReadOptions& options) {
  standalone::ReadOptions reading;
  reading.maxUnpackedBytes = options.maxUnpackedBytes;
  reading.unpackedAdvice = "If you trust it, allow more unpacked bytes";
  if (options.onProgress) {
    reading.onProgress = [&options](std::size_t read, std::size_t total) {
      TellProgress(options.onProgress, read, total, {"reading was stopped", "Read it again"});
    };
  }
  return reading;
}

Header HeaderOf(const standalone::DocumentHeader& header) {
  Header told;
  const standalone::UpgradeSources& sources = header.document->Sources();
  told.version = sources.All().empty() ? 1 : standalone::format::kVersionOfLibraries;
  for (const std::string& identifier : header.document->Upgrades()) {
    const standalone::UpgradeSource* const source = sources.Of(identifier);
    told.upgrades.push_back(source == nullptr
                                ? Header::Recorded{identifier, "", ""}
                                : Header::Recorded{identifier, source->library, source->version});
  }
  told.features = header.features;
  return told;
}

Document Read(const std::filesystem::path& file, const ReadOptions& options) {
  return Translated(Error::Kind::kUnreadable, file, [&] {
    RequireNamed(file, Error::Kind::kUnreadable);
    standalone::ReadOptions reading = ReadingBy(options);
    KnownFile known;
    bool isRegular = false;
    std::size_t upgrades = 0;
    reading.compression = &known.stored;
    reading.onHeader = [&](const standalone::Document& header,
                           const std::optional<standalone::FileIdentity>& identity) {
      upgrades = header.Upgrades().size();
      isRegular = identity.has_value();
      if (isRegular) known.identity = *identity;
    };
    auto state = std::make_unique<Inside::DocumentState>(standalone::ReadDocument(file, reading));
    state->file = file;
    state->isRead = true;
    state->upgradesRead = upgrades;
    if (isRegular) state->files.emplace(standalone::RealPathOf(file), known);
    return Inside::Make(std::move(state));
  });
}

Header ReadHeader(const std::filesystem::path& file) {
  return Translated(Error::Kind::kUnreadable, file, [&] {
    RequireNamed(file, Error::Kind::kUnreadable);
    return HeaderOf(standalone::ReadHeader(file));
  });
}

const Value* FeatureLine::Find(std::string_view key) const {
  const auto found = std::ranges::find(attributes, key, &Attribute::key);
  return found == attributes.end() ? nullptr : &found->value;
}

}  // namespace hvxupgrade
