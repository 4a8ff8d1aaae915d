#include "session/FeatureCatalogs.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>

#include "session/CatalogFile.h"

namespace standalone {

// The attributes of a new feature, by late type. Texts and lists stand in the catalog's own memory.
struct FeatureCatalog {
  simdjson::dom::parser parser;  // owns what `lateTypes` refers to
  simdjson::dom::object lateTypes;
};

namespace {

using Catalogs = std::map<std::string, std::shared_ptr<const FeatureCatalog>, std::less<>>;

// Those in use. A document that loaded some of others keeps them as long as it needs them.
struct InUse {
  std::mutex mutex;
  Catalogs catalogs;
};
InUse& Current() {
  static InUse current;
  return current;
}

using simdjson::dom::element_type;

// What upgrades make features from, with what they need a new one to hold.
struct NeededAttribute {
  std::string_view key;
  element_type type;
  std::size_t entries = 0;                            // of a list
  element_type entryType = element_type::NULL_VALUE;  // of a list
};
struct NeededLateType {
  std::string_view catalog;
  std::string_view lateType;
  std::initializer_list<NeededAttribute> attributes;
};
const NeededLateType kNeeded[] = {
    {"HVXAnalysisStepCatalog.VLMfct", "HVXInteractionContainerLT", {}},
    {"HVXElementPropertiesCatalog.VLMfct",
     "HVXElementAssignmentLT",
     {{"ElementShape", element_type::INT64},
      {"ElementOrder", element_type::INT64},
      {"Formulation", element_type::INT64},
      {"ElementOptions", element_type::ARRAY, 4, element_type::BOOL},
      {"ElementOptionValues", element_type::ARRAY, 2, element_type::DOUBLE},
      {"SectionControlsSpec", element_type::NULL_VALUE}}},
    {"HVXElementPropertiesCatalog.VLMfct",
     "HVXSectionControlsLT",
     {{"DistortionContol", element_type::INT64},
      {"SecondOrderAccuracy", element_type::BOOL},
      {"HourglassControl", element_type::INT64},
      {"LengthRatio", element_type::DOUBLE},
      {"StiffnessViscousWtFactor", element_type::DOUBLE},
      {"DispHourglassScalingFactor", element_type::DOUBLE},
      {"RotHourglassScalingFactor", element_type::DOUBLE},
      {"OutOfPlaneHourglassScalingFactor", element_type::DOUBLE}}},
};

[[noreturn]] void Refuse(const std::filesystem::path& file, std::string_view why) {
  throw std::runtime_error(fmt::format(
      "{}: {}. Reinstall the program, or name the right data folder (--data)", file.string(), why));
}

// Attributes are made from these as they stand; nothing else could be stored.
bool IsStorable(simdjson::dom::element value) {
  simdjson::dom::array entries;
  if (value.get_array().get(entries) != simdjson::SUCCESS)
    return !value.is_object() && value.type() != simdjson::dom::element_type::UINT64;
  return std::all_of(entries.begin(), entries.end(), IsStorable);
}

std::shared_ptr<const FeatureCatalog> Read(const std::filesystem::path& file) {
  auto catalog = std::make_shared<FeatureCatalog>();
  const auto read = catalog->parser.parse(ReadCatalog(file)).get_object().get(catalog->lateTypes);
  if (read == simdjson::MEMALLOC) throw std::bad_alloc();
  if (read != simdjson::SUCCESS)
    Refuse(file, fmt::format("the feature catalog cannot be read ({})", simdjson::error_message(read)));
  for (const auto& [lateType, value] : catalog->lateTypes) {
    simdjson::dom::object attributes;
    if (value.get_object().get(attributes) != simdjson::SUCCESS)
      Refuse(file, fmt::format("\"{}\" of the feature catalog must be an object", lateType));
    for (const auto& [key, attribute] : attributes) {
      if (!IsStorable(attribute))
        Refuse(file,
               fmt::format("\"{}\" of \"{}\" in the feature catalog cannot be an attribute", key, lateType));
    }
  }
  return catalog;
}

bool Fits(simdjson::dom::element value, const NeededAttribute& needed) {
  if (value.type() != needed.type) return false;
  if (needed.type != element_type::ARRAY) return true;
  const simdjson::dom::array entries(value);
  return entries.size() == needed.entries &&
         std::all_of(entries.begin(), entries.end(),
                     [&](simdjson::dom::element each) { return each.type() == needed.entryType; });
}

// Throws when what upgrades make of the late type would not be what they need.
void Require(const FeatureCatalog& catalog, const NeededLateType& needed, const std::filesystem::path& file) {
  simdjson::dom::object attributes;
  if (catalog.lateTypes[needed.lateType].get_object().get(attributes) != simdjson::SUCCESS)
    Refuse(file, fmt::format("\"{}\" is missing in the feature catalog", needed.lateType));
  for (const NeededAttribute& attribute : needed.attributes) {
    simdjson::dom::element value;
    if (attributes[attribute.key].get(value) != simdjson::SUCCESS || !Fits(value, attribute)) {
      Refuse(file,
             fmt::format(
                 "\"{}\" of \"{}\" in the feature catalog is missing, or of another kind than it must be",
                 attribute.key, needed.lateType));
    }
  }
}

Value ValueOf(simdjson::dom::element element, Document& document) {
  switch (element.type()) {
    case simdjson::dom::element_type::INT64:
      return Value::Integer(std::int64_t(element));
    case simdjson::dom::element_type::DOUBLE:
      return Value::Real(double(element));
    case simdjson::dom::element_type::BOOL:
      return Value::Boolean(bool(element));
    case simdjson::dom::element_type::STRING:
      return Value::String(document.Keep(std::string_view(element)));
    case simdjson::dom::element_type::ARRAY: {
      std::vector<Value> entries;
      for (const simdjson::dom::element entry : simdjson::dom::array(element)) {
        entries.push_back(ValueOf(entry, document));
      }
      return Value::List(document.Keep(std::span<const Value>(entries)));
    }
    default:
      return Value::Link(nullptr);
  }
}

}  // namespace

void FeatureCatalogs::Use(const std::filesystem::path& folder) {
  Catalogs catalogs;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".VLMfct")
      catalogs.emplace(entry.path().filename().string(), Read(entry.path()));
  }
  if (error == std::errc::no_such_file_or_directory)
    Refuse(folder, "the folder of the feature catalogs is missing");
  if (error) {
    throw std::runtime_error(fmt::format("{}: the folder of the feature catalogs cannot be read ({})",
                                         folder.string(), error.message()));
  }
  for (const NeededLateType& needed : kNeeded) {
    const auto found = catalogs.find(needed.catalog);
    if (found == catalogs.end()) Refuse(folder / needed.catalog, "the feature catalog is missing");
    Require(*found->second, needed, folder / needed.catalog);
  }
  InUse& current = Current();
  const std::lock_guard lock(current.mutex);
  current.catalogs.swap(catalogs);
}

