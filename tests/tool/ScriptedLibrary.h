#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tool_testing {

/// Puts an upgrade library there that is as `script` says (tests/plugin/ScriptedLibrary.cpp); gives its name.
inline std::string PutScriptedLibrary(const std::string& file, std::string_view script) {
  namespace fs = std::filesystem;
  fs::create_directories(fs::path(file).parent_path());
  fs::copy_file(SCRIPTED_LIBRARY, file, fs::copy_options::overwrite_existing);
  std::ofstream(file + ".txt", std::ios::binary) << script;
  return file;
}

}  // namespace tool_testing
