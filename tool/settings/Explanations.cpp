#include "settings/Explanations.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <new>
#include <stdexcept>

#include "session/CatalogFile.h"

namespace tool {
namespace {

namespace fs = std::filesystem;
using simdjson::dom::element;

// Throws `simdjson::simdjson_error` when it is no text, as all that follow do for what they read.
std::string TextOf(element value) {
  return std::string(std::string_view(value));
}

std::string TextIn(element object, std::string_view key) {
  element value;
  return object[key].get(value) == simdjson::NO_SUCH_FIELD ? std::string() : TextOf(value);
}

std::size_t NumberIn(element object, std::string_view key) {
  return std::uint64_t(object[key]);
}

template <class Read>
auto ListIn(element object, std::string_view key, Read read) {
  std::vector<decltype(read(object))> list;
  element values;
  if (object[key].get(values) == simdjson::NO_SUCH_FIELD) return list;
  for (const element value : values.get_array()) list.push_back(read(value));
  return list;
}

Explanation::Row RowOf(element cells) {
  return {TextOf(cells.at(0)), TextOf(cells.at(1)), TextOf(cells.at(2))};
}

Explanation::Example ExampleOf(element example) {
  return {TextOf(example["of"]), ListIn(example, "rows", RowOf), NumberIn(example, "more")};
}

Explanation::Difference DifferenceOf(element difference) {
  const auto count = [](element each) {
    return Explanation::Difference::Count{TextOf(each["of"]), NumberIn(each, "count")};
  };
  return {TextOf(difference["meaning"]), TextOf(difference["reason"]), TextOf(difference["first"]),
          ListIn(difference, "features", count)};
}

Explanation ExplanationOf(element entry) {
  Explanation explanation;
  explanation.about = TextOf(entry["about"]);
  explanation.before = ListIn(entry, "before", [](element each) {
    return Explanation::Predecessor{TextOf(each["upgrade"]), TextOf(each["reason"])};
  });
  explanation.harmless = ListIn(entry, "harmless", TextOf);
  explanation.leaves = ListIn(entry, "leaves", [](element each) {
    return Explanation::Left{ListIn(each, "lateTypes", TextOf), TextOf(each["what"])};
  });
  explanation.examples = ListIn(entry, "examples", ExampleOf);
  explanation.none = TextIn(entry, "none");
  explanation.features = ListIn(entry, "features", [](element each) {
    return Explanation::Features{TextOf(each["of"]), NumberIn(each, "changed"), NumberIn(each, "created"),
                                 NumberIn(each, "removed")};
  });
  explanation.analysis = ListIn(entry, "analysis", DifferenceOf);
  return explanation;
}

}  // namespace

Explanations::Explanations(const fs::path& dataFolder) : folder_(dataFolder / "upgrades") {
  const fs::path file = folder_ / "explanations.json";
  if (std::error_code error; fs::status(file, error).type() == fs::file_type::not_found) return;
  std::string upgrade;
  try {
    simdjson::dom::parser parser;
    const element top = parser.parse(standalone::ReadCatalog(file));
    for (const auto& [name, entry] : simdjson::dom::object(top["upgrades"])) {
      upgrade = name;
      explanations_.emplace(name, ExplanationOf(entry));
    }
  } catch (const simdjson::simdjson_error& error) {
    if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
    throw std::runtime_error(
        fmt::format("{}: the explanations of the upgrades cannot be read ({}{}). Reinstall the program, or "
                    "name the right data folder with --data",
                    file.string(), upgrade.empty() ? "" : upgrade + ": ", error.what()));
  }
}

const Explanation* Explanations::Of(std::string_view upgrade) const {
  const auto found = explanations_.find(upgrade);
  return found == explanations_.end() ? nullptr : &found->second;
}

fs::path Explanations::PageOf(std::string_view upgrade) const {
  if (Of(upgrade) == nullptr) return {};
  const fs::path page = folder_ / fmt::format("{}.md", upgrade);
  std::error_code error;
  return fs::exists(page, error) ? page : fs::path();
}

}  // namespace tool
