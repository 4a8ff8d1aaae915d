#include "file/HeaderReader.h"

#include <set>

namespace standalone {
namespace {

std::string NameOf(const UpgradeSource& source) {
  return source.version.empty() ? source.library : fmt::format("{} {}", source.library, source.version);
}

std::int64_t TakeVersion(ondemand::value value) {
  const std::int64_t version = TakeInteger(value, format::kVersionKey);
  if (version > format::kVersion)
    throw Unsound{fmt::format("the document has format version {}; this program knows versions up to {}",
                              version, format::kVersion),
                  "Use a newer release of this program", DocumentError::Kind::kNewer};
  if (version < 1) Refuse(fmt::format("format version {} does not exist", version));
  return version;
}

std::int64_t TakeCount(ondemand::value value) {
  const std::int64_t count = TakeInteger(value, format::kFeatures);
  if (count < 0) Refuse(fmt::format("\"features\" is {}; it counts from 0", count));
  return count;
}

std::string_view TakeIdentifier(ondemand::value value) {
  if (value.type() != ondemand::json_type::string) Refuse(R"("upgrades" must be a list of texts)");
  return TakeText(value, format::kUpgrades);
}

}  // namespace

std::int64_t HeaderReader::Read(ondemand::object object) {
  static constexpr KnownKey kKeys[] = {format::kFormat, format::kVersionKey, format::kUpgrades,
                                       format::kFeatures, format::kLibraries};
  Keys keys(kKeys);
  std::int64_t features = -1;
  bool hasUpgrades = false;
  for (auto field : object) {
    const std::string_view key = TakeKey(field);
    if (keys.HasMetNone() && key != format::kFormat)
      Refuse("this is not an analysis document: its first line does not begin with \"format\"",
             "Give a file with the extension .hvxdoc");
    switch (keys.Meet(key)) {
      case 0:
        if (TakeText(field.value(), key) != format::kFormatName)
          Refuse("this is not an analysis document: its format is not \"hvxdoc\"",
                 "Give a file with the extension .hvxdoc");
        break;
      case 1:
        version_ = TakeVersion(field.value());
        break;
      case 2:
        ReadUpgrades(field.value());
        hasUpgrades = true;
        break;
      case 3:
        features = TakeCount(field.value());
        break;
      default:
        ReadSources(field.value());
        hasSources_ = true;
    }
  }
  if (version_ == 0 || !hasUpgrades || features < 0)
    Refuse("the header must have \"format\", \"version\", \"upgrades\" and \"features\"");
  if (hasSources_ && version_ < format::kVersionOfLibraries)
    Refuse(fmt::format("\"libraries\" does not belong into format version {}", version_),
           "Make it \"version\":2, or take \"libraries\" out");
  if (!hasSources_ && version_ >= format::kVersionOfLibraries)
    Refuse("the header of format version 2 must have \"libraries\"");
  AddSources();
  return features;
}

void HeaderReader::ReadUpgrades(ondemand::value value) {
  Expect(value, ondemand::json_type::array, format::kUpgrades);
  for (auto each : value.get_array()) {
    const std::string_view identifier = TakeIdentifier(each.value());
    if (document_.HasRecorded(identifier))
      Refuse(fmt::format(R"("upgrades" names "{}" twice)", identifier), "Leave one of the two");
    document_.RecordUpgrade(identifier);
  }
}

void HeaderReader::ReadSources(ondemand::value value) {
  Expect(value, ondemand::json_type::array, format::kLibraries);
  for (auto each : value.get_array()) {
    ondemand::object object;
    if (each.get_object().get(object) != simdjson::SUCCESS)
      Refuse(R"("libraries" must be a list of objects)");
    ReadSource(object);
  }
}

void HeaderReader::ReadSource(ondemand::object object) {
  static constexpr KnownKey kKeys[] = {format::kLibraryName, format::kVersionKey, format::kUpgrades};
  Keys keys(kKeys);
  UpgradeSource source;
  for (auto field : object) {
    const std::string_view key = TakeKey(field);
    switch (keys.Meet(key)) {
      case 0:
        source.library = TakeText(field.value(), key);
        break;
      case 1:
        source.version = TakeText(field.value(), key);
        break;
      default:
        Expect(field.value(), ondemand::json_type::array, key);
        for (auto identifier : field.value().get_array())
          source.upgrades.emplace_back(TakeIdentifier(identifier.value()));
    }
  }
  if (source.library.empty()) Refuse(R"(an entry of "libraries" has no "name")");
  if (source.upgrades.empty())
    Refuse(fmt::format(R"(the library {} of "libraries" has no "upgrades")", NameOf(source)));
  sources_.push_back(std::move(source));
}

// Checked only now, because the keys of the header may come in any order.
void HeaderReader::AddSources() {
  std::set<std::pair<std::string_view, std::string_view>> met;
  for (const UpgradeSource& source : sources_) {
    if (!met.emplace(source.library, source.version).second)
      Refuse(fmt::format("\"libraries\" has {} twice", NameOf(source)), "Make one entry of the two");
    for (const std::string& identifier : source.upgrades) {
      if (!document_.HasRecorded(identifier))
        Refuse(fmt::format(R"({} of "libraries" names "{}", which is not in "upgrades")", NameOf(source),
                           identifier),
               "Add it there, or take it out of \"libraries\"");
      if (document_.Sources().Of(identifier) != nullptr)
        Refuse(fmt::format(R"("libraries" names "{}" twice)", identifier), "Leave one of the two");
      document_.Sources().Add(identifier, source.library, source.version);
    }
  }
}

}  // namespace standalone
