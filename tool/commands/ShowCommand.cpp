#include "commands/ShowCommand.h"

#include <fmt/compile.h>

#include <algorithm>
#include <unordered_map>

#include "document/Reading.h"
#include "file/FeatureText.h"
#include "file/JsonText.h"
#include "report/JsonOutput.h"
#include "report/SourceOutput.h"
#include "settings/UsageError.h"
#include "terminal/Output.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::AppendJsonText;
using standalone::AppendRaw;
using standalone::Attribute;
using standalone::Feature;
using standalone::LateType;

constexpr std::size_t kFlushBytes = std::size_t{1} << 16;
constexpr std::size_t kDeepestIndent = 40;  // levels; deeper ones are told by number

// Calls `take` with each feature at and beneath `top` that was asked for, and its level, without recursion:
// nothing bounds how deep a tree is.
template <class Take>
void Walk(const ShowArguments& arguments, const Feature& top, const Take& take) {
  const LateType* const wanted = arguments.lateType.empty() ? nullptr : &LateType::Of(arguments.lateType);
  std::size_t level = 0;
  const Feature* feature = &top;
  while (feature != nullptr) {
    // Of a late type, fathers are not shown, so there is no tree.
    if (wanted == nullptr || feature->type == wanted) take(*feature, wanted == nullptr ? level : 0);
    if (feature->firstSon != nullptr && !(arguments.depth && level + 1 >= *arguments.depth)) {
      feature = feature->firstSon;
      ++level;
      continue;
    }
    while (feature != &top && feature->nextSibling == nullptr) {
      feature = feature->father;
      --level;
    }
    feature = feature == &top ? nullptr : feature->nextSibling;
  }
}

// The same for the whole document, or for what stands beneath `top` where there is one. Gives their number.
template <class Take>
std::size_t ForEachAsked(const ShowArguments& arguments, const standalone::Document& document,
                         const Feature* top, const Take& take) {
  std::size_t count = 0;
  const auto counted = [&](const Feature& feature, std::size_t level) {
    ++count;
    take(feature, level);
  };
  if (top != nullptr) {
    Walk(arguments, *top, counted);
    return count;
  }
  for (const Feature* root = document.First(); root != nullptr; root = root->next) {
    if (root->father == nullptr) Walk(arguments, *root, counted);
  }
  return count;
}

class TreePrinter {
 public:
  explicit TreePrinter(bool attributes) : attributes_(attributes) {}
  ~TreePrinter() { Flush(); }
  TreePrinter(const TreePrinter&) = delete;
  TreePrinter& operator=(const TreePrinter&) = delete;

  void Print(const Feature& feature, std::size_t level) {
    Indent(level);
    fmt::format_to(std::back_inserter(out_), FMT_COMPILE("{} {}"), feature.id, WordOf(*feature.type));
    const std::string_view shown = feature.externalName.empty() ? feature.name : feature.externalName;
    if (!shown.empty()) {
      out_.push_back(' ');
      AppendJsonText(out_, shown);
    }
    if (!feature.name.empty() && feature.name != shown) {
      AppendRaw(out_, " name=");
      AppendJsonText(out_, feature.name);
    }
    if (feature.physicalType != standalone::kNoName) {
      AppendRaw(out_, " physicalType=");
      AppendRaw(out_, Word(standalone::NameTable::Text(feature.physicalType)));
    }
    if (!feature.upToDate) AppendRaw(out_, " out-of-date");
    out_.push_back('\n');
    if (attributes_) PrintAttributes(feature, level);
    if (out_.size() >= kFlushBytes) Flush();
  }

 private:
  void PrintAttributes(const Feature& feature, std::size_t level) {
    for (const Attribute& attribute : feature.Attributes()) {
      Indent(level);
      AppendRaw(out_, "    - ");
      AppendJsonText(out_, standalone::NameTable::Text(attribute.key));
      AppendRaw(out_, ": ");
      standalone::AppendValue(out_, attribute.value);
      if (attribute.mode != 0) fmt::format_to(std::back_inserter(out_), " (mode {})", attribute.mode);
      out_.push_back('\n');
    }
  }

  void Indent(std::size_t level) {
    const std::size_t shown = std::min(level, kDeepestIndent);
    fmt::format_to(std::back_inserter(out_), FMT_COMPILE("{:{}}"), "", 2 * shown);
    if (shown < level) fmt::format_to(std::back_inserter(out_), "(level {}) ", level + 1);
  }

  // Made once per late type, not per feature.
  const std::string& WordOf(const LateType& type) {
    std::string& word = words_[type.Id()];
    if (word.empty()) word = Word(type.Name());
    return word;
  }

  void Flush() {
    Say(PrintableLines({out_.data(), out_.size()}));
    out_.clear();
  }

  bool attributes_;
  fmt::memory_buffer out_;
  std::unordered_map<standalone::NameId, std::string> words_;
};

std::size_t PrintFeatures(const ShowArguments& arguments, const standalone::Document& document,
                          const Feature* top) {
  Output output;
  JsonObject object(output.Buffer());
  object.Text("show", "hvxupgrade");
  object.Number("version", kJsonVersion);
  object.Name("file", arguments.file);
  object.Texts("upgrades", document.Upgrades());
  AppendSources(object, document.Sources());
  JsonList features(object.Key("features"));
  fmt::memory_buffer line;
  standalone::FeatureTexts texts;
  const std::size_t count =
      ForEachAsked(arguments, document, top, [&](const Feature& feature, std::size_t /*level*/) {
        line.clear();
        texts.Append(line, feature);
        features.Value({line.data(), line.size()});
        output.FlushIfLarge();
      });
  features.Close();
  object.Close();
  output.Buffer().push_back('\n');
  return count;
}

void TellSources(const standalone::UpgradeSources& sources) {
  fmt::memory_buffer out;
  for (const standalone::UpgradeSource& each : sources.All()) {
    std::vector<std::string> words{fmt::format("upgrades of {}:", WordsOf(each))};
    for (const std::string& upgrade : each.upgrades)
      words.push_back(Word(upgrade) + (&upgrade == &each.upgrades.back() ? "" : ","));
    AppendParagraph(out, words, 0);
  }
  Say({out.data(), out.size()});
}

std::size_t PrintTree(const ShowArguments& arguments, const standalone::Document& document,
                      const Feature* top) {
  // Who asks for some features wants them alone.
  if (top == nullptr && arguments.lateType.empty()) TellSources(document.Sources());
  TreePrinter printer(arguments.attributes);
  return ForEachAsked(arguments, document, top, [&printer](const Feature& feature, std::size_t level) {
    printer.Print(feature, level);
  });
}

}  // namespace

ExitCode RunShow(const ShowArguments& arguments) {
  const standalone::DocumentPtr document = ReadWithProgress(arguments.file);
  const Feature* const top = arguments.id ? document->Find(*arguments.id) : nullptr;
  if (arguments.id && top == nullptr)
    throw UsageError(fmt::format("{} has no feature {}", arguments.file, *arguments.id));
  const std::size_t printed = (arguments.json ? PrintFeatures : PrintTree)(arguments, *document.Get(), top);
  if (printed == 0 && !arguments.lateType.empty())
    Complain(fmt::format("{}: no feature of late type {}", arguments.file, Word(arguments.lateType)));
  return ExitCode::kDone;
}

}  // namespace tool