HRESULT FeatureCatalogs::Load(std::string_view name, Document& document) {
  InUse& current = Current();
  const std::lock_guard lock(current.mutex);
  const auto known = current.catalogs.find(name);
  if (known == current.catalogs.end()) return E_FAIL;
  document.LoadCatalog(known->second);
  return S_OK;
}

Feature* FeatureCatalogs::Create(std::string_view lateType, std::string_view externalName, Feature& father) {
  Document& document = *father.document;
  for (const std::shared_ptr<const FeatureCatalog>& catalog : document.LoadedCatalogs()) {
    simdjson::dom::object attributes;
    if (catalog->lateTypes[lateType].get_object().get(attributes) != simdjson::SUCCESS) continue;
    Feature* const made =
        document.Create(document.LateTypeFor(lateType), fmt::format("{}.{}", lateType, document.NextId()),
                        &father, father.container);
    if (made == nullptr) return nullptr;
    Feature& feature = *made;
    document.SetExternalName(feature, externalName);
    constexpr std::size_t kLinksOnTop = 2;  // that most features get besides
    document.ReserveAttributes(feature, static_cast<std::uint32_t>(attributes.size() + kLinksOnTop));
    for (const auto& [key, value] : attributes) {
      document.SetAttribute(feature, document.NameFor(key), ValueOf(value, document));
    }
    return &feature;
  }
  return nullptr;
}

}  // namespace standalone
