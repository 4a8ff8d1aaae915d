#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "ToolRun.h"

namespace tool_testing {

/// Runs of the program with upgrade libraries that do what a test says (`tests/plugin/ScriptedLibrary.cpp`).
class PluginTest : public ToolTest {
 protected:
  PluginTest() { unsetenv("HVXUPGRADE_PLUGINS"); }
  ~PluginTest() override { unsetenv("HVXUPGRADE_PLUGINS"); }

  /// A library that is as `script` says.
  std::string Library(const std::string& name, std::string_view script) const {
    const std::string file = Path(name);
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::filesystem::copy_file(SCRIPTED_LIBRARY, file, std::filesystem::copy_options::overwrite_existing);
    Put(file + ".txt", script);
    return file;
  }
  /// The program with these libraries, and without its own.
  [[nodiscard]] Ended RunWith(const std::vector<std::string>& libraries, std::vector<std::string> command,
                              bool withBuiltIn = false) const {
    std::vector<std::string> arguments;
    if (!withBuiltIn) arguments.emplace_back("--no-default-library");
    for (const std::string& each : libraries) arguments.insert(arguments.end(), {"--library", each});
    arguments.insert(arguments.end(), command.begin(), command.end());
    return Run(arguments);
  }
  void ExpectRefused(const std::vector<std::string>& libraries, const testing::Matcher<std::string>& why,
                     bool withBuiltIn = false) const {
    // However they are given.
    for (const std::vector<std::string>& order :
         {libraries, std::vector<std::string>(libraries.rbegin(), libraries.rend())}) {
      const Ended ended = RunWith(order, {"identifiers"}, withBuiltIn);
      EXPECT_EQ(ended.code, 3);
      EXPECT_THAT(ended.err, why);
    }
  }
};

}  // namespace tool_testing
