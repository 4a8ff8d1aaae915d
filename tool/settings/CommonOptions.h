#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "settings/Arguments.h"

/// \file
/// Options that several commands take, and what their values must be.

namespace tool {

// Checks of option values: each gives what is wrong, or nothing. An empty value is mostly a variable of a
// script that was never set.
[[nodiscard]] std::string NotEmpty(const std::string& value);
[[nodiscard]] std::string AboveZero(const std::string& value);
[[nodiscard]] std::string WholeNumber(const std::string& value);
/// The standard streams are no places for it.
[[nodiscard]] std::string FileName(const std::string& value);

/// The title in the help of options about many documents.
inline constexpr const char* kMany = "Many documents";

/// Which documents are meant.
void AddSources(CLI::App& verb, Sources& sources);
/// Where to write a page of the results.
CLI::Option& AddHtml(CLI::App& verb, std::string& file);
/// How they are worked on.
void AddMany(CLI::App& verb, ManyDocuments& many);

// Once all was parsed. Each throws `UsageError` when options contradict each other or something lacks.
/// Also gives standard input the name under which it is opened.
void Check(Sources& sources);
void CheckNull(const Sources& sources);
/// Standard input is opened under a name, as any other document.
void OpenStream(std::string& document);

}  // namespace tool
