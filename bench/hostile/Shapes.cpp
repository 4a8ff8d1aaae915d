#include "Shapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "file/JsonText.h"

namespace bench {
namespace {

// A document in the making: lines with ascending ids unless they bring their own.
class Builder {
 public:
  explicit Builder(std::size_t bytes) : bytes_(bytes) {}

  [[nodiscard]] bool IsFull() const { return text_.size() >= bytes_; }
  [[nodiscard]] std::size_t NextId() const { return next_; }
  [[nodiscard]] std::size_t Bytes() const { return bytes_; }

  // A feature with the next id; `rest` begins with a comma or is empty. Gives its id.
  std::size_t Add(std::string_view type, std::string_view rest = {}) {
    return AddAs(static_cast<std::int64_t>(next_), type, rest);
  }
  std::size_t AddAs(std::int64_t id, std::string_view type, std::string_view rest = {}) {
    fmt::format_to(std::back_inserter(text_), "{{\"id\":{},\"type\":\"{}\"{}}}\n", id, type, rest);
    ++count_;
    return next_++;
  }
  // An analysis model, a case with the containers of an analysis, and a step; features may stand in them.
  struct Frame {
    std::size_t model = 0;
    std::size_t analysisCase = 0;
    std::size_t loads = 0;
    std::size_t interactions = 0;
    std::size_t properties = 0;
    std::size_t meshes = 0;
  };
  Frame AddFrame() {
    Frame frame;
    frame.model = Add("AnalysisModel", R"(,"attributes":{"ExplicitModel":true,"FeatList":[]})");
    frame.analysisCase = Add("AnalysisCase", Beneath(frame.model) + R"(,"attributes":{"Solver":"Halvex"})");
    frame.properties = Add("PropertySet", Beneath(frame.model));
    frame.meshes = Add("MSHMeshSet", Beneath(frame.model));
    const std::size_t history = Add("HVXSimulationHistoryLT", Beneath(frame.analysisCase));
    const std::size_t step = Add("HVXGeneralStaticStepLT", Beneath(history));
    frame.loads = Add("HVXLoadContainerLT", Beneath(step));
    frame.interactions = Add("HVXInteractionContainerLT", Beneath(step));
    return frame;
  }
  static std::string Beneath(std::size_t father) { return fmt::format(R"(,"father":{{"ref":{}}})", father); }

  [[nodiscard]] std::string Finish(std::string_view upgrades = {}) const {
    return fmt::format("{{\"format\":\"hvxdoc\",\"version\":1,\"upgrades\":[{}],\"features\":{}}}\n{}",
                       upgrades, count_, text_);
  }

 private:
  std::size_t bytes_;
  std::size_t next_ = 1;
  std::size_t count_ = 0;
  std::string text_;
};

// All in one bucket of a table that takes an id for its own hash, at the sizes that the table has last.
std::string IdsInOneBucket(std::size_t bytes) {
  constexpr std::int64_t kSizes[] = {1109, 2357, 5087, 10273, 20753, 42043, 85229, 172933, 351061, 712697};
  constexpr std::size_t kBytesOfLine = 40;
  const auto count = static_cast<std::int64_t>(bytes / kBytesOfLine);
  const auto* const size = std::ranges::lower_bound(kSizes, count);
  const std::int64_t step = size == std::begin(kSizes) ? *size : *size * *(size - 1);
  Builder document(bytes);
  for (std::int64_t i = count; i > 0; --i) document.AddAs(i * step, "Part");
  return document.Finish();
}

std::string UpgradeNames(std::size_t bytes) {
  std::string names;
  for (std::size_t i = 0; names.size() < bytes; ++i) names += fmt::format("{}\"U{}\"", i == 0 ? "" : ",", i);
  return Builder(bytes).Finish(names);
}

std::string Keys(std::size_t bytes, const std::function<std::string(std::size_t)>& valueOf) {
  std::string text;
  for (std::size_t i = 0; text.size() < bytes; ++i)
    text += fmt::format("{}\"k{}\":{}", i == 0 ? "" : ",", i, valueOf(i));
  return text;
}

std::string AttributesOfOne(std::size_t bytes) {
  Builder document(bytes);
  document.Add("AnalysisCase",
               fmt::format(R"(,"attributes":{{{}}})", Keys(bytes, [](std::size_t) { return "0"; })));
  return document.Finish();
}

std::string ModesOfOne(std::size_t bytes) {
  Builder document(bytes);
  document.Add("AnalysisCase", fmt::format(R"(,"attributes":{{{}}},"modes":{{{}}})",
                                           Keys(bytes / 2, [](std::size_t) { return "0"; }),
                                           Keys(bytes / 2, [](std::size_t) { return "1"; })));
  return document.Finish();
}

// One parameter with half of the bytes as attributes, read by as many conditions as the rest has room for.
std::string AttributesReadByAll(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  const std::size_t parameter =
      document.Add("Parameter", fmt::format(R"(,"attributes":{{{},"Magnitude":"PRESSURE","Value":1.0}})",
                                            Keys(bytes / 2, [](std::size_t) { return "0"; })));
  while (!document.IsFull()) {
    document.Add("HVXPressure",
                 Builder::Beneath(frame.loads) +
                     fmt::format(R"(,"attributes":{{"pressure_param":{{"ref":{}}}}})", parameter));
  }
  return document.Finish();
}

// Names of which all have one hash of the kind that mixes eight bytes at a time with a known constant: every
// two blocks of the name come in two forms that make no difference.
class CollidingNames {
 public:
  static constexpr std::size_t kPairs = 16;

