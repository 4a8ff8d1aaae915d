// The seven upgrades in C++ on every line as JSON: nlohmann NAMES DOCUMENT RESULT [--copying]
// With --copying, lines that concern no upgrade are not parsed.

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <unordered_set>

namespace {

using Id = std::int64_t;
using Json = nlohmann::ordered_json;
using namespace nlohmann::literals;

// The late type without parsing the line: in every feature it stands second.
std::string_view LateTypeOf(std::string_view line) {
  for (int quotes = 0; quotes < 5; ++quotes) line.remove_prefix(line.find('"') + 1);
  return line.substr(0, line.find('"'));
}

bool IsOneOf(std::string_view type, std::initializer_list<std::string_view> types) {
  return std::ranges::find(types, type) != types.end();
}

bool MayConcern(std::string_view line) {
  return line.find("Halvex") != line.npos || line.find("HALVEX") != line.npos ||
         IsOneOf(LateTypeOf(line),
                 {"HVXJobLT", "HVXJobContainerLT", "HVXMatOrientationLT", "HVXARSurfLT", "MSHMeshPart"});
}

// The upgrades, and what they know of other features, wherever those stand.
class Upgrades {
 public:
  explicit Upgrades(const char* names) : names_(Json::parse(std::ifstream(names))) {}

  void UpgradeHeader(Json& header) const { header["upgrades"] = names_["identifiers"]; }

  void Note(const Json& feature) {
    if (feature["type"] == "AnalysisCase") {
      const Id id = feature["id"];
      cases_.insert(id);
      if (feature.value("/attributes/Solver"_json_pointer, "") == "Halvex" &&
          feature.value("/attributes/AnalysisType"_json_pointer, 0) == 3)
        explicitCases_.insert(id);
    } else if (feature["type"] == "HVXShellSectionEnhLT") {
      orientations_.insert(feature.value("/attributes/MaterialOrientation/ref"_json_pointer, Id{0}));
    } else {
      meshParts_.insert(feature.value("/attributes/MeshPart/ref"_json_pointer, Id{0}));
    }
  }

  void Upgrade(Json& feature) const {
    const auto type = feature["type"].get<std::string>();
    const Id father = feature.contains("father") ? feature["father"]["ref"].get<Id>() : 0;
    if (type == "HVXJobLT" || type == "HVXJobContainerLT") {
      UpgradeJob(feature, type == "HVXJobContainerLT" ? father : 0);
    } else if (type == "AnalysisCase" || type == "HVXHalvexPropertySetLT") {
      Rename(feature, type);
    } else if (type == "HVXMatOrientationLT" && orientations_.contains(feature["id"])) {
      Json& angle = feature["attributes"]["Angle"];
      angle = angle.get<double>() / (180.0 / std::numbers::pi);
    } else if (type == "HVXARSurfLT" || (type == "MSHMeshPart" && meshParts_.contains(feature["id"]))) {
      feature["upToDate"] = false;
    }
    if (cases_.contains(father)) Rename(feature, "beneath AnalysisCase");
  }

 private:
  void Rename(Json& feature, const std::string& place) const {
    if (!feature.contains("alias")) return;
    auto& text = feature["alias"].get_ref<std::string&>();
    for (const Json& pair : names_[place]) {
      const std::string oldText = pair[0], newText = pair[1];
      for (std::size_t at = text.find(oldText); at != text.npos; at = text.find(oldText, at + newText.size()))
        text.replace(at, oldText.size(), newText);
    }
  }

  void UpgradeJob(Json& job, Id caseOfContainer) const {
    const Id itsCase = job.value("/attributes/AnalysisCase/ref"_json_pointer, caseOfContainer);
    Json& attributes = job["attributes"];
    if (attributes.is_null()) attributes = Json::object();
    const int frequency = attributes.value("RestartFrequency", 0);
    if (frequency > 1) {
      attributes["RestartInterval"] = frequency;
      attributes["RestartMode"] = 4;
    } else if (frequency == 0 && explicitCases_.contains(itsCase)) {
      attributes["RestartFlag"] = 1;
      attributes["RestartMode"] = 3;
    }
    if (attributes.value("RunType", "") == "From InputFile") {
      attributes["InputFileFlag"] = 0;
      attributes["RunType"] = "Full Analysis";
    }
    attributes["MemoryUnit"] = 1;
  }

  Json names_;
  std::unordered_set<Id> cases_, explicitCases_, orientations_, meshParts_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  const bool copies = argc > 4;
  Upgrades upgrades(argv[1]);
  std::string line;
  for (std::ifstream document(argv[2]); std::getline(document, line);) {
    if (IsOneOf(LateTypeOf(line), {"AnalysisCase", "HVXShellSectionEnhLT", "HVXARSurfLT"}))
      upgrades.Note(Json::parse(line));
  }
  std::ifstream document(argv[2]);
  std::ofstream result(argv[3]);
  for (bool isHeader = true; std::getline(document, line); isHeader = false) {
    if (isHeader || !copies || MayConcern(line)) {
      Json object = Json::parse(line);
      isHeader ? upgrades.UpgradeHeader(object) : upgrades.Upgrade(object);
      line = object.dump();
    }
    result << line << '\n';
  }
  return result.flush() ? 0 : 1;
}
