#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What the page of an upgrade says beyond what its library knows. Texts are as the data folder holds them:
/// not printable yet.
struct Explanation {
  struct Predecessor {
    std::string upgrade;  ///< Must not run after the explained one ...
    std::string reason;   ///< ... because of this.
  };
  /// What `hvxupgrade check` finds where the upgrade failed.
  struct Left {
    std::vector<std::string> lateTypes;  ///< None stands for any feature.
    std::string what;
  };
  struct Row {
    std::string what, before, after;  ///< The last two are empty for nothing.
  };
  /// One feature of an example document, before and after.
  struct Example {
    std::string of;
    std::vector<Row> rows;
    std::size_t more = 0;  ///< Rows that are left out.
  };
  /// How many features of an example document the upgrade changes, makes and removes.
  struct Features {
    std::string of;
    std::size_t changed = 0, created = 0, removed = 0;
  };
  /// What the analysis of the examples says differently, for one reason.
  struct Difference {
    struct Count {
      std::string of;
      std::size_t count = 0;
    };
    std::string meaning, reason, first;  ///< `first`: the first of them.
    std::vector<Count> counts;
  };

  std::string about;  ///< What it does and why, in sentences.
  std::vector<Predecessor> before;
  std::vector<std::string> harmless;  ///< Sentences about failures that mean nothing.
  std::vector<Left> leaves;
  std::vector<Example> examples;
  std::string none;  ///< Why there is no example; empty when there is one.
  std::vector<Features> features;
  std::vector<Difference> analysis;
};

/// The explanations that come with the program: "upgrades/explanations.json" in the data folder, which
/// scripts/upgrade-pages writes together with the pages beside it.
class Explanations {
 public:
  /// A folder without that file has none. Throws `std::runtime_error`, which names the file and the remedy,
  /// when it is there and cannot be read.
  explicit Explanations(const std::filesystem::path& dataFolder);

  /// Null for an upgrade that has none, such as one of another library.
  [[nodiscard]] const Explanation* Of(std::string_view upgrade) const;
  /// The file of the upgrade's page; empty when there is none.
  [[nodiscard]] std::filesystem::path PageOf(std::string_view upgrade) const;

 private:
  std::filesystem::path folder_;
  std::map<std::string, Explanation, std::less<>> explanations_;
};

}  // namespace tool
