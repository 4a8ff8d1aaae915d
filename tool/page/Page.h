#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "page/Detail.h"
#include "page/PageFile.h"
#include "page/UpgradeIndex.h"

namespace tool::page {

/// What a page shows first: the verdict on all documents, and a table of them.
class Page {
 public:
  enum class Kind : std::uint8_t { kUpgrade, kCheck, kDiff };

  struct Number {
    std::string label;
    std::size_t value;
    Tone tone;
  };
  struct Column {
    std::string label;
    std::string help;
    std::string unit = {};  ///< "s", "B" or empty.
    std::vector<double> values = {};
  };

  Page(Kind kind, std::vector<Column> columns) : kind_(kind), columns_(std::move(columns)) {}

  std::string title = {};
  Verdict verdict = {};
  std::vector<Number> numbers = {};
  std::vector<std::vector<Labelled>> runs = {};
  std::vector<std::string> notes = {};

  /// Adds a document, whose values stand in the order of the columns. `group` is the verdict of all documents
  /// like it. Gives its place.
  std::size_t Add(const std::string& file, const Verdict& group, const std::vector<double>& values);
  /// Where its detail stands; not called for one that the page leaves out.
  void SetBlock(std::size_t document, int block) { block_[document] = block; }
  void CountTypes(const std::vector<TypeTotals>& types);

  [[nodiscard]] std::size_t Documents() const { return files_.size(); }
  /// Those that a person must look at, also where they have no result.
  [[nodiscard]] std::size_t NeedPerson() const;
  [[nodiscard]] std::size_t WithoutDetail() const;

  void Finish(PageFile& file, const UpgradeIndex& upgrades, const Writer& write);

 private:
  struct Group {
    Verdict verdict;
    std::size_t count = 0;
  };

  void SortGroups();
  void AppendDocuments(fmt::memory_buffer& out) const;

  Kind kind_;
  std::vector<Column> columns_;
  std::vector<std::string> files_;
  std::vector<std::size_t> group_;
  std::vector<int> block_;
  std::vector<Group> groups_;
  std::map<std::string, TypeTotals> types_;
};

}  // namespace tool::page
