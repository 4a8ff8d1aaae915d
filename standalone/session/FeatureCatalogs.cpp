#include "session/FeatureCatalogs.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace standalone {

// The attributes of a new feature, by late type. Texts and lists stand in the catalog's own memory.
struct FeatureCatalog {
  simdjson::dom::parser parser;  // owns what `lateTypes` refers to
  simdjson::dom::object lateTypes;
};

namespace {

using Catalogs = std::map<std::string, std::unique_ptr<FeatureCatalog>, std::less<>>;

Catalogs& Current() {
  static Catalogs catalogs;
  return catalogs;
}

// What upgrades make features from.
struct NeededLateType {
  std::string_view catalog;
  std::string_view lateType;
};
constexpr NeededLateType kNeeded[] = {
    {"HVXAnalysisStepCatalog.VLMfct", "HVXInteractionContainerLT"},
    {"HVXElementPropertiesCatalog.VLMfct", "HVXElementAssignmentLT"},
    {"HVXElementPropertiesCatalog.VLMfct", "HVXSectionControlsLT"},
};

[[noreturn]] void Refuse(const std::filesystem::path& file, std::string_view why) {
  throw std::runtime_error(fmt::format(
      "{}: {}. Reinstall the program, or name the right data folder with --data", file.string(), why));
}

// Attributes are made from these as they stand; nothing else could be stored.
bool IsStorable(simdjson::dom::element value) {
  simdjson::dom::array entries;
  if (value.get_array().get(entries) != simdjson::SUCCESS)
    return !value.is_object() && value.type() != simdjson::dom::element_type::UINT64;
  return std::all_of(entries.begin(), entries.end(), IsStorable);
}

std::unique_ptr<FeatureCatalog> Read(const std::filesystem::path& file) {
  auto catalog = std::make_unique<FeatureCatalog>();
  const auto read = catalog->parser.load(file.string()).get_object().get(catalog->lateTypes);
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
  if (error)
    Refuse(folder, fmt::format("the folder of the feature catalogs cannot be read ({})", error.message()));
  for (const auto& [name, lateType] : kNeeded) {
    const auto found = catalogs.find(name);
    if (found == catalogs.end()) Refuse(folder / name, "the feature catalog is missing");
    if (found->second->lateTypes[lateType].error() != simdjson::SUCCESS)
      Refuse(folder / name, fmt::format("the feature catalog lacks \"{}\"", lateType));
  }
  Current() = std::move(catalogs);
}

HRESULT FeatureCatalogs::Load(std::string_view name, Document& document) {
  const auto known = Current().find(name);
  if (known == Current().end()) return E_FAIL;
  document.LoadCatalog(*known->second);
  return S_OK;
}

Feature* FeatureCatalogs::Create(std::string_view lateType, std::string_view externalName, Feature& father) {
  Document& document = *father.document;
  for (const FeatureCatalog* const catalog : document.LoadedCatalogs()) {
    simdjson::dom::object attributes;
    if (catalog->lateTypes[lateType].get_object().get(attributes) != simdjson::SUCCESS) continue;
    Feature* const made = document.Create(
        LateType::Of(lateType), fmt::format("{}.{}", lateType, document.NextId()), &father, father.container);
    if (made == nullptr) return nullptr;
    Feature& feature = *made;
    document.SetExternalName(feature, externalName);
    constexpr std::size_t kLinksOnTop = 2;  // that most features get besides
    document.ReserveAttributes(feature, static_cast<std::uint32_t>(attributes.size() + kLinksOnTop));
    for (const auto& [key, value] : attributes) {
      document.SetAttribute(feature, NameTable::Intern(key), ValueOf(value, document));
    }
    return &feature;
  }
  return nullptr;
}

}  // namespace standalone
