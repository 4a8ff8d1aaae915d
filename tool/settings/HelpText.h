#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>

namespace tool {

/// The text of `--help`, in lines that fit. What is explained stands to the left, and its explanation to the
/// right; commands are kept whole, so that they can be copied.
class HelpText : public CLI::Formatter {
 public:
  explicit HelpText(std::size_t lineWidth) : lineWidth_(lineWidth) {}

  [[nodiscard]] std::string make_option(const CLI::Option* option, bool isPositional) const override;
  [[nodiscard]] std::string make_subcommand(const CLI::App* command) const override;
  [[nodiscard]] std::string make_description(const CLI::App* app) const override;
  /// Of a footer's lines, those that are not indented are sentences, and two blanks or more within the others
  /// stand between what is explained and its explanation.
  [[nodiscard]] std::string make_footer(const CLI::App* app) const override;
  [[nodiscard]] std::string make_help(const CLI::App* app, std::string name,
                                      CLI::AppFormatMode mode) const override;

 private:
  [[nodiscard]] std::string Sentences(const std::string& text) const;
  [[nodiscard]] std::string Explained(const std::string& name, const std::string& explanation,
                                      std::size_t column) const;

  std::size_t lineWidth_;
};

}  // namespace tool
