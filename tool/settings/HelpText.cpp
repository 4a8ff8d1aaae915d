#include "settings/HelpText.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "terminal/Table.h"

namespace tool {
namespace {

constexpr std::size_t kIndent = 2;

}  // namespace

std::string HelpText::Sentences(const std::string& text) const {
  fmt::memory_buffer out;
  AppendParagraph(out, EachWord(text), 0, 0, lineWidth_);
  return fmt::to_string(out);
}

std::string HelpText::Explained(const std::string& name, const std::string& explanation,
                                std::size_t column) const {
  const std::string left = std::string(kIndent, ' ') + name;
  if (explanation.empty()) return left + '\n';
  // Where names leave no room to read in, explanations go beneath them.
  constexpr std::size_t kRoom = 24;
  const std::size_t begin = column + kRoom <= lineWidth_ ? column : 3 * kIndent;
  fmt::memory_buffer out;
  AppendParagraph(out, EachWord(explanation), begin, 0, lineWidth_);
  std::string right = fmt::to_string(out);
  return left.size() < begin ? right.replace(0, left.size(), left) : left + '\n' + right;
}

std::string HelpText::make_option(const CLI::Option* option, bool isPositional) const {
  return Explained(make_option_name(option, isPositional) + make_option_opts(option),
                   make_option_desc(option), get_column_width());
}

std::string HelpText::make_subcommand(const CLI::App* command) const {
  return Explained(command->get_display_name(true), command->get_description(), get_column_width());
}

std::string HelpText::make_description(const CLI::App* app) const {
  return Sentences(app->get_description());
}

std::string HelpText::make_footer(const CLI::App* app) const {
  std::istringstream lines(app->get_footer());
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t name = line.find_first_not_of(' ');
    const std::size_t gap = line.find("  ", std::min(name, line.size()));
    if (name == 0) {
      text += Sentences(line);
    } else if (gap == std::string::npos) {
      text += line + '\n';
    } else {
      const std::size_t column = line.find_first_not_of(' ', gap);
      text += Explained(line.substr(name, gap - name), line.substr(column), column);
    }
  }
  return text;
}

std::string HelpText::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
  std::string text = CLI::Formatter::make_help(app, std::move(name), mode);
  // Groups are set apart by two empty lines, of which one would do.
  for (std::size_t at = text.find("\n\n\n"); at != std::string::npos; at = text.find("\n\n\n", at))
    text.erase(at, 1);
  return text;
}

}  // namespace tool
