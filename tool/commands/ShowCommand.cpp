#include "commands/ShowCommand.h"

#include <fmt/compile.h>

#include <algorithm>
#include <unordered_map>

#include "document/Reading.h"
#include "file/FeatureText.h"
#include "file/JsonText.h"
#include "settings/UsageError.h"
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

class TreePrinter {
 public:
  explicit TreePrinter(const ShowArguments& arguments)
      : arguments_(arguments),
        wantedType_(arguments.lateType.empty() ? nullptr : &LateType::Of(arguments.lateType)) {}
  ~TreePrinter() { Flush(); }
  TreePrinter(const TreePrinter&) = delete;
  TreePrinter& operator=(const TreePrinter&) = delete;

  // `top` and what stands beneath it, without recursion: nothing bounds how deep a tree is.
  void Print(const Feature& top) {
    std::size_t level = 0;
    const Feature* feature = &top;
    while (feature != nullptr) {
      PrintOne(*feature, level);
      if (feature->firstSon != nullptr && !(arguments_.depth && level + 1 >= *arguments_.depth)) {
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

  [[nodiscard]] std::size_t Printed() const { return printed_; }

 private:
  void PrintOne(const Feature& feature, std::size_t level) {
    if (wantedType_ != nullptr && feature.type != wantedType_) return;
    ++printed_;
    if (wantedType_ != nullptr) level = 0;  // fathers are not shown, so there is no tree
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
    if (arguments_.attributes) PrintAttributes(feature, level);
    if (out_.size() >= kFlushBytes) Flush();
  }

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

  const ShowArguments& arguments_;
  const LateType* wantedType_;
  fmt::memory_buffer out_;
  std::unordered_map<standalone::NameId, std::string> words_;
  std::size_t printed_ = 0;
};

}  // namespace

ExitCode RunShow(const ShowArguments& arguments) {
  const standalone::DocumentPtr document = ReadWithProgress(arguments.file);
  TreePrinter printer(arguments);
  if (arguments.id) {
    const Feature* const top = document->Find(*arguments.id);
    if (top == nullptr) throw UsageError(fmt::format("{} has no feature {}", arguments.file, *arguments.id));
    printer.Print(*top);
  } else {
    for (const Feature* root = document->First(); root != nullptr; root = root->next) {
      if (root->father == nullptr) printer.Print(*root);
    }
  }
  if (printer.Printed() == 0 && !arguments.lateType.empty())
    Complain(fmt::format("{}: no feature of late type {}", arguments.file, Word(arguments.lateType)));
  return ExitCode::kDone;
}

}  // namespace tool
