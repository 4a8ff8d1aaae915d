#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// \file
/// What a page shows of one document, in the form in which its scripts take it (web/data.d.ts tells what each
/// part means).

namespace tool::page {

/// How a thing is coloured.
enum class Tone : std::uint8_t { kGood, kAttention, kBad, kQuiet };

/// A list of which the page may hold only the first entries.
template <class Entry>
struct Cut {
  std::size_t count = 0;  ///< How many there are.
  std::vector<Entry> first = {};
};

using Labelled = std::pair<std::string, std::string>;

struct Verdict {
  Tone tone = Tone::kQuiet;
  std::string words = {};
  std::string next = {};  ///< What to do; empty for nothing.
};

struct TypeTotals {
  std::string type = {};
  std::size_t changed = 0;
  std::size_t made = 0;
  std::size_t removed = 0;
  std::size_t failed = 0;
};

/// Features of which the same is to be said.
struct Attention {
  struct One {
    std::int64_t id = 0;  ///< -1 for the document as a whole.
    std::string name = {};
    std::string owner = {};
    std::string code = {};
  };

  std::string kind = {};
  std::string reason = {};
  std::string next = {};
  std::string key = {};
  std::string type = {};
  std::string others = {};  ///< Whose upgrade failed, where it is not the built-in library's.
  int upgrade = -1;
  Cut<One> features = {};
};

struct Dropped {
  std::int64_t id = 0;
  std::string type = {};
  std::string name = {};
  std::string owner = {};
  std::string key = {};
  std::string values = {};
  std::string instead = {};
  std::vector<int> upgrades = {};
};

/// The same change of features of one late type.
struct Change {
  std::string type = {};
  std::string key = {};
  std::string before = {};
  std::string after = {};
  std::size_t count = 0;
  std::vector<std::int64_t> ids = {};
  std::vector<Labelled> own = {};  ///< Before and after of each, where these differ.
};

struct Gathered {
  std::string type = {};
  std::size_t count = 0;
  std::vector<std::int64_t> ids = {};
};

/// What one upgrade did.
struct Step {
  int upgrade = -1;
  std::size_t changed = 0;  ///< Features.
  std::size_t made = 0;
  std::size_t removed = 0;
  Cut<Change> changes = {};
  std::vector<Gathered> makes = {};
  std::vector<Gathered> removes = {};
};

struct Tree {
  struct Node {
    std::int64_t id = 0;
    std::uint32_t depth = 0;
    char mark = ' ';  ///< 'c' changed, 'm' made, 'r' removed, ' ' none of these.
    std::string type = {};
    std::string name = {};
  };

  std::size_t count = 0;
  std::vector<Node> nodes = {};
};

struct SheetRow {
  std::string quantity = {};
  std::string before = {};
  std::string after = {};
  int meaning = 0;  ///< 0 equal, 1 expressed differently, 2 on purpose, 3 unaccounted for.
  int upgrade = -1;
  std::string reason = {};
};

struct Subject {
  std::int64_t id = 0;
  std::string chapter = {};
  std::string kind = {};
  std::string name = {};
  std::string inCase = {};
  std::string step = {};
  std::string state = {};  ///< Empty, "new" or "lost".
  std::vector<SheetRow> rows = {};
};

struct Sheet {
  bool isThere = false;
  std::string words = {};
  Tone tone = Tone::kGood;
  std::size_t equal = 0;
  std::size_t same = 0;
  std::size_t onPurpose = 0;
  std::size_t unaccounted = 0;
  Cut<Subject> subjects = {};
};

struct Detail {
  Verdict verdict = {};
  std::string problem = {};
  std::vector<Labelled> facts = {};
  Cut<Attention> attention = {};
  Cut<Dropped> dropped = {};
  std::vector<Step> steps = {};
  std::vector<int> idle = {};
  std::vector<std::string> notes = {};
  std::vector<TypeTotals> types = {};
  Tree tree = {};
  Sheet sheet = {};
  std::string cut = {};  ///< Where all of it stands; shown when something is cut.
};

/// Whether some list holds less than there is.
[[nodiscard]] bool IsCut(const Detail& detail);

[[nodiscard]] std::string_view NameOf(Tone tone);

void AppendJson(fmt::memory_buffer& out, const Verdict& verdict);
void AppendJson(fmt::memory_buffer& out, const std::vector<TypeTotals>& types);
void AppendJson(fmt::memory_buffer& out, const std::vector<Labelled>& facts);
void AppendJson(fmt::memory_buffer& out, const Detail& detail);

}  // namespace tool::page
