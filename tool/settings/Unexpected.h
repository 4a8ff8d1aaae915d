#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// \file
/// What is said to a user who asked for something that the program does not offer.

namespace tool {

/// The commands, as a message lists them.
inline constexpr const char* kCommands =
    "status, check, upgrade, report, merge, diff, sheet, identifiers, show, clean or help";

[[nodiscard]] bool IsCommand(const CLI::App& app, const std::string& word);
/// Says that there is no such command, with the one that was probably meant, or all.
[[nodiscard]] std::string NoCommand(const CLI::App& app, const std::string& command);
/// What is wrong when the parser met words that it did not expect; `what` is its own message.
[[nodiscard]] std::string Unexpected(const CLI::App& app, const char* what);

}  // namespace tool