  CollidingNames() {
    for (std::size_t i = 0; i < kPairs; ++i) {
      const std::string one = Block();
      const std::string two = Block();
      pairs_.push_back({one + two, Flipped(one) + Flipped(two)});
    }
  }

  // As it stands in a text of JSON: flipped, a letter can be a control character.
  [[nodiscard]] std::string Of(std::size_t number) const {
    std::string name;
    for (std::size_t i = 0; i < kPairs; ++i)
      name += (number >> i & 1U) != 0 ? pairs_[i].second : pairs_[i].first;
    fmt::memory_buffer text;
    standalone::AppendJsonText(text, name);
    return {text.data() + 1, text.size() - 2};
  }

 private:
  static constexpr std::uint64_t kFactor = 0xc6a4a7935bd1e995U;
  static constexpr std::uint64_t kInverse = 0x5f7a0ea7e59b19bdU;

  static std::uint64_t Mixed(std::uint64_t word) {
    word *= kFactor;
    word ^= word >> 47U;
    return word * kFactor;
  }
  static std::uint64_t Unmixed(std::uint64_t word) {
    word *= kInverse;
    word ^= word >> 47U;
    return word * kInverse;
  }
  // One that is ASCII, flipped or not.
  std::string Block() {
    std::string block(sizeof(std::uint64_t), 'a');
    do {
      for (char& letter : block) letter = static_cast<char>('a' + random_() % 26);
    } while (!IsAscii(Flipped(block)));
    return block;
  }
  static std::string Flipped(const std::string& block) {
    std::uint64_t word = 0;
    std::memcpy(&word, block.data(), sizeof word);
    word = Unmixed(Mixed(word) ^ std::uint64_t{1} << 63U);
    std::string flipped(sizeof word, '\0');
    std::memcpy(flipped.data(), &word, sizeof word);
    return flipped;
  }
  static bool IsAscii(const std::string& block) {
    return std::ranges::all_of(block, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  }

  std::mt19937_64 random_{20240229};  // NOLINT(bugprone-random-generator-seed): the same document each time
  std::vector<std::pair<std::string, std::string>> pairs_;
};

std::string KeysOfOneHash(std::size_t bytes) {
  const CollidingNames names;
  Builder document(bytes);
  for (std::size_t i = 0; !document.IsFull(); i += 8) {
    std::string attributes;
    for (std::size_t j = i; j < i + 8; ++j)
      attributes += fmt::format("{}\"{}\":0", j == i ? "" : ",", names.Of(j));
    document.Add("Part", fmt::format(R"(,"attributes":{{{}}})", attributes));
  }
  return document.Finish();
}

std::string LateTypesOfOneHash(std::size_t bytes) {
  const CollidingNames names;
  Builder document(bytes);
  for (std::size_t i = 0; !document.IsFull(); ++i) document.Add(names.Of(i));
  return document.Finish();
}

std::string LateTypes(std::size_t bytes) {
  Builder document(bytes);
  for (std::size_t i = 0; !document.IsFull(); ++i)
    document.Add(fmt::format("HVXContactConnectionEnhancementSt{:06}", i % 1'000'000));
  return document.Finish();
}

std::string DistinctKeys(std::size_t bytes) {
  Builder document(bytes);
  for (std::size_t i = 0; !document.IsFull(); ++i)
    document.Add("Part", fmt::format(R"(,"attributes":{{"a{0}":0,"b{0}":0}})", i));
  return document.Finish();
}

// Each beneath the one before, of late types that look upwards for their case.
std::string Deep(std::size_t bytes) {
  static constexpr std::string_view kTypes[] = {"HVXElementAssignmentLT", "HVXContactControlsLT",
                                                "HVXPressure", "HVXFilmCondition"};
  Builder document(bytes);
  std::size_t above = document.Add("AnalysisModel");
  for (std::size_t i = 0; !document.IsFull(); ++i)
    above = document.Add(kTypes[i % std::size(kTypes)],
                         fmt::format(R"(,"alias":"n"{})", Builder::Beneath(above)));
  return document.Finish();
}

// Each beneath the one that follows.
std::string FathersFollow(std::size_t bytes) {
  constexpr std::size_t kBytesOfLine = 50;
  Builder document(bytes);
  for (std::size_t i = bytes / kBytesOfLine; i > 0; --i)
    document.Add("Part", Builder::Beneath(document.NextId() + 1));
  document.Add("Part");
  return document.Finish();
}

std::string SonsOfOne(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  while (!document.IsFull()) {
    const std::size_t condition = document.Add("HVXPressure", Builder::Beneath(frame.analysisCase));
    document.Add("Parameter",
                 Builder::Beneath(condition) + R"(,"attributes":{"Magnitude":"PRESSURE","Value":1.0})");
  }
  return document.Finish();
}

std::string ListOfLinks(std::size_t bytes) {
  Builder document(bytes);
  document.Add("Product");
  std::string list = R"({"ref":1})";
  while (list.size() < bytes) list += R"(,{"ref":1})";
  document.Add("SAMGroup", fmt::format(R"(,"attributes":{{"Members":[{}]}})", list));
  return document.Finish();
}

std::string ListsInLists(std::size_t bytes) {
  Builder document(bytes);
  std::string list = "[[[[[[[0]]]]]]]";
  while (list.size() < bytes) list += ",[[[[[[[0]]]]]]]";
  document.Add("Part", fmt::format(R"(,"attributes":{{"L":[{}]}})", list));
  return document.Finish();
}

std::string LongText(std::size_t bytes) {
  Builder document(bytes);
  document.Add("Part", fmt::format(R"(,"alias":"{}")", std::string(bytes, 'x')));
  return document.Finish();
}

std::string Escapes(std::size_t bytes) {
  Builder document(bytes);
  std::string text;
  while (text.size() < bytes) text += R"(\u0001\n)";
  document.Add("Part", fmt::format(R"(,"alias":"{}")", text));
  return document.Finish();
}

std::string LinksToOne(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  const std::size_t property = document.Add("SAMFaceFaceFastened", Builder::Beneath(frame.properties));
  while (!document.IsFull()) {
    document.Add(
        "HVXTiedContactLT",
        Builder::Beneath(frame.interactions) +
            fmt::format(R"(,"container":{{"ref":{0}}},"attributes":{{"connectionProperty":{{"ref":{0}}}}})",
                        property));
  }
  return document.Finish();
}

std::string ContainerChain(std::size_t bytes) {
  Builder document(bytes);
  std::size_t container = document.Add("SAMContainer");
  while (!document.IsFull())
    container = document.Add("SAMContainer", fmt::format(R"(,"container":{{"ref":{}}})", container));
  return document.Finish();
}

std::string Cases(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  while (!document.IsFull()) document.Add("AnalysisCase", Builder::Beneath(frame.model));
  return document.Finish();
}

std::string Models(std::size_t bytes) {
  Builder document(bytes);
  while (!document.IsFull()) document.AddFrame();
  return document.Finish();
}

std::string PropertiesAndCases(std::size_t bytes) {
  constexpr std::size_t kBytesOfLine = 80;
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  for (std::size_t i = bytes / kBytesOfLine / 2; i > 0; --i)
    document.Add("AnalysisCase", Builder::Beneath(frame.model) + R"(,"attributes":{"Solver":"Halvex"})");
  while (!document.IsFull()) document.Add("SAMFaceFaceContact", Builder::Beneath(frame.properties));
  return document.Finish();
}

std::string Conditions(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  while (!document.IsFull()) {
    const std::size_t condition = document.NextId();
    document.Add("HVXConcentratedForce",
                 Builder::Beneath(frame.loads) +
                     fmt::format(R"(,"attributes":{{"SonsList":[{{"ref":{}}},{{"ref":{}}}]}})", condition + 1,
                                 condition + 2));
    for (int son = 0; son < 2; ++son)
      document.Add("SAMBasicComponent", Builder::Beneath(condition) + R"(,"name":"HVXForce_1")");
  }
  return document.Finish();
}

std::string MeshCounts(std::size_t bytes) {
  Builder document(bytes);
  const Builder::Frame frame = document.AddFrame();
  const std::size_t perPart = std::size_t{1} << 21U;
  for (int part = 0; part < 8; ++part) {
    document.Add(
        "MSHMeshPart",
        Builder::Beneath(frame.meshes) +
            fmt::format(R"(,"attributes":{{"ElementCount":{0},"ElementUserNumbers":[1,{0}]}})", perPart));
  }
  while (!document.IsFull()) document.Add("Part");
  return document.Finish();
}

std::string BrokenAtTheEnd(std::size_t bytes) {
  Builder document(bytes);
  while (!document.IsFull()) document.Add("Part");
  return document.Finish() + "{\"id\":\"\n";
}

std::string Circle(std::size_t bytes) {
  constexpr std::size_t kBytesOfLine = 50;
  Builder document(bytes);
  for (std::size_t i = bytes / kBytesOfLine; i > 0; --i)
    document.Add("Part", Builder::Beneath(document.NextId() + 1));
  document.Add("Part", Builder::Beneath(1));
  return document.Finish();
}

constexpr HostileShape kShapes[] = {
    {"ids", "ids that fall in one bucket of a plain hash table, descending", IdsInOneBucket},
    {"upgrades", "a header with nothing but upgrade names", UpgradeNames},
    {"attributes", "one feature with all attributes", AttributesOfOne},
    {"modes", "one feature with all attributes and as many modes", ModesOfOne},
    {"shared", "one feature with many attributes, read by many others", AttributesReadByAll},
    {"keyHashes", "attribute keys of one and the same plain hash", KeysOfOneHash},
    {"typeHashes", "late types of one and the same plain hash", LateTypesOfOneHash},
    {"types", "every feature of another late type, nearly a known one", LateTypes},
    {"keys", "every attribute of another key", DistinctKeys},
    {"deep", "each feature beneath the one before", Deep},
    {"reverse", "each feature beneath the one that follows", FathersFollow},
    {"sons", "all features beneath one", SonsOfOne},
    {"list", "one list of links", ListOfLinks},
    {"lists", "lists within lists", ListsInLists},
    {"text", "one text", LongText},
    {"escapes", "one text of nothing but escapes", Escapes},
    {"target", "all features link to one, twice", LinksToOne},
    {"containers", "each feature in the one before as its container", ContainerChain},
    {"cases", "all features analysis cases", Cases},
    {"models", "many analysis models with all that stands in one", Models},
    {"properties", "connection properties, and cases that lack the set for contacts", PropertiesAndCases,
     HostileBound::kProduct},
    {"conditions", "conditions with sons of one name", Conditions},
    {"meshes", "mesh parts of millions of elements", MeshCounts, HostileBound::kConstant},
    {"broken", "the last line broken", BrokenAtTheEnd},
    {"circle", "all features in one circle of fathers", Circle},
};

}  // namespace

std::span<const HostileShape> HostileShapes() {
  return kShapes;
}

}  // namespace bench
