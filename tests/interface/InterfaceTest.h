#pragma once

#include <gmock/gmock.h>
#include <hvxupgrade/Document.h>
#include <hvxupgrade/Error.h>
#include <hvxupgrade/Reader.h>
#include <hvxupgrade/Upgrade.h>
#include <hvxupgrade/Writer.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "support/TempFolder.h"

namespace testing_support {

inline constexpr const char* kExamples[] = {"bolted_bracket", "heated_pipe"};
inline std::filesystem::path Example(std::string_view name) {
  return std::filesystem::path(HVX_SOURCE_DIR) / "examples" / (std::string(name) + ".hvxdoc");
}

/// The text of a document with these lines of features.
inline std::string WithHeader(std::string_view lines, std::string_view upgrades = "") {
  return R"({"format":"hvxdoc","version":1,"upgrades":[)" + std::string(upgrades) + R"(],"features":)" +
         std::to_string(std::ranges::count(lines, '\n')) + "}\n" + std::string(lines);
}

/// What `action` throws as an error of the interface; none when it throws nothing.
template <class Action>
std::optional<hvxupgrade::Error> ErrorOf(const Action& action) {
  try {
    action();
  } catch (const hvxupgrade::Error& error) {
    return error;
  }
  return std::nullopt;
}

using Kind = hvxupgrade::Error::Kind;

/// The kind of what `action` throws, and its problem, which holds `problem`.
template <class Action>
void ExpectError(Kind kind, const char* problem, const Action& action) {
  const std::optional<hvxupgrade::Error> error = ErrorOf(action);
  ASSERT_TRUE(error) << "nothing thrown instead of: " << problem;
  EXPECT_EQ(error->GetKind(), kind) << error->what();
  EXPECT_THAT(error->Problem(), testing::HasSubstr(problem));
}

class InterfaceTest : public testing::Test {
 protected:
  std::filesystem::path Put(const char* name, std::string_view lines) const {
    return folder_.Put(name, WithHeader(lines));
  }
  hvxupgrade::Document Given(std::string_view lines) const {
    return hvxupgrade::Read(Put("given.hvxdoc", lines));
  }
  /// The document as its file holds it.
  std::string TextOf(hvxupgrade::Document& document) const {
    hvxupgrade::Write(document, folder_ / "text.hvxdoc", {.overwrite = true});
    return BytesOf(folder_ / "text.hvxdoc");
  }

  TempFolder folder_;
};

}  // namespace testing_support
