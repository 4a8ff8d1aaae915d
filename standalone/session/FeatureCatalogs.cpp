#include "session/FeatureCatalogs.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace standalone {

// The attributes of a new feature, by late type. Texts and lists stand in the catalog's own memory.
struct FeatureCatalog {
  simdjson::dom::parser parser;  // owns what `lateTypes` refers to
  simdjson::dom::object lateTypes;
};

namespace {

struct State {
  std::filesystem::path folder;
  std::map<std::string, std::unique_ptr<FeatureCatalog>, std::less<>> catalogs;
};

State& Current() {
  static State state;
  return state;
}

const FeatureCatalog* Find(std::string_view name) {
  State& state = Current();
  const auto known = state.catalogs.find(name);
  if (known != state.catalogs.end()) return known->second.get();
  auto catalog = std::make_unique<FeatureCatalog>();
  const std::string file = (state.folder / name).string();
  if (catalog->parser.load(file).get_object().get(catalog->lateTypes) != simdjson::SUCCESS) return nullptr;
  return state.catalogs.emplace(name, std::move(catalog)).first->second.get();
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
  Current().folder = folder;
}

HRESULT FeatureCatalogs::Load(std::string_view name, Document& document) {
  const FeatureCatalog* const catalog = Find(name);
  if (catalog == nullptr) return E_FAIL;
  document.LoadCatalog(*catalog);
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
