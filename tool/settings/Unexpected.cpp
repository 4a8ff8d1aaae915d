#include "settings/Unexpected.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/Resemblance.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

// Most of these words are short, and two letters in each other's place are two faults.
constexpr std::size_t kLettersPerFault = 2;

std::string_view Meant(std::string_view word, const std::vector<std::string>& known) {
  const std::vector<std::string_view> views(known.begin(), known.end());
  return standalone::Resembling(word, views, kLettersPerFault);
}

std::vector<std::string> CommandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const each : app.get_subcommands([](const CLI::App* /*any*/) { return true; }))
    names.push_back(each->get_name());
  return names;
}

// Of the whole program, and of the command that was given; without the dashes.
std::vector<std::string> OptionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  std::vector<const CLI::App*> offering{&app};
  std::ranges::copy(app.get_subcommands(), std::back_inserter(offering));
  for (const CLI::App* const each : offering) {
    for (const CLI::Option* const option : each->get_options())
      std::ranges::copy(option->get_lnames(), std::back_inserter(names));
  }
  return names;
}

std::string NoOption(const CLI::App& app, std::string_view given) {
  const std::string_view option = given.substr(0, given.find('='));
  const std::string_view bare = option.substr(std::min(option.find_first_not_of('-'), option.size()));
  const std::vector<std::string> known = OptionsOf(app);
  if (option.starts_with("--") && std::ranges::count(known, bare) != 0 && !app.get_subcommands().empty())
    return fmt::format("the option \"--{}\" belongs behind {}", bare,
                       app.get_subcommands().front()->get_name());
  const std::string_view meant = Meant(bare, known);
  return fmt::format("there is no option {}{}", Quoted(option),
                     meant.empty() ? "" : fmt::format("; did you mean '--{}'?", meant));
}

}  // namespace

bool IsCommand(const CLI::App& app, const std::string& word) {
  return std::ranges::count(CommandsOf(app), word) != 0;
}

std::string NoCommand(const CLI::App& app, const std::string& command) {
  const std::vector<std::string> known = CommandsOf(app);
  const std::string_view meant = Meant(command, known);
  return fmt::format(
      "there is no command {}; {}", Quoted(command),
      meant.empty() ? fmt::format("use {}", kCommands) : fmt::format("did you mean '{}'?", meant));
}

std::string Unexpected(const CLI::App& app, const char* what) {
  const std::vector<std::string> words = app.remaining(true);
  const auto isOption = [](const std::string& word) { return word.size() > 1 && word.starts_with('-'); };
  if (app.get_subcommands().empty()) {
    if (const auto word = std::ranges::find_if_not(words, isOption); word != words.end())
      return NoCommand(app, *word);
  }
  const auto option = std::ranges::find_if(words, isOption);
  return option == words.end() ? what : NoOption(app, *option);
}

}  // namespace tool
