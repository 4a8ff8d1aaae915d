#pragma once

#include <cstdint>
#include <string_view>

/// \file
/// The words of the document file, shared by its reader and its writer. `docs/document-format.md` describes
/// them.

namespace standalone::format {

inline constexpr std::string_view kFormatName = "hvxdoc";
/// The newest version; a document is written in the oldest that can hold it.
inline constexpr int kVersion = 2;
/// The first version that says which library an upgrade came from.
inline constexpr int kVersionOfLibraries = 2;

// The header line.
inline constexpr std::string_view kFormat = "format";
inline constexpr std::string_view kVersionKey = "version";
inline constexpr std::string_view kUpgrades = "upgrades";
inline constexpr std::string_view kLibraries = "libraries";
inline constexpr std::string_view kFeatures = "features";

// An entry of the header's libraries, beside its version and upgrades.
inline constexpr std::string_view kLibraryName = "name";

// A feature line.
inline constexpr std::string_view kId = "id";
inline constexpr std::string_view kType = "type";
inline constexpr std::string_view kName = "name";
inline constexpr std::string_view kAlias = "alias";
inline constexpr std::string_view kFather = "father";
inline constexpr std::string_view kContainer = "container";
inline constexpr std::string_view kUpToDate = "upToDate";
inline constexpr std::string_view kPhysicalType = "physicalType";
inline constexpr std::string_view kAttributes = "attributes";
inline constexpr std::string_view kModes = "modes";

inline constexpr std::string_view kRef = "ref";

/// The highest id of a feature, 2^53 - 1: every JSON program keeps integers up to it.
inline constexpr std::int64_t kMaxId = 9007199254740991;

/// Lists within lists, at the most.
inline constexpr int kMaxListDepth = 8;

}  // namespace standalone::format
